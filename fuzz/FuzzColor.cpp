// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"

// The text that themes keep colours in. What can be read is written in a form that reads the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	TColor color{};
	if (!TString::FromString(FuzzFramework::TextOf(data, size), color))
		return 0;
	for (const int part : {color.mRed, color.mGreen, color.mBlue})
		FuzzFramework::Require(part >= 0 && part <= 255);
	TColor again{};
	FuzzFramework::Require(TString::FromString(TString::ToString(color), again));
	FuzzFramework::Require(TString::ToString(again) == TString::ToString(color));
	return 0;
}
