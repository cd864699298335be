// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/SnapshotCommand.h"

#include "framework/foundation/files/Folders.h"
#include "framework/gui/keyboard/TKeyboardTranslator.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/editor/TMemoryEditor.h"
#include "tools/vortel2/editor/TScriptPlayer.h"
#include "tools/vortel2/editor/TSnapshotOptions.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/gallery/TGalleryView.h"

#include <filesystem>

namespace {

TMemoryEditor::TSetup SetupFrom(const TSnapshotOptions& options) {
	TMemoryEditor::TSetup setup;
	setup.mScaleFactor = options.mEditor.mScaleFactor;
	setup.mDpi = options.mDpi;
	setup.mThemeFile = options.mEditor.mTheme;
	setup.mCorner = options.mCorner;
	if (options.mEditor.mGallery)
		setup.mMakeFrame = [] { return TPtr<TMainFrameView>(MakePtr<TGalleryView>()); };
	return setup;
}

/// Without a folder they hold their defaults and are kept nowhere.
void UsePreferences(const std::string& folder) {
	TProgramInstance::SetUsesPreferences(true);
	Folders::UsePreferences(
	    folder.empty() ? TDirectory() : TDirectory(TString(std::filesystem::absolute(folder).c_str(), kUtf8Encoding)));
}

} // namespace

void RunSnapshot(const TSnapshotOptions& options, TNotices& notices) {
	options.CheckFiles();
	std::vector<Script::TLine> lines;
	if (!options.mScript.empty())
		lines = Script::Read(options.mScript, &TKeyboardTranslator::CodeOfFixedName);
	UsePreferences(options.mEditor.mPreferences);
	TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { options.mEditor.mSettings.ApplyTo(document); });
	options.mEditor.mSettings.Report(notices);
	TMemoryEditor editor(instance, SetupFrom(options));
	TScriptPlayer(instance, editor, std::move(lines)).Play();
	if (!options.mViews.empty())
		editor.SaveViews(options.mViews);
	editor.SavePicture(options.mOutput, 0);
	if (!options.mEditor.mSave.empty())
		instance.WithDocument([&](TVortelDocument& document) { DocumentFiles::Save(document, options.mEditor.mSave); });
}
