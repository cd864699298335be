// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/EntryFiles.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "platform/linux/TXdgFolders.h"

void EntryFiles::Direct() {
	static const TXdgFolders kFolders;
	Folders::UseSystem(&kFolders);
	TLog::SetEchoToConsole(false);
	TLog::SetDirectory(Folders::Logs());
}
