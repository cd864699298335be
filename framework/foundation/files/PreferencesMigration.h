// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"

/// Copies the settings of the newest older version among the folders of `product` ("V2.0.9", "V2.1.3") into `version`,
/// the folder of this one, if that has no settings yet. The older folder stays as it is.
void FetchOlderPreferences(const TDirectory& product, const TDirectory& version);
