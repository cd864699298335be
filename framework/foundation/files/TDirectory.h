// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TFileProperties.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>

/// A folder's path in normal form: "/" between the elements and at the end, no empty, "." or ".." elements. Empty
/// means "not set". A path that climbs above its start is empty. Reading a folder that cannot be read gives nothing.
class TDirectory {
public:
	TDirectory() = default;
	TDirectory(const TString& path);

	/// Of a file or folder: the folder that it lies in.
	static TDirectory Around(const TString& path);

	const TString& Path() const noexcept { return mPath; }

	bool IsEmpty() const { return mPath.IsEmpty(); }

	/// The number of "/" less 1.
	int Depth() const;
	/// The folder above.
	TDirectory Ascend() const;
	TDirectory Descend(const TString& name) const;
	/// The path of a file in this folder.
	TString FilePath(const TString& name) const;

	bool Exists() const;
	/// True if the folder exists afterwards. What was created is reported to the listeners for file changes.
	bool Create(bool withParents) const;
	/// Removes the folder and what is in it. True if it is gone.
	bool Delete() const;

	/// Names without the path. Patterns are those of MatchesFilePatterns; sorted is by name.
	TList<TString> ListFiles(const TString& pattern, bool withHidden = false, bool sorted = true) const;
	TList<TString> ListFiles(const TList<TString>& patterns, bool withHidden = false, bool sorted = true) const;
	TList<TString> ListFolders(const TString& pattern, bool withHidden = false, bool sorted = true) const;
	TList<TPtr<TFileProperties>>
	ListFileProperties(const TList<TString>& patterns, bool withHidden = false, bool sorted = true) const;

	bool HasFiles() const;
	/// The newest change among the folder and its entries, in seconds since 1970; 0 if it does not exist.
	int64_t LatestChange(bool recursive) const;

	friend bool operator==(const TDirectory& a, const TDirectory& b) { return a.mPath == b.mPath; }

private:
	TString mPath;
};
