// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/PreferencesMigration.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/values/ProductInfo.h"

#include <array>
#include <optional>

namespace {

using TVersion = std::array<int, 3>; // major, minor, patch

constexpr TVersion kThisVersion{ProductInfo::kMajorVersion, ProductInfo::kMinorVersion, ProductInfo::kPatchVersion};

const TList<TString>& SettingsPatterns() {
	static const TList<TString> sPatterns{"*.xml", "*.db"};
	return sPatterns;
}

/// Missing parts are 0. Nothing for a name that is no version: other folders lie beside those of the versions.
std::optional<TVersion> VersionOf(const TString& folder) {
	const TString numbers = folder.SubString(folder.StartsWithChar(u'V') ? 1 : 0);
	if (numbers[0] < u'0' || numbers[0] > u'9')
		return {};
	TVersion version{};
	const TList<TString> parts = numbers.Split(u'.');
	for (int32_t i = 0; i < parts.Count() && i < 3; ++i)
		version[static_cast<std::size_t>(i)] = TString::FromStringOrZero<int>(parts[i]);
	return version;
}

std::optional<TString> NewestOlderVersion(const TDirectory& product) {
	std::optional<TString> newest;
	std::optional<TVersion> newestVersion;
	for (const TString& folder : product.ListFolders("*")) {
		const std::optional<TVersion> version = VersionOf(folder);
		if (version && *version < kThisVersion && version > newestVersion) {
			newest = folder;
			newestVersion = version;
		}
	}
	return newest;
}

/// Under another name first: half a file would count as the settings of this version.
void CopyWhole(const TString& source, const TDirectory& folder, const TString& name) {
	const TString copy = UniqueFileName(folder, ".tmp");
	if (!CopyFile(source, copy) || !MoveFile(copy, folder.FilePath(name)))
		TFile(copy).Delete();
}

} // namespace

void FetchOlderPreferences(const TDirectory& product, const TDirectory& version) {
	if (!version.ListFiles(SettingsPatterns()).IsEmpty())
		return;
	const std::optional<TString> older = NewestOlderVersion(product);
	if (!older)
		return;
	const TDirectory source = product.Descend(*older);
	for (const TString& folder : source.ListFolders("*"))
		if (!folder.StartsWith("CrashBackups"))
			CopyFile(source.FilePath(folder), version.FilePath(folder), true);
	for (const TString& file : source.ListFiles("*"))
		if (file.StartsWith("Template") || MatchesFilePatterns(file, SettingsPatterns()))
			CopyWhole(source.FilePath(file), version, file);
}
