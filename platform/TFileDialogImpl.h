// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/text/TString.h"

struct TFileDialogSettings {
	bool mSave = false;
	TString mCaption;
	TString mFilter; // "*.txt"; several with ";" between them; empty shows all files
	TDirectory mDirectory;
	TString mName; // offered when saving
};

/// A file dialog of the system, which runs beside the program. Polled in the tick; destroying it takes it off the
/// screen. GUI thread.
class TFileDialogImpl {
public:
	enum class TState { kOpen, kAccepted, kCancelled, kUnavailable };

	virtual ~TFileDialogImpl() = default;

	/// Never waits. kUnavailable, at once or later: the system has no such dialog, somebody else must draw one.
	virtual TState Poll() = 0;
	/// The absolute path, once accepted, as the user left it: an extension may be missing.
	virtual TString Path() const = 0;
	/// Whether the user was asked before an existing file was accepted for saving.
	virtual bool HasAskedToOverwrite() const = 0;
};
