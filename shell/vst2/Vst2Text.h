// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <cstddef>

/// Texts of the interface: bytes in the platform's encoding that end with a zero, in records without a length. The
/// limit counts the zero. No character is cut in two.
namespace Vst2Text {

/// Does nothing without a target.
void Write(const TString& text, void* target, std::size_t limit);
TString Read(const void* source, std::size_t limit);

} // namespace Vst2Text
