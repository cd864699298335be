// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// The identity of a font on the system.
struct TFontInfo {
	TString mFile;
	TString mFamilyName;
	TString mPostScriptName;
	bool mBold = false;
	bool mItalic = false;

	friend bool operator==(const TFontInfo&, const TFontInfo&) = default;
};
