// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/manual/TCommandDescription.h"

/// What a shell reads in order to complete the program's commands, options, choices and files.
std::string MakeBashCompletions(const TCommandDescription& program);
std::string MakeZshCompletions(const TCommandDescription& program);
std::string MakeFishCompletions(const TCommandDescription& program);
