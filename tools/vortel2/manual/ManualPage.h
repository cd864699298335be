// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/manual/TCommandDescription.h"

/// The manual page of the program, in the language of man(7). No date: the same options make the same page.
std::string MakeManualPage(const TCommandDescription& program);
