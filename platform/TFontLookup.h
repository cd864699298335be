// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

struct TFontFile {
	TString mPath; // empty: not found
	int mFaceIndex = 0;
};

/// From a font's names to a file. GUI thread.
class TFontLookup {
public:
	virtual ~TFontLookup() = default;

	/// By PostScript name where one is given, else by family and style. A font that merely resembles is not found.
	virtual TFontFile Find(const TString& family, const TString& postScriptName, bool bold, bool italic) = 0;
};
