// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <string_view>

/// The path that a "file:" URI names; empty for any other and for one whose escapes are wrong.
TString PathOfUri(std::string_view uri);
