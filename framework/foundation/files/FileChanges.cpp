// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/FileChanges.h"

#include "framework/foundation/files/TDirectory.h"

namespace {

struct TRegistry {
	TList<TString> mIgnoredFolders;
	TList<FileChanges::TListener> mListeners;
};

TRegistry& Registry() {
	static TRegistry sRegistry;
	return sRegistry;
}

bool MatchesFilePattern(const TString& name, TString pattern) {
	if (pattern == "*" || pattern == "*.*")
		return true;
	pattern.ToLower();
	int32_t nameEnd = name.Length();
	int32_t patternEnd = pattern.Length();
	while (patternEnd > 0) {
		const auto wanted = pattern[--patternEnd];
		if (wanted == u'*')
			return true;
		if (nameEnd == 0 || name[--nameEnd] != wanted)
			return false;
	}
	return nameEnd == 0;
}

} // namespace

bool MatchesFilePatterns(const TString& name, const TList<TString>& patterns) {
	TString lowerCaseName = name;
	lowerCaseName.ToLower();
	for (const TString& pattern : patterns) {
		if (MatchesFilePattern(lowerCaseName, pattern))
			return true;
	}
	return false;
}

void FileChanges::AddListener(const TListener& listener) {
	Registry().mListeners.Append(listener);
}

void FileChanges::RemoveListener(const TListener& listener) {
	TList<TListener>& listeners = Registry().mListeners;
	if (const int32_t index = listeners.IndexOf(listener); index >= 0)
		listeners.RemoveAt(index);
}

void FileChanges::IgnoreFolder(const TDirectory& folder) {
	if (!folder.IsEmpty() && Registry().mIgnoredFolders.IndexOf(folder.Path()) < 0)
		Registry().mIgnoredFolders.Append(folder.Path());
}

void FileChanges::MakeRegistry() {
	Registry();
}

void ReportFileChange(const TString& path) {
	const TDirectory place(path);
	for (const TString& folder : Registry().mIgnoredFolders) {
		if (place.Path().StartsWith(folder))
			return;
	}
	const TList<FileChanges::TListener> listeners = Registry().mListeners; // a listener may remove itself
	for (const FileChanges::TListener& listener : listeners)
		listener(path);
}
