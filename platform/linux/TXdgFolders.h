// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TSystemFolders.h"

/// The folders of the XDG base directories, read from the environment at each call. A variable that is not an absolute
/// path counts as unset.
class TXdgFolders final : public TSystemFolders {
public:
	/// `$XDG_STATE_HOME/Vortel2`, else `~/.local/state/Vortel2`.
	TDirectory LogDirectory() const override;
};
