// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"

class TBitmap;

/// The logo that reads on the theme's panels: in white letters, or in dark ones where panels are light.
TPtr<TBitmap> MakeVortelLogo();

/// "V2.1.5 (x86_64)"
TString VortelVersionLine();
