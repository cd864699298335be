// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TProgramDialog.h"

#include "platform/linux/dialogs/TSystemFileDialog.h"
#include "platform/linux/text/Utf8Text.h"

#include <cstdlib>
#include <string_view>

namespace {

using TCommand = std::vector<std::string>;

/// The folder, and when saving the name in it.
std::string StartOf(const TFileDialogSettings& settings) {
	return Utf8Of(settings.mSave ? settings.mDirectory.FilePath(settings.mName) : settings.mDirectory.Path());
}

std::string JoinedPatterns(const TFileDialogSettings& settings) {
	std::string joined;
	for (const TString& pattern : TSystemFileDialog::PatternsOf(settings.mFilter))
		joined += (joined.empty() ? "" : " ") + Utf8Of(pattern);
	return joined;
}

TCommand KdialogCommand(const std::string& program, const TFileDialogSettings& settings, uint32_t parentWindow) {
	TCommand command{program, "--title", Utf8Of(settings.mCaption)};
	if (parentWindow != 0)
		command.insert(command.end(), {"--attach", std::to_string(parentWindow)});
	command.insert(command.end(), {settings.mSave ? "--getsavefilename" : "--getopenfilename", StartOf(settings)});
	const std::string patterns = JoinedPatterns(settings);
	if (!patterns.empty())
		command.push_back(patterns);
	return command;
}

TCommand ZenityCommand(const std::string& program, const TFileDialogSettings& settings) {
	TCommand command{
	    program, "--file-selection", "--title=" + Utf8Of(settings.mCaption), "--filename=" + StartOf(settings)};
	if (settings.mSave)
		command.insert(command.end(), {"--save", "--confirm-overwrite"});
	const std::string patterns = JoinedPatterns(settings);
	if (!patterns.empty())
		command.push_back("--file-filter=" + patterns);
	return command;
}

/// Each desktop's own program first.
TCommand CommandFor(const TFileDialogSettings& settings, uint32_t parentWindow) {
	const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
	const bool isKde = desktop && std::string_view(desktop).find("KDE") != std::string_view::npos;
	const std::string kdialog = TChildProcess::FindProgram("kdialog");
	const std::string zenity = TChildProcess::FindProgram("zenity");
	if (!kdialog.empty() && (isKde || zenity.empty()))
		return KdialogCommand(kdialog, settings, parentWindow);
	return zenity.empty() ? TCommand() : ZenityCommand(zenity, settings);
}

} // namespace

TProgramDialog::TProgramDialog(const TFileDialogSettings& settings, uint32_t parentWindow) {
	const TCommand command = CommandFor(settings, parentWindow);
	if (command.empty())
		return;
	// By this variable a dialog knows which window it stands over.
	mpProgram = std::make_unique<TChildProcess>(command, TCommand{"WINDOWID=" + std::to_string(parentWindow)});
	if (mpProgram->HasStarted())
		mState = TState::kOpen;
}

TFileDialogImpl::TState TProgramDialog::Poll() {
	if (mState != TState::kOpen || mpProgram->Poll())
		return mState;
	const std::string& output = mpProgram->Output();
	mPath = TextOfUtf8(std::string_view(output).substr(0, output.find('\n')));
	mState = mPath.StartsWithChar(u'/') ? TState::kAccepted : TState::kCancelled;
	mpProgram = nullptr;
	return mState;
}
