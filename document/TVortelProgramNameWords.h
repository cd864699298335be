// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The words of program names, separated by commas. The order decides which word a drawn number gives.
namespace TVortelProgramNameWords {

extern const char* const kAdverbs;
extern const char* const kAdjectives;
extern const char* const kNouns;

} // namespace TVortelProgramNameWords
