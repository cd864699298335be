// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "framework/foundation/threads/TThreadManager.h"

/// Base of what lives on the audio side. Its observers run on the audio thread: a change made elsewhere arrives through
/// the command queue at the start of a process call, never in the middle of a block.
class TAudioObject : public TObserver {
protected:
	TAudioObject() : TObserver(kAudioThread) {}
};
