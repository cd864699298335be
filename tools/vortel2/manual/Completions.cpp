// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/manual/Completions.h"

#include <string_view>

namespace {

using TArgument = TCommandDescription::TArgument;
using EValue = TCommandDescription::EValue;

constexpr const char* kBashFiles = "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\")";
constexpr const char* kBashFolders = "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\")";
/// To bash the sign in "--format=pcm16" is a word.
constexpr const char* kBashWords =
    R"(	local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= group
	if [[ $word == = ]]; then
		word=
	elif [[ $previous == = ]]; then
		previous=${COMP_WORDS[COMP_CWORD-2]}
	fi
)";
constexpr const char* kOrigin = "# Made from the program's own tables of options.\n";

std::string Joined(const std::vector<std::string>& words) {
	std::string text;
	for (const std::string& word : words)
		text += (text.empty() ? "" : " ") + word;
	return text;
}

std::string CommandNames(const TCommandDescription& command) {
	std::vector<std::string> names;
	for (const TCommandDescription& inner : command.mCommands)
		names.push_back(inner.mName);
	return Joined(names);
}

/// Each of the characters gets a backslash.
std::string WithBackslashes(std::string_view text, std::string_view characters) {
	std::string escaped;
	for (const char c : text)
		escaped += (characters.find(c) == std::string_view::npos ? "" : "\\") + std::string(1, c);
	return escaped;
}

/// In single quotes, as bash and zsh read them: those inside end the quotes, stand alone, and begin them anew.
std::string Quoted(std::string_view text) {
	std::string quoted = "'";
	for (const char c : text)
		quoted += c == '\'' ? "'\\''" : std::string(1, c);
	return quoted + "'";
}

bool HasFiles(const TCommandDescription& command) {
	for (const TArgument& argument : command.mArguments)
		if (argument.mValue == EValue::kFile)
			return true;
	return false;
}

std::string BashWords(const std::string& words) {
	return "COMPREPLY=($(compgen -W '" + words + "' -- \"$word\"))";
}

std::string BashValue(const TArgument& option) {
	switch (option.mValue) {
	case EValue::kChoice:
		return BashWords(Joined(option.mChoices));
	case EValue::kFile:
		return kBashFiles;
	case EValue::kFolder:
		return kBashFolders;
	default:
		return ":"; // nothing that could be proposed
	}
}

/// A branch for the command, and one for each command below it.
std::string BashBranches(const TCommandDescription& command, const std::string& path) {
	std::string text = "\t" + Quoted(path) + ")\n\t\tcase $previous in\n";
	std::string options;
	for (const TArgument& option : command.mOptions) {
		options += (options.empty() ? "" : " ") + option.mName;
		if (option.mValue != EValue::kNone)
			text += "\t\t" + option.mName + ") " + BashValue(option) + "; return ;;\n";
	}
	const std::string beside = !command.mCommands.empty() ? BashWords(CommandNames(command))
	                           : HasFiles(command)        ? kBashFiles
	                                                      : "";
	text.append("\t\tesac\n\t\tif [[ $word == -* ]]; then\n\t\t\t").append(BashWords(options));
	if (!beside.empty())
		text.append("\n\t\telse\n\t\t\t").append(beside);
	text.append("\n\t\tfi ;;\n");
	for (const TCommandDescription& inner : command.mCommands)
		text += BashBranches(inner, path.empty() ? inner.mName : path + " " + inner.mName);
	return text;
}

/// The names of commands that have commands below them, for a pattern.
std::string Groups(const TCommandDescription& program) {
	std::vector<std::string> names;
	for (const TCommandDescription& command : program.mCommands)
		if (!command.mCommands.empty())
			names.push_back(command.mName);
	return names.empty() ? "''" : Joined(names);
}

std::string ZshAction(const TArgument& argument) {
	switch (argument.mValue) {
	case EValue::kChoice:
		return "(" + Joined(argument.mChoices) + ")";
	case EValue::kFile:
		return "_files";
	case EValue::kFolder:
		return "_files -/";
	default:
		return " ";
	}
}

std::string ZshArguments(const TCommandDescription& command) {
	std::string text;
	for (const TArgument& option : command.mOptions) {
		std::string described =
		    (option.mIsRepeatable ? "*" : "") + option.mName + "[" + WithBackslashes(option.mHelp, "[]:\\") + "]";
		if (option.mValue != EValue::kNone)
			described += ":" + WithBackslashes(option.mValueName, "[]:\\") + ":" + ZshAction(option);
		text += " \\\n\t\t" + Quoted(described);
	}
	for (const TArgument& argument : command.mArguments) {
		const std::string message = WithBackslashes(argument.mHelp, ":\\");
		text += " \\\n\t\t" + Quoted((argument.mIsRepeatable ? "*:" : ":") + message + ":" + ZshAction(argument));
	}
	return text;
}

