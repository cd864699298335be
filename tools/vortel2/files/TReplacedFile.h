// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TFileReplacement.h"

#include <cstdint>
#include <span>
#include <string>

/// A file that is written beside its target and renamed over it when it is whole: a TFileReplacement that throws
/// TWorkError, and that a signal which ends the program does not leave behind. Two at a time at most.
class TReplacedFile {
public:
	/// Refuses a target that is there and is no regular file, or that may not be written.
	explicit TReplacedFile(std::string target);
	~TReplacedFile();
	TReplacedFile(const TReplacedFile&) = delete;
	TReplacedFile& operator=(const TReplacedFile&) = delete;

	int Descriptor() const noexcept { return mReplacement.Descriptor(); }

	/// As the user wrote it.
	const std::string& Target() const noexcept { return mTarget; }

	void Write(std::span<const uint8_t> bytes);
	/// Brings the contents to the disk and the file to its place.
	void Commit();

	/// For the program's start: interrupted or hung up, the program removes the unfinished file and ends as usual; a
	/// file that grows past the user's limit is an error like a full disk.
	static void HandleSignals();

private:
	[[noreturn]] void Fail() const;

	std::string mTarget;
	TFileReplacement mReplacement;
};
