// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/sound/TSoundSource.h"

/// Four bars of drums at 120 beats per minute and 44100 Hz, made of sines and noise: kick, snare, hats, with swing,
/// ghost notes and a fill. The same samples each time; the ends meet, so it can be looped. Peak below full scale.
TStereoSound MakeDemoLoop();
