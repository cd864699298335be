// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TLog.h"
#include "platform/linux/TXdgFolders.h"
#include "tools/vortel2/CommandLine.h"
#include "tools/vortel2/TReplacedFile.h"

int main(int argc, char** argv) {
	TReplacedFile::HandleSignals();
	TLog::SetEchoToConsole(false);
	TLog::SetDirectory(TXdgFolders().LogDirectory());
	return RunCommandLine(argc, argv);
}
