// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "tools/vortel2/options/TOptionText.h"

#include <cstdint>

/// The index of the program of that name, in either case, or of the one that begins so. Throws a TUsageError if there
/// is none or more than one. GUI thread.
int32_t ProgramNamed(TVortelDocument& document, const TOptionText& name);
