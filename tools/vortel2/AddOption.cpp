// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/AddOption.h"

#include <CLI/CLI.hpp>

#include <utility>
#include <vector>

void AddOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader) {
	const auto read = [name, reader = std::move(reader)](const std::string& text) { reader({name, text}); };
	app.add_option_function<std::string>(name, read, help)->take_last()->type_name(valueName);
}

void AddRepeatedOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader) {
	const auto read = [name, reader = std::move(reader)](const std::vector<std::string>& texts) {
		for (const std::string& text : texts)
			reader({name, text});
	};
	// Without the limit such an option would swallow the file names behind it.
	app.add_option_function<std::vector<std::string>>(name, read, help)->allow_extra_args(false)->type_name(valueName);
}

void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag) {
	app.add_flag(name, flag, help);
}
