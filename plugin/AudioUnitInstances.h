// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AudioComponent.h"

/// The entry of Audio Units: what a host calls once for each instance that it wants. Nothing of the instance is made
/// before the record's Open. Null when there is no memory.
extern "C" AudioComponentPlugInInterface* AUPluginFactory(const AudioComponentDescription* description);
