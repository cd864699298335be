// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "tools/vortel2/documents/TInstanceSettings.h"

#include <string>

/// What `snapshot` and `open` have in common: how the instance starts, and how the editor looks.
struct TEditorOptions {
	TInstanceSettings mSettings;
	int mScaleFactor = 1;     // TGraphPort::TScaleFactor
	std::string mTheme;       // a file; empty: the default theme
	bool mGallery = false;    // instead of the editor
	std::string mPreferences; // the folder of Config.xml; empty: none, or the user's
	std::string mSave;        // where the document goes at the end; empty: nowhere

	/// This must outlive the parsing.
	void AddOptions(CLI::App& app);
};

/// Everything that the command line says about a snapshot.
struct TSnapshotOptions {
	std::string mOutput; // the picture
	TEditorOptions mEditor;
	int mDpi = 96;
	std::string mScript;            // empty: none
	std::string mViews;             // empty: none
	TPointT<int> mCorner{700, 450}; // logical pixels

	/// This must outlive the parsing.
	void AddOptions(CLI::App& app);
	/// After the parsing: nothing is written over what is read. Throws a TUsageError.
	void CheckFiles() const;
};
