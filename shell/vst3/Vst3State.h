// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TStream.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/ibstream.h>

/// What a host keeps with its project: a 32-bit length in the machine's byte order, and that many bytes.
namespace Vst3State {

/// False if the host does not take all of it.
bool Write(Steinberg::IBStream& stream, const TStream& chunk);

/// False, with the chunk as far as it got, if the length is missing or negative or the stream ends before it. The
/// length is not trusted: memory grows with what has really been read.
bool Read(Steinberg::IBStream& stream, TStream& chunk);

} // namespace Vst3State
