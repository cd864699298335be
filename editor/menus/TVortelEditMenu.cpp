// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/menus/TVortelEditMenu.h"

#include "framework/gui/menus/TContextMenu.h"
#include "framework/gui/views/TView.h"

void OpenVortelMenu(TView& button, std::initializer_list<TVortelMenuCommand> commands) {
	TList<TPtr<TMenuEntry>> entries;
	for (const TVortelMenuCommand& command : commands) {
		const auto entry = MakePtr<TMenuEntry>(command.mAction);
		entry->SetText(command.mText);
		if (command.mPlace == TVortelMenuCommand::kBelowSeparator)
			entry->SetSeparator(1, TString());
		entries.Append(entry);
	}
	TContextMenu::OpenBelow(button, entries);
}
