// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "platform/linux/TXdgFolders.h"
#include "tools/vortel2/commands/CommandLine.h"
#include "tools/vortel2/files/TReplacedFile.h"

int main(int argc, char** argv) {
	TReplacedFile::HandleSignals();
	const TXdgFolders folders;
	Folders::UseSystem(&folders);
	TLog::SetEchoToConsole(false);
	TLog::SetDirectory(Folders::Logs());
	return RunCommandLine(argc, argv);
}
