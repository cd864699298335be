// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/CommandLine.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/values/ProductInfo.h"
#include "tools/vortel2/commands/NameCommand.h"
#include "tools/vortel2/commands/OpenCommand.h"
#include "tools/vortel2/commands/ParameterCommands.h"
#include "tools/vortel2/commands/RenderCommand.h"
#include "tools/vortel2/commands/SnapshotCommand.h"
#include "tools/vortel2/commands/TBankCommands.h"
#include "tools/vortel2/editor/TSnapshotOptions.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/manual/Completions.h"
#include "tools/vortel2/manual/ManualPage.h"
#include "tools/vortel2/open/TOpenOptions.h"
#include "tools/vortel2/options/AddOption.h"
#include "tools/vortel2/options/Nearest.h"
#include "tools/vortel2/sound/TLevels.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr int32_t kMaximumNames = 1000000;

enum EExitStatus : int { kDone = 0, kFailed = 1, kBadUsage = 2 };

void PrintResult(const std::string& text) {
	const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
	if (!isWritten)
		throw TWorkError(std::string("standard output: ") + std::strerror(errno));
}

int Complain(const std::string& message, EExitStatus status) {
	PrintMessage(message);
	return status;
}

std::vector<std::string> NamesOfCommands(const CLI::App& app) {
	std::vector<std::string> names;
	for (const CLI::App* command :
	     app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); }))
		names.push_back(command->get_name());
	return names;
}

std::vector<std::string> NamesOfOptions(const CLI::App& app) {
	std::vector<std::string> names;
	for (const CLI::Option* option : app.get_options())
		if (!option->get_lnames().empty())
			names.push_back("--" + option->get_lnames().front());
	return names;
}

/// "bank show: ", in front of what is wrong there; nothing where no command is known.
std::string Place(const CLI::App& app) {
	std::string name;
	for (const CLI::App* command = &app; command->get_parent(); command = command->get_parent())
		name = command->get_name() + (name.empty() ? "" : " ") + name;
	return name.empty() ? name : name + ": ";
}

/// The innermost command on the command line.
const CLI::App& CommandOf(const CLI::App& app) {
	const auto commands = app.get_subcommands();
	return commands.empty() ? app : CommandOf(*commands.front());
}

/// What is wrong with a word that nothing takes.
std::string RefuseWord(const CLI::App& command, const std::string& word) {
	const std::string where = Place(command) + "\"" + word + "\" is ";
	if (word.size() > 1 && word[0] == '-') {
		const std::string option = word.substr(0, word.find('='));
		return where + "not an option" + DidYouMean(option, NamesOfOptions(command));
	}
	const std::vector<std::string> commands = NamesOfCommands(command);
	if (!commands.empty())
		return where + "not a command" + DidYouMean(word, commands);
	return where + "one argument too many";
}

/// The library's messages say what it has counted; a person looks for the option.
std::string InOurWords(const CLI::App& app, const CLI::ParseError& error) {
	const CLI::App& command = CommandOf(app);
	const std::string text = error.what();
	const std::string prefix = Place(command);
	const bool lacksCommand = text.starts_with("A subcommand");
	const std::vector<std::string> rest = app.remaining(true);
	if (!rest.empty() && (lacksCommand || dynamic_cast<const CLI::ExtrasError*>(&error)))
		return RefuseWord(command, rest.front());
	if (lacksCommand)
		return prefix + "a subcommand is missing: " + Listed(NamesOfCommands(command));
	const std::size_t missing = text.find(": 1 required ");
	if (missing != std::string::npos && text.ends_with(" missing"))
		return prefix + text.substr(0, missing) + " " + text.substr(missing + 13, text.size() - missing - 21) +
		       ": the value is missing";
	return prefix + text;
}

/// The commands; each does its work while the command line is being read, as its last option has been.
class TCommandLine {
public:
	TCommandLine() : mApp("Runs sound through Vortel 2, a step-sequenced multi effect.", "vortel2") {
		mApp.set_version_flag("--version", std::string("Vortel2 ") + ProductInfo::VersionText());
		mApp.footer("The exit status is 0 when the work is done, 1 when it failed (a file that cannot be read or "
		            "written), and 2 when "
		            "the command line was wrong. A message stands on one line of standard error.");
		mApp.require_subcommand(0, 1);
		AddRender();
		AddOpen();
		AddSnapshot();
		AddParams();
		AddText();
		AddValue();
		AddLevels();
		AddNames();
		mBank.AddTo(mApp, &PrintResult, mNotices);
		AddDescribe();
	}

	void Parse(int argc, char** argv) {
		mApp.parse(JoinNumbers(argc, argv, "--random"));
		if (mApp.get_subcommands().empty())
			throw TUsageError("a command is missing; vortel2 --help lists them");
	}

	/// When all is done.
	void PrintNotices() { mNotices.Print(); }

	std::string Explain(const CLI::ParseError& error) const { return InOurWords(mApp, error); }

	std::string Help() const { return mApp.help(); }

	std::string Version() const { return mApp.version(); }

private:
	void AddRender() {
		CLI::App* command = mApp.add_subcommand("render", "Run a sound file through one instance of the plug-in");
		mRender.AddOptions(*command);
		command->final_callback([this] { RunRender(mRender, mNotices); });
	}

