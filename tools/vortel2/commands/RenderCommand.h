// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/render/TRenderOptions.h"

class TNotices;

/// Does what the options say. Throws TUsageError or TWorkError; then no output file is there that was not before.
void RunRender(const TRenderOptions& options, TNotices& notices);
