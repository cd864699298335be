// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/manual/TCommandDescription.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string_view>

namespace {

using EValue = TCommandDescription::EValue;
using TArgument = TCommandDescription::TArgument;

/// "host|gate|latch" is a list of words to type, "ID=V|NAME=TEXT" is not.
std::vector<std::string> Choices(const std::string& valueName) {
	constexpr std::string_view kTyped = "abcdefghijklmnopqrstuvwxyz0123456789-|";
	if (valueName.find('|') == std::string::npos || valueName.find_first_not_of(kTyped) != std::string::npos)
		return {};
	return CLI::detail::split(valueName, '|');
}

EValue KindOf(const std::string& valueName) {
	if (!Choices(valueName).empty())
		return EValue::kChoice;
	if (valueName == "FOLDER")
		return EValue::kFolder;
	const std::string_view stem = std::string_view(valueName).substr(0, valueName.find('.'));
	return stem == "FILE" || stem == "IN" || stem == "OUT" ? EValue::kFile : EValue::kText;
}

TArgument DescribeArgument(const CLI::Option& option) {
	const std::string name = option.get_name(true);
	const bool isRepeatable = option.get_items_expected_max() > 1;
	return {name, name, option.get_description(), KindOf(name), Choices(name), option.get_required(), isRepeatable};
}

TArgument DescribeOption(const CLI::Option& option) {
	TArgument argument{"--" + option.get_lnames().front(), "", option.get_description(), EValue::kNone, {}};
	argument.mIsRequired = option.get_required();
	argument.mIsRepeatable = option.get_items_expected_max() > 1;
	const std::string typeName = option.get_type_name();
	// One whose value may be left out counts as a flag, but its name for the value is ours.
	if (option.get_items_expected_max() > 0 || typeName.starts_with('['))
		argument.mValueName = typeName;
	if (option.get_items_expected_max() > 0) {
		argument.mValue = KindOf(typeName);
		argument.mChoices = Choices(typeName);
	}
	return argument;
}

} // namespace

TCommandDescription TCommandDescription::Of(const CLI::App& app) {
	TCommandDescription description{app.get_name(), app.get_description(), app.get_footer(), {}, {}, {}};
	for (const CLI::Option* option : app.get_options({})) {
		if (option->get_group().empty())
			continue;
		if (option->get_positional())
			description.mArguments.push_back(DescribeArgument(*option));
		else
			description.mOptions.push_back(DescribeOption(*option));
	}
	for (const CLI::App* command : app.get_subcommands(std::function<bool(const CLI::App*)>{}))
		if (!command->get_group().empty())
			description.mCommands.push_back(Of(*command));
	return description;
}
