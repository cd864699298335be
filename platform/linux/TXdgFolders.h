// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TSystemFolders.h"

/// The folders of the XDG base and user directories, read from the environment at each call. A variable that is not an
/// absolute path counts as unset.
class TXdgFolders final : public TSystemFolders {
public:
	/// `$HOME`, or what the password database says.
	TDirectory HomeDirectory() const override;
	/// What `user-dirs.dirs` says, else `~/Documents`.
	TDirectory DocumentsDirectory() const override;
	/// `$XDG_CONFIG_HOME/Vortel2`, else `~/.config/Vortel2`.
	TDirectory PreferencesDirectory() const override;
	/// `$XDG_STATE_HOME/Vortel2`, else `~/.local/state/Vortel2`.
	TDirectory LogDirectory() const override;
	/// `$TMPDIR`, else `/tmp`.
	TDirectory TemporaryDirectory() const override;
	/// Into the trash of the user's home folder, with the note from which a desktop can bring it back.
	bool MoveToTrash(const TString& path) const override;
};
