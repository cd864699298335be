// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"

#include <cstdint>

class TView;
class TVortelDocument;

/// All controls of a device, as they stand under its tab. deviceIndex: 0 to 10. Main thread.
TPtr<TView> MakeVortelDevicePanel(TVortelDocument& document, int32_t deviceIndex);
