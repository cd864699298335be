// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/manual/ManualPage.h"

#include "framework/foundation/values/ProductInfo.h"

#include <algorithm>

namespace {

using TArgument = TCommandDescription::TArgument;

/// What the option tables cannot know. Written in man(7).
constexpr const char* kDescription = R"(.SH DESCRIPTION
The program hosts one instance of the plug-in and is a host like any other: the same engine, the same parameters, the same
editor.
.B vortel2 render
runs sound files through it,
.B vortel2 open
shows the editor in a window and plays a loop round,
.B vortel2 snapshot
draws the editor without a screen, and
.B vortel2 bank
looks after files of programs and banks.
.PP
Standard output carries the result and nothing else. An output file is written beside its place and renamed when it is whole; a
command that fails leaves none.
.PP
A row of steps is a text:
.B *
begins a block,
.B +
continues it,
.B \-
is empty. A device is named by its number, 0 to 10, or by the prefix that hosts show: RND, MOD, TAP, RET, REV, STR, LFI, DIS, GAT,
DLY, SHF; parameters of the master stage begin with MST.
)";

constexpr const char* kFilesAndExamples = R"(.SH FILES
.TP
.I ~/.config/Vortel2/V2.1.5/Config.xml
the preferences;
.B vortel2 open
and the plug-in read and write them, the other commands do not
.TP
.I ~/.local/state/Vortel2/Vortel2.log
the log
.PP
XDG_CONFIG_HOME and XDG_STATE_HOME move them.
.SH EXAMPLES
A drum loop made by the program itself, with a roll in every bar, and its picture:
.PP
.nf
.RS
vortel2 render \-\-demo out.wav \-\-steps 'RET=\-\-\-\-*+++\-\-\-\-\-\-\-\-' \-\-param 'RET:Decay=30' \-\-plot out.png
.RE
.fi
.PP
The same for a loop of your own, half of it wet:
.PP
.nf
.RS
vortel2 render loop.wav out.wav \-\-steps 'RET=\-\-\-\-*+++\-\-\-\-\-\-\-\-' \-\-param MST:Mix=50
.RE
.fi
)";

std::string Escaped(const std::string& text) {
	std::string escaped;
	for (const char c : text) {
		if (c == '\\')
			escaped += "\\e";
		else if (c == '-')
			escaped += "\\-";
		else if (c == '\'')
			escaped += "\\(aq";
		else if (c == '.' && (escaped.empty() || escaped.back() == '\n'))
			escaped += "\\&.";
		else
			escaped += c;
	}
	return escaped;
}

std::string Synopsis(const std::string& path, const TCommandDescription& command) {
	std::string line = "\\fB" + Escaped(path) + "\\fR";
	if (command.mOptions.size() > 1) // more than the help
		line += " [\\fIOPTION\\fR]...";
	for (const TArgument& argument : command.mArguments) {
		const std::string word = "\\fI" + Escaped(argument.mName) + "\\fR" + (argument.mIsRepeatable ? "..." : "");
		line += argument.mIsRequired ? " " + word : " [" + word + "]";
	}
	return line;
}

std::string Entry(const std::string& head, const std::string& help) {
	return ".TP\n" + head + "\n" + Escaped(help) + "\n";
}

std::string Entries(const TCommandDescription& command, bool withHelp) {
	std::string text;
	for (const TArgument& argument : command.mArguments)
		text += Entry("\\fI" + Escaped(argument.mName) + "\\fR", argument.mHelp);
	for (const TArgument& option : command.mOptions) {
		if (!withHelp && option.mName == "--help")
			continue;
		const std::string value = option.mValueName.empty() ? "" : " \\fI" + Escaped(option.mValueName) + "\\fR";
		text += Entry("\\fB" + Escaped(option.mName) + "\\fR" + value, option.mHelp);
	}
	return text;
}

/// Calls take(path, command) for each command that does something, those of a group after one another.
template <class TTake>
void ForEachCommand(const TCommandDescription& parent, const std::string& path, const TTake& take) {
	for (const TCommandDescription& command : parent.mCommands) {
		const std::string name = path + " " + command.mName;
		if (command.mCommands.empty())
			take(name, command);
		else
			ForEachCommand(command, name, take);
	}
}

} // namespace

std::string MakeManualPage(const TCommandDescription& program) {
	std::string title = program.mName;
	std::transform(title.begin(), title.end(), title.begin(), [](char c) { return 'a' <= c && c <= 'z' ? c - 32 : c; });
	std::string page = ".\\\" Made from the program's own tables of options.\n.TH " + title + " 1 \"\" \"" +
	                   ProductInfo::kProductName + " " + ProductInfo::VersionText() + "\" \"User Commands\"\n";
	page += ".SH NAME\n" + program.mName + " \\- " + Escaped(program.mHelp) + "\n.SH SYNOPSIS\n.nf\n";
	ForEachCommand(program, program.mName, [&](const std::string& path, const TCommandDescription& command) {
		page += Synopsis(path, command) + "\n";
	});
	page += ".fi\n";
	page += kDescription;
	page += ".SH OPTIONS\n" + Entries(program, true) + ".SH COMMANDS\n";
	ForEachCommand(program, program.mName, [&](const std::string& path, const TCommandDescription& command) {
		page += ".SS " + Synopsis(path, command) + "\n" + Escaped(command.mHelp) + ".\n" + Entries(command, false);
	});
	if (!program.mFooter.empty())
		page += ".SH EXIT STATUS\n" + Escaped(program.mFooter) + "\n";
	return page + kFilesAndExamples;
}