/// A function for the command; those of the commands below it follow.
std::string ZshFunction(const TCommandDescription& command, const std::string& name) {
	std::string text = name + "() {\n";
	std::string inners;
	if (command.mCommands.empty()) {
		text += "\t_arguments" + ZshArguments(command) + "\n}\n";
		return text;
	}
	text += "\tlocal state line\n\tlocal -a commands=(\n";
	for (const TCommandDescription& inner : command.mCommands)
		text += "\t\t" + Quoted(inner.mName + ":" + WithBackslashes(inner.mHelp, ":\\")) + "\n";
	text += "\t)\n\t_arguments -C" + ZshArguments(command) +
	        " \\\n\t\t'1:command:->command' \\\n\t\t'*::argument:->argument'\n\tcase $state in\n"
	        "\tcommand) _describe command commands ;;\n\targument)\n\t\tcase $words[1] in\n";
	for (const TCommandDescription& inner : command.mCommands) {
		const std::string function = name + "-" + inner.mName;
		text += "\t\t" + inner.mName + ") " + function + " ;;\n";
		inners += "\n" + ZshFunction(inner, function);
	}
	return text + "\t\tesac ;;\n\tesac\n}\n" + inners;
}

/// In single quotes, as fish reads them.
std::string FishQuoted(std::string_view text) {
	return "'" + WithBackslashes(text, "\\'") + "'";
}

std::string FishAction(const TArgument& option) {
	switch (option.mValue) {
	case EValue::kNone:
		return "";
	case EValue::kChoice:
		return " -x -a " + FishQuoted(Joined(option.mChoices));
	case EValue::kFile:
		return " -r -F";
	case EValue::kFolder:
		return " -x -a '(__fish_complete_directories)'";
	default:
		return " -x";
	}
}

std::string FishLines(const TCommandDescription& program, const TCommandDescription& command, const std::string& when) {
	// What belongs to a group of commands is over as soon as one of them has been named.
	const bool isProgram = &command == &program;
	std::string here = when;
	if (!command.mCommands.empty())
		here += (isProgram ? "" : "; and ") + ("not __fish_seen_subcommand_from " + CommandNames(command));
	const std::string start = "complete -c " + program.mName + " -n " + FishQuoted(here);
	std::string text;
	for (const TArgument& option : command.mOptions)
		text += start + " -l " + option.mName.substr(2) + FishAction(option) + " -d " + FishQuoted(option.mHelp) + "\n";
	if (HasFiles(command))
		text += start + " -F\n";
	for (const TCommandDescription& inner : command.mCommands)
		text += start + " -a " + inner.mName + " -d " + FishQuoted(inner.mHelp) + "\n";
	for (const TCommandDescription& inner : command.mCommands)
		text += FishLines(
		    program, inner, (isProgram ? "" : when + "; and ") + ("__fish_seen_subcommand_from " + inner.mName));
	return text;
}

} // namespace

std::string MakeBashCompletions(const TCommandDescription& program) {
	const std::string function = "_" + program.mName;
	return kOrigin + function + "() {\n" + kBashWords +
	       "\tif ((COMP_CWORD > 1)); then\n\t\tcommand=${COMP_WORDS[1]}\n\tfi\n\tfor group in " + Groups(program) +
	       "; do\n\t\tif [[ $command == \"$group\" ]] && ((COMP_CWORD > 2)); then\n"
	       "\t\t\tcommand+=\" ${COMP_WORDS[2]}\"\n\t\tfi\n\tdone\n\tCOMPREPLY=()\n\tcase $command in\n" +
	       BashBranches(program, "") + "\tesac\n}\ncomplete -F " + function + " " + program.mName + "\n";
}

std::string MakeZshCompletions(const TCommandDescription& program) {
	const std::string function = "_" + program.mName;
	return "#compdef " + program.mName + "\n" + kOrigin + "\n" + ZshFunction(program, function) + "\n" + function +
	       " \"$@\"\n";
}

std::string MakeFishCompletions(const TCommandDescription& program) {
	return kOrigin + ("complete -c " + program.mName + " -f\n") + FishLines(program, program, "");
}
