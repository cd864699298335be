// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// The name of the UI scale in the file of the application's preferences, which is read for this value alone: it is
/// wanted before there are preferences, and programs that keep none of the port's may still have it set by hand. Empty
/// where it is not given; a file that cannot be read is logged.
TString EarlyScaleFactor();
