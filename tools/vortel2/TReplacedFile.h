// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

/// A file that is written beside its target and renamed over it when it is whole. Until Commit the target stays as it
/// was, and nothing stays behind when the object goes first or a signal ends the program. Throws TWorkError.
///
/// A target that is a symbolic link keeps being one: what it points to is replaced. Two at a time at most.
class TReplacedFile {
public:
	/// Refuses a target that is there and is no regular file, or that may not be written.
	explicit TReplacedFile(std::string target);
	~TReplacedFile();
	TReplacedFile(const TReplacedFile&) = delete;
	TReplacedFile& operator=(const TReplacedFile&) = delete;

	int Descriptor() const noexcept { return mDescriptor; }

	/// As the user wrote it.
	const std::string& Target() const noexcept { return mTarget; }

	void Write(std::span<const uint8_t> bytes) const;
	/// Brings the contents to the disk and the file to its place.
	void Commit();

	/// For the program's start: interrupted or hung up, the program removes the unfinished file and ends as usual; a
	/// file that grows past the user's limit is an error like a full disk.
	static void HandleSignals();

private:
	void Open();
	void SetMode();
	[[noreturn]] void Fail() const;

	std::string mTarget;
	std::string mPath;      // the target behind all links
	std::string mTemporary; // empty once renamed
	int mDescriptor = -1;
};
