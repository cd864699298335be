// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/options/AddOption.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// What an unset variable in a script leaves.
const std::string& NotEmpty(const std::string& name, const std::string& text) {
	if (text.empty())
		TOptionText(name, text).FailEmpty();
	return text;
}

} // namespace

void AddArgument(
    CLI::App& app, const std::string& name, const std::string& help, std::string& target, bool isRequired) {
	const auto read = [name, &target](const std::string& text) { target = NotEmpty(name, text); };
	app.add_option_function<std::string>(name, read, help)->required(isRequired)->type_name("");
}

void AddOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader) {
	const auto read = [name, reader = std::move(reader)](const std::string& text) {
		reader({name, NotEmpty(name, text)});
	};
	app.add_option_function<std::string>(name, read, help)->take_last()->type_name(valueName);
}

void AddRepeatedOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader) {
	const auto read = [name, reader = std::move(reader)](const std::vector<std::string>& texts) {
		for (const std::string& text : texts)
			reader({name, NotEmpty(name, text)});
	};
	// Without the limit such an option would swallow the file names behind it.
	app.add_option_function<std::vector<std::string>>(name, read, help)->allow_extra_args(false)->type_name(valueName);
}

void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag) {
	app.add_flag(name, flag, help);
}

void AddNumberIfAnyOption(
    CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
    TOptionReader reader) {
	// To the library it is a flag: those take a value only when it is tied to them.
	const auto read = [name, reader = std::move(reader)](const CLI::results_t& texts) {
		reader({name, texts.back() == "true" ? "" : texts.back()});
		return true;
	};
	app.add_option(name, CLI::callback_t(read), help)->expected(0)->take_last()->type_name(valueName);
}

std::vector<std::string> JoinNumbers(int argc, char** argv, const std::string& option) {
	std::vector<std::string> words(argv + 1, argv + argc);
	for (std::size_t i = 0; i + 1 < words.size(); ++i) {
		if (words[i] == option)
			NotEmpty(option, words[i + 1]);
		if (words[i] == option && TOptionText(option, words[i + 1]).IsNumber()) {
			words[i] += "=" + words[i + 1];
			words.erase(words.begin() + static_cast<std::ptrdiff_t>(i) + 1);
		}
	}
	std::reverse(words.begin(), words.end());
	return words;
}
