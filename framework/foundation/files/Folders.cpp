// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/Folders.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/PreferencesMigration.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TSystemFolders.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/ProductInfo.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int32_t kDepthOfCheckout = 4;

struct TFound {
	std::optional<TDirectory> mHome;
	std::optional<TDirectory> mDocuments;
	std::optional<TDirectory> mPreferences;
	std::optional<TDirectory> mLogs;
	std::optional<TDirectory> mTemporary;
	std::optional<TDirectory> mResourceBase;
};

std::atomic<const TSystemFolders*> sSystem{nullptr};
std::recursive_mutex sLock; // finding one folder may ask for another

TFound& Found() {
	static TFound sFound;
	return sFound;
}

TDirectory Keep(std::optional<TDirectory> TFound::*place, TDirectory (*find)()) {
	const std::lock_guard guard(sLock);
	std::optional<TDirectory>& found = Found().*place;
	if (!found)
		found = find();
	return *found;
}

template <class TAsk>
TDirectory AskSystem(const TAsk& ask) {
	const TSystemFolders* system = sSystem;
	return system ? ask(*system) : TDirectory();
}

TDirectory FindPreferences() {
	const TDirectory product = AskSystem([](const TSystemFolders& system) { return system.PreferencesDirectory(); });
	if (product.IsEmpty())
		return product;
	const TDirectory version = product.Descend(ProductInfo::PrefixedVersionText());
	version.Create(true);
	FetchOlderPreferences(product, version.Path());
	return version;
}

/// Anybody may have made a folder of that name in a folder that is everybody's.
bool IsOurOwn(const TDirectory& folder) {
	TString path = folder.Path();
	path.Remove(path.Length() - 1, path.Length()); // lstat follows a link with a "/" behind it
	struct stat status;
	return lstat(path.CString(kFileSystemEncoding), &status) == 0 && S_ISDIR(status.st_mode) &&
	       status.st_uid == geteuid();
}

TDirectory FindSystemTemporary() {
	TDirectory folder = AskSystem([](const TSystemFolders& system) { return system.TemporaryDirectory(); });
	return folder.Exists() ? folder : TDirectory("/tmp/");
}

TDirectory FindTemporary() {
	const TThreadManager* threads = TThreadManager::Instance();
	const int32_t thread = threads ? std::max(threads->CurrentThread(), 0) : 0;
	const TDirectory system = FindSystemTemporary();
	const TDirectory own = system.Descend(
	    TString(ProductInfo::kProductName) + "-" + TString::ToString(thread) + "-" + TString::ToString(int{getpid()}));
	if (!own.Create(true) || !IsOurOwn(own))
		return system;
	FileChanges::IgnoreFolder(own);
	return own;
}

/// "Contents/" of the bundle in which the module lies, in a folder named after the machine; else empty.
TDirectory BundleContents(const TString& modulePath) {
	const TDirectory machine = TDirectory::Around(modulePath);
	const TDirectory contents = machine.Ascend();
	const bool isBundle = machine.Path().EndsWith("-linux/") && contents.Path().EndsWith("/Contents/");
	return isBundle ? contents : TDirectory();
}

/// Only developers have one: the plug-in lies three folders deep in it, and it holds the project.
TDirectory CheckoutResources(const TDirectory& bundle) {
	if (bundle.Depth() < kDepthOfCheckout)
		return {};
	const TDirectory checkout = bundle.Ascend().Ascend().Ascend();
	const TDirectory project = checkout.Descend("Projects").Descend(ProductInfo::kPreferencesFolder);
	const TString git = checkout.FilePath(".git");
	if (!project.Exists() || access(git.CString(kFileSystemEncoding), F_OK) != 0)
		return {};
	TLog::Instance()->LogText("System", "Running in dev environment...");
	return project.Descend("Resources");
}

