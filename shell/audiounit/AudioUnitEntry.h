// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AudioComponent.h"

class TAudioUnitPluginShell;

/// What a host finds behind a component's factory function.
namespace AudioUnitEntry {

/// Makes the shell of an instance, in a storage of its own; null if it cannot be made. Any thread.
using TMaker = TAudioUnitPluginShell* (*)(AudioComponentInstance instance);
/// Ends it, and its storage.
using TReleaser = void (*)(TAudioUnitPluginShell* shell);

/// A record for one instance, still closed; freed by its Close. Null when there is no memory.
AudioComponentPlugInInterface* NewPlugIn(TMaker make, TReleaser release) noexcept;

} // namespace AudioUnitEntry
