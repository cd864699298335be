// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// Text that may hold anything, for places where XML allows only some characters. What XML does not know stands as
/// "&#" + decimal code + ";", each UTF-16 unit on its own, so that also half a surrogate pair survives.
namespace XmlText {

TString Encode(const TString& text);

/// Turns back what Encode makes. A reference to a character that XML does know was text, and stays.
TString Decode(const TString& text);

} // namespace XmlText
