// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// What the option tables say of a command, so that the manual page and the shells' completions follow them.
struct TCommandDescription {
	enum class EValue { kNone, kText, kChoice, kFile, kFolder };

	/// An option, or an argument that is known by its place.
	struct TArgument {
		std::string mName; ///< with its dashes, or of an argument in capitals
		std::string mValueName;
		std::string mHelp;
		EValue mValue = EValue::kNone;
		std::vector<std::string> mChoices;
		bool mIsRequired = false;
		bool mIsRepeatable = false;
	};

	std::string mName;
	std::string mHelp;
	std::string mFooter;
	std::vector<TArgument> mArguments;
	std::vector<TArgument> mOptions;
	std::vector<TCommandDescription> mCommands;

	/// Of a command or the program itself; what is hidden from the help is left out here, too.
	static TCommandDescription Of(const CLI::App& app);
};
