// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TFileProperties.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <sys/stat.h>

namespace {

TString Text(const char* format, int32_t a, int32_t b, int32_t c) {
	std::array<char, 48> text;
	std::snprintf(text.data(), text.size(), format, a, b, c);
	return TString(text.data());
}

} // namespace

TString TFileProperties::TDate::Text() const {
	return ::Text("%04d-%02d-%02d", mYear, mMonth, mDay);
}

TString TFileProperties::TTime::Text() const {
	return ::Text("%02d:%02d:%02d", mHours, mMinutes, mSeconds);
}

TFileProperties::TFileProperties(const TString& folder, const TString& name)
    : mName(name),
      mFlags(name.StartsWithChar(u'.') ? kHidden : 0) {
	struct stat status;
	std::tm time{};
	if (stat((folder + name).CString(kFileSystemEncoding), &status) != 0 || !localtime_r(&status.st_mtime, &time))
		return;
	mSize = status.st_size;
	mDate = {time.tm_year + 1900, time.tm_mon + 1, time.tm_mday};
	mTime = {time.tm_hour, time.tm_min, time.tm_sec};
}
