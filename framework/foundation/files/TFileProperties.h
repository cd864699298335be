// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>

/// What a listing knows of a file. Date and time are those of the last change, in local time; invalid, with a size of
/// 0, for a file that is not there.
class TFileProperties final : public TReferenceCountable {
public:
	static constexpr int32_t kHidden = 4; // the name begins with "."

	struct TDate {
		int32_t mYear = -1;
		int32_t mMonth = -1;
		int32_t mDay = -1;

		bool IsValid() const noexcept { return mYear >= 0; }

		/// "2026-07-29"
		TString Text() const;
	};

	struct TTime {
		int32_t mHours = -1;
		int32_t mMinutes = -1;
		int32_t mSeconds = -1;

		bool IsValid() const noexcept { return mHours >= 0; }

		/// "09:05:00"
		TString Text() const;
	};

	TFileProperties(const TString& folder, const TString& name);

	TString mName;
	TDate mDate;
	TTime mTime;
	int64_t mSize = 0; // bytes
	int32_t mFlags = 0;
};
