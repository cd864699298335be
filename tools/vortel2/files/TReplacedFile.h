// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TFileReplacement.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// A file that is written beside its target and renamed over it when it is whole: a TFileReplacement that throws
/// TWorkError, and that a signal which ends the program does not leave behind; what a killed run has left in the folder
/// goes. The target "-" is standard output, which gets everything at once when it is whole.
class TReplacedFile {
public:
	/// Refuses a target that is there and is no regular file, or that may not be written, and a terminal.
	explicit TReplacedFile(std::string target);
	~TReplacedFile();
	TReplacedFile(const TReplacedFile&) = delete;
	TReplacedFile& operator=(const TReplacedFile&) = delete;

	int Descriptor() const noexcept { return mReplacement ? mReplacement->Descriptor() : mSpool; }

	/// As the user wrote it; in words for standard output.
	const std::string& Target() const noexcept { return mTarget; }

	void Write(std::span<const uint8_t> bytes);
	/// Brings the contents to the disk and the file to its place.
	void Commit();

	/// For the program's start: interrupted or hung up, the program removes the unfinished files and ends as usual; a
	/// file that grows past the user's limit is an error like a full disk.
	static void HandleSignals();

private:
	[[noreturn]] void Fail() const;

	std::string mTarget;
	std::optional<TFileReplacement> mReplacement; // none for standard output
	int mSpool = -1;
};
