// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/TSnapshotOptions.h"

#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/files/CheckFiles.h"
#include "tools/vortel2/options/AddOption.h"

#include <CLI/CLI.hpp>

namespace {

constexpr std::string_view kScaleNames[] = {"auto", "1", "2"};
constexpr int32_t kLowestDpi = 24;
constexpr int32_t kHighestDpi = 960;
constexpr int32_t kFarthest = 10000;

} // namespace

void TEditorOptions::AddOptions(CLI::App& app) {
	mSettings.AddOptions(app);
	AddOption(app, "--scale", "auto|1|2", "size of the interface; default 1", [this](const TOptionText& text) {
		mScaleFactor = text.Choice(kScaleNames);
	});
	AddOption(app, "--theme", "FILE", "colours from this theme file", [this](const TOptionText& text) {
		mTheme = text.Text();
	});
	AddFlag(app, "--gallery", "show the toolkit's shapes and controls instead of the editor", mGallery);
	AddOption(app, "--preferences", "FOLDER", "read and write the preferences here", [this](const TOptionText& text) {
		mPreferences = text.Text();
	});
	AddOption(
	    app, "--save", "FILE", "write the document at the end: a bank, or the active program, by the extension",
	    [this](const TOptionText& text) {
		    DocumentFiles::KindOf(text);
		    mSave = text.Text();
	    });
}

void TSnapshotOptions::AddOptions(CLI::App& app) {
	AddArgument(app, "OUT.png", "the picture", mOutput);
	mEditor.AddOptions(app);
	AddOption(app, "--dpi", "N", "of the memory screen; default 96", [this](const TOptionText& text) {
		mDpi = text.Integer(kLowestDpi, kHighestDpi);
	});
	AddOption(
	    app, "--script", "FILE", "play these mouse and key events; - is standard input",
	    [this](const TOptionText& text) { mScript = text.Text(); });
	AddOption(app, "--views", "FILE.json", "describe the windows at the end", [this](const TOptionText& text) {
		mViews = text.Text();
	});
	AddOption(
	    app, "--at", "X,Y", "where the editor lies on the memory screen; default 700,450",
	    [this](const TOptionText& text) {
		    const auto [x, y] = text.SplitAt(',', "X,Y");
		    mCorner = {x.Integer(-kFarthest, kFarthest), y.Integer(-kFarthest, kFarthest)};
	    });
}

// A bank may be opened, edited and saved at its place.
void TSnapshotOptions::CheckFiles() const {
	const TNamedFile outputs[] = {{"OUT.png", mOutput}, {"--views", mViews}, {"--save", mEditor.mSave}};
	const TNamedFile inputs[] = {
	    {"--bank", mEditor.mSettings.mBankFile},
	    {"--program", mEditor.mSettings.mProgramFile},
	    {"--theme", mEditor.mTheme},
	    {"--script", mScript}};
	CheckOutputs(outputs, std::span(inputs).subspan(2));
	CheckOutputs(std::span(outputs).first(2), inputs);
}