	void AddOpen() {
		CLI::App* command = mApp.add_subcommand("open", "Open the editor in a window, with a loop playing round");
		mOpen.AddOptions(*command);
		command->final_callback([this] { RunOpen(mOpen, mNotices); });
	}

	void AddSnapshot() {
		CLI::App* command =
		    mApp.add_subcommand("snapshot", "Open the editor in memory, play a script on it, and write its picture");
		mSnapshot.AddOptions(*command);
		command->final_callback([this] { RunSnapshot(mSnapshot, mNotices); });
	}

	void AddParams() {
		CLI::App* command = mApp.add_subcommand("params", "List the 210 parameters: id, name, unit, default");
		mParams.AddOptions(*command);
		command->final_callback([this] { PrintResult(ListParameters(mParams)); });
	}

	void AddText() {
		CLI::App* command = mApp.add_subcommand("text", "Print the texts that a parameter shows for values");
		mText.AddOptions(*command, "V", "normalised values, 0 to 1");
		command->final_callback([this] { PrintResult(ShowTexts(mText)); });
	}

	void AddValue() {
		CLI::App* command = mApp.add_subcommand("value", "Print the normalised values that texts stand for");
		mValue.AddOptions(*command, "TEXT", "texts as the parameter shows them");
		command->final_callback([this] {
			const TParsedTexts parsed = ParseTexts(mValue);
			PrintResult(parsed.mLines);
			if (parsed.mErrors > 0)
				throw TWorkError("value: parameter " + mValue.mId + " does not read " + Count(parsed.mErrors));
		});
	}

	void AddLevels() {
		CLI::App* command = mApp.add_subcommand("levels", "Print length, peak and RMS of sound files");
		command->add_option("FILE", mFiles, "sound files, mono or stereo")->required();
		command->final_callback([this] {
			for (const std::string& file : mFiles) {
				if (file.empty())
					TOptionText("FILE", file).FailEmpty();
				TSoundFileReader reader(file);
				PrintResult(file + ": " + TLevels::Measure(reader).InWords() + "\n");
				if (!reader.Shortfall().empty())
					mNotices.Warn(reader.Shortfall());
			}
		});
	}

	void AddNames() {
		CLI::App* command = mApp.add_subcommand("names", "Make up names for programs");
		AddOption(*command, "--count", "N", "how many; default 1", [this](const TOptionText& text) {
			mNameCount = text.Integer(0, kMaximumNames);
		});
		AddOption(*command, "--seed", "N", "the same names for the same N", [this](const TOptionText& text) {
			mNameSeed = text.RandomSeed();
		});
		command->final_callback([this] { PrintResult(MakeNames(mNameCount, mNameSeed)); });
	}

	/// What an installation has beside the program. Hidden: the build asks for it, not a user.
	void AddDescribe() {
		CLI::App* command =
		    mApp.add_subcommand("describe", "Print the manual page or a shell's completions")->group("");
		command->add_option("FORM", mForm)->required();
		command->final_callback([this] {
			static constexpr std::string_view kForms[] = {"man", "bash", "zsh", "fish"};
			static constexpr std::string (*kMake[])(const TCommandDescription&) = {
			    &MakeManualPage, &MakeBashCompletions, &MakeZshCompletions, &MakeFishCompletions};
			const auto form = static_cast<std::size_t>(TOptionText("FORM", mForm).Choice(kForms));
			PrintResult(kMake[form](TCommandDescription::Of(mApp)));
		});
	}

	std::string Count(int errors) const {
		return std::to_string(errors) + " of " + std::to_string(mValue.mArguments.size()) + " texts";
	}

	CLI::App mApp;
	TNotices mNotices;
	TRenderOptions mRender;
	TOpenOptions mOpen;
	TSnapshotOptions mSnapshot;
	TParameterList mParams;
	TParameterQuery mText;
	TParameterQuery mValue;
	std::vector<std::string> mFiles;
	TBankCommands mBank;
	int32_t mNameCount = 1;
	std::optional<uint32_t> mNameSeed;
	std::string mForm;
};

int Run(TCommandLine& commandLine, int argc, char** argv) {
	try {
		commandLine.Parse(argc, argv);
		commandLine.PrintNotices();
	} catch (const CLI::CallForHelp&) {
		PrintResult(commandLine.Help());
	} catch (const CLI::CallForVersion&) {
		PrintResult(commandLine.Version() + "\n");
	} catch (const CLI::ParseError& error) {
		return Complain(commandLine.Explain(error), kBadUsage);
	}
	return kDone;
}

} // namespace

int RunCommandLine(int argc, char** argv) noexcept {
	try {
		TCommandLine commandLine;
		return Run(commandLine, argc, argv);
	} catch (const TUsageError& error) {
		return Complain(error.what(), kBadUsage);
	} catch (const TReadableException& error) {
		return Complain(error.Message().CString(), kFailed);
	} catch (const std::bad_alloc&) {
		return Complain("out of memory", kFailed);
	} catch (const std::exception& error) {
		return Complain(error.what(), kFailed);
	}
}
