// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// Makes a PNG of 8 bits with a palette (2 to 256 colours, each with an alpha of its own) of any other PNG. The target
/// may be the source. sampleFactor: every so many pixels are looked at; below 1 it follows from the size of the image.
/// Throws TReadableException; the target then stays as it was.
void QuantizePng(const TString& source, const TString& target, int sampleFactor, int numberOfColors);
