// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

/// A file of the command line, and the argument that names it.
struct TNamedFile {
	std::string mArgument; // "OUT", "--plot"
	std::string mPath;     // empty: not given; "-": standard input or output
};

/// Throws a TUsageError if something would be written over a file that is read, also
/// through links, or two things to one place.
void CheckOutputs(std::span<const TNamedFile> outputs, std::span<const TNamedFile> inputs);
