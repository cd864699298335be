// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/options/TOptionText.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The one place that knows how the command-line library is told about our options.
using TOptionReader = std::function<void(const TOptionText&)>;

/// A word of the command line that no option names, such as IN. Where it is not required, the target stays as it was.
void AddArgument(
    CLI::App& app, const std::string& name, const std::string& help, std::string& target, bool isRequired = true);
/// An option with one value; given twice, the last one counts. No value is ever empty: the reader can rely on it.
void AddOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader);
/// An option whose every occurrence is read, in the order of the command line.
void AddRepeatedOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader);
/// An option without a value.
void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag);
/// An option whose number may be left out: the reader then gets an empty text. Needs JoinNumbers.
void AddNumberIfAnyOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader);

/// The command line's words from the last to the first, as the library takes them. A number behind one of the options
/// is tied to it; any other word there is none of the option's business. Throws a TUsageError for an empty word there.
std::vector<std::string> JoinNumbers(int argc, char** argv, const std::string& option);