/// Below the folder in which the module's "bin" or "lib" folder lies.
TDirectory SharedResources(const TDirectory& bundle) {
	TDirectory folder = bundle;
	while (folder.Depth() > 0 && !folder.Path().EndsWith("/bin/") && !folder.Path().EndsWith("/lib/"))
		folder = folder.Ascend();
	const TDirectory prefix = folder.Depth() > 0 ? folder.Ascend() : TDirectory("/usr/");
	TString product = ProductInfo::kProductName;
	product.ToLower();
	return prefix.Descend("share").Descend(product);
}

TDirectory FindResourceBase() {
	const TDirectory base = Folders::ResourceBaseOf(Folders::ModulePath());
	TLog::Instance()->Log("System", "Using '%s' as resource base directory...", base.Path().CString(kPlatformEncoding));
	return base;
}

} // namespace

void Folders::UseSystem(const TSystemFolders* system) {
	const std::lock_guard guard(sLock);
	sSystem = system;
	Found() = {};
}

const TSystemFolders* Folders::System() {
	return sSystem;
}

TDirectory Folders::Home() {
	return Keep(
	    &TFound::mHome, [] { return AskSystem([](const TSystemFolders& system) { return system.HomeDirectory(); }); });
}

TDirectory Folders::Documents() {
	return Keep(&TFound::mDocuments, [] {
		return AskSystem([](const TSystemFolders& system) { return system.DocumentsDirectory(); });
	});
}

TDirectory Folders::Preferences() {
	return Keep(&TFound::mPreferences, &FindPreferences);
}

TDirectory Folders::Logs() {
	return Keep(
	    &TFound::mLogs, [] { return AskSystem([](const TSystemFolders& system) { return system.LogDirectory(); }); });
}

TDirectory Folders::Temporary() {
	const std::lock_guard guard(sLock);
	std::optional<TDirectory>& kept = Found().mTemporary;
	if (kept && !kept->Exists())
		kept.reset();
	return Keep(&TFound::mTemporary, &FindTemporary);
}

TString Folders::ModulePath() {
	Dl_info info;
	const bool isKnown = dladdr(reinterpret_cast<const void*>(&Folders::ModulePath), &info) != 0 && info.dli_fname;
	// A program that was found by the search path is known by its mere name.
	const char* path = isKnown && std::strchr(info.dli_fname, '/') ? info.dli_fname : "/proc/self/exe";
	const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path, nullptr), &std::free);
	return resolved ? TString(resolved.get(), kFileSystemEncoding) : TString();
}

TDirectory Folders::Bundle() {
	return BundleOf(ModulePath());
}

TDirectory Folders::ResourceBase() {
	return Keep(&TFound::mResourceBase, &FindResourceBase);
}

void Folders::UseResources(const TDirectory& folder) {
	const std::lock_guard guard(sLock);
	Found().mResourceBase = folder;
}

void Folders::UsePreferences(const TDirectory& folder) {
	const std::lock_guard guard(sLock);
	Found().mPreferences = folder;
}

TDirectory Folders::BundleOf(const TString& modulePath) {
	const TDirectory contents = BundleContents(modulePath);
	return contents.IsEmpty() ? TDirectory::Around(modulePath) : contents.Ascend().Ascend();
}

TDirectory Folders::ResourceBaseOf(const TString& modulePath) {
	const TDirectory bundle = BundleOf(modulePath);
	const TDirectory beside = bundle.Descend(FileBaseName(modulePath) + ".res");
	if (beside.Exists())
		return beside;
	const TDirectory checkout = CheckoutResources(bundle);
	if (!checkout.IsEmpty())
		return checkout;
	const TDirectory contents = BundleContents(modulePath);
	return contents.IsEmpty() ? SharedResources(bundle) : contents.Descend("Resources");
}

void Folders::Forget() {
	const std::lock_guard guard(sLock);
	if (const auto& temporary = Found().mTemporary)
		rmdir(temporary->Path().CString(kFileSystemEncoding)); // refused while something lies in it
	Found() = {};
}
