// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// Sizes of texts in the fonts of the interface, in logical pixels, for views that have no surface at hand. 0 while
/// there is no font. Main thread.
namespace TextMetrics {

int Width(const TString& text, int font);
int Height(const TString& text, int font);
int LineHeight(int font);

/// The text if it is no wider than that, else its beginning, or its two ends, with an ellipsis for what is missing.
TString CutAtEnd(const TString& text, int font, int width);
TString CutInMiddle(const TString& text, int font, int width);

} // namespace TextMetrics
