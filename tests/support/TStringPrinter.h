// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <ostream>

/// How a failed expectation shows a text.
inline void PrintTo(const TString& text, std::ostream* stream) {
	std::string bytes;
	text.ToBytes(bytes, kUtf8Encoding);
	*stream << '"' << bytes << '"';
}
