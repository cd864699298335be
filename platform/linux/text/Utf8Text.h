// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <string>
#include <string_view>

/// Text from other programs: what is not UTF-8 is replaced byte by byte, the rest stays.
TString TextOfUtf8(std::string_view bytes);
/// Surrogate pairs are joined.
std::string Utf8Of(const TString& text);
TString TextOfLatin1(std::string_view bytes);
