// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The whole program but for its process-wide set-up: reads the command line, does the work, prints the result on
/// standard output and one line on standard error if something is wrong.
/// Returns the exit status: 0 done, 1 the work failed, 2 the command line was wrong.
int RunCommandLine(int argc, char** argv) noexcept;
