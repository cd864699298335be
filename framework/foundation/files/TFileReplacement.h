// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <span>
#include <string>

/// New contents for a file: written beside it and renamed over it when they are whole and on the disk. Until Commit
/// the file stays as it was; nothing stays behind when the object goes first. Throws nothing but out of memory: after a
/// failure IsGood() is false and everything else does nothing.
///
///     TFileReplacement replacement(path);
///     replacement.Write(bytes);
///     if (!replacement.Commit())
///         ... replacement.ErrorText()
///
/// A path that is a symbolic link keeps being one: what it points to is replaced. The file keeps its access rights.
/// Two processes may replace a file at once: one of both contents stands there whole.
/// The listeners for file changes are not told; that is for who calls Commit. One thread.
class TFileReplacement {
public:
	/// Refuses a path that is there and is no regular file, or that may not be written.
	explicit TFileReplacement(const TString& path);
	/// In the bytes of the file system.
	explicit TFileReplacement(const std::string& path);
	~TFileReplacement();
	TFileReplacement(const TFileReplacement&) = delete;
	TFileReplacement& operator=(const TFileReplacement&) = delete;

	bool IsGood() const noexcept { return mError == 0; }

	/// What went wrong first, in the system's words, such as "No space left on device". Empty while all is good.
	TString ErrorText() const;

	/// The errno of that; 0 while all is good.
	int Error() const noexcept { return mError; }

	/// For those who write, and read, by themselves; -1 if the file could not be made.
	int Descriptor() const noexcept { return mDescriptor; }

	/// Empty once it is renamed or removed.
	const std::string& TemporaryPath() const noexcept { return mTemporary; }

	/// What processes that were killed have left beside a file that is to be replaced goes; what is being written
	/// stays.
	static void RemoveAbandoned(const std::string& target);

	bool Write(std::span<const uint8_t> bytes);
	/// Brings the contents to the disk and to their place.
	bool Commit();

private:
	bool Check();
	void Open();
	bool Require(bool condition);

	std::string mPath; // behind all links
	std::string mTemporary;
	int mDescriptor = -1;
	int mError = 0;
};

/// The whole of that. Empty if it is done, else why it failed, as ErrorText().
TString ReplaceFileContents(const TString& path, std::span<const uint8_t> bytes);
