// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <mutex>
#include <string>
#include <vector>

/// What a command has to say beside its result: warnings, that something is not as a user would expect, and remarks.
/// They are printed on standard error when the work is done; a failure has its own one line instead. Any thread.
class TNotices {
public:
	/// From now on a warning is a failure.
	void BeStrict() noexcept { mIsStrict = true; }

	void Warn(std::string text);
	void Remark(std::string text);
	/// All of another one.
	void Take(TNotices& other);
	void Clear();

	/// To be called before anything comes to its place: throws a TWorkError of all warnings if they are failures.
	void Settle() const;
	/// Once each.
	void Print();

private:
	mutable std::mutex mLock;
	bool mIsStrict = false;
	std::vector<std::string> mWarnings;
	std::vector<std::string> mRemarks;
};

/// One line on standard error, whatever the text holds.
void PrintMessage(std::string text);
