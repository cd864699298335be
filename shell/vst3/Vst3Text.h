// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/vsttypes.h>

#include <string_view>

/// Into a text of the interface: at most 127 units, no half of a surrogate pair, and always a zero at the end.
void CopyText(std::u16string_view text, Steinberg::Vst::String128 target);
