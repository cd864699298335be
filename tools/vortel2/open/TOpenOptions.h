// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/editor/TSnapshotOptions.h"

#include <string>

/// Everything that the command line says about `open`.
struct TOpenOptions {
	std::string mInput; // a sound file; empty: the demo loop
	TEditorOptions mEditor;
	float mTempo = 120.0f; // beats per minute
	bool mSilent = false;

	/// This must outlive the parsing.
	void AddOptions(CLI::App& app);
};
