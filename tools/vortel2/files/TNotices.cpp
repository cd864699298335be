// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/TNotices.h"

#include "tools/vortel2/files/ToolErrors.h"

#include <algorithm>
#include <cstdio>

void TNotices::Warn(std::string text) {
	const std::lock_guard lock(mLock);
	mWarnings.push_back(std::move(text));
}

void TNotices::Remark(std::string text) {
	const std::lock_guard lock(mLock);
	mRemarks.push_back(std::move(text));
}

void TNotices::Take(TNotices& other) {
	const std::scoped_lock lock(mLock, other.mLock);
	mWarnings.insert(mWarnings.end(), other.mWarnings.begin(), other.mWarnings.end());
	mRemarks.insert(mRemarks.end(), other.mRemarks.begin(), other.mRemarks.end());
}

void TNotices::Clear() {
	const std::lock_guard lock(mLock);
	mWarnings.clear();
	mRemarks.clear();
}

void TNotices::Settle() const {
	const std::lock_guard lock(mLock);
	if (!mIsStrict || mWarnings.empty())
		return;
	std::string all;
	for (const std::string& warning : mWarnings)
		all += (all.empty() ? "" : "; ") + warning;
	throw TWorkError(all + " (--strict)");
}

void TNotices::Print() {
	const std::lock_guard lock(mLock);
	for (const std::string& warning : mWarnings)
		PrintMessage("warning: " + warning);
	for (const std::string& remark : mRemarks)
		PrintMessage(remark);
	mWarnings.clear();
	mRemarks.clear();
}

void PrintMessage(std::string text) {
	std::replace_if(
	    text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, ' ');
	std::fprintf(stderr, "vortel2: %s\n", text.c_str());
}
