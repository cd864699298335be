// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/OpenCommand.h"

#include "framework/foundation/files/Folders.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/windows/TEditorFrame.h"
#include "platform/TPlatform.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/gallery/TGalleryView.h"
#include "tools/vortel2/open/TLoopPlayer.h"
#include "tools/vortel2/open/TOpenOptions.h"
#include "tools/vortel2/open/TOpenWindow.h"
#include "tools/vortel2/open/TSoundOutput.h"
#include "tools/vortel2/sound/DemoLoop.h"
#include "tools/vortel2/sound/TSoundFile.h"

#include <filesystem>

namespace {

TStereoSound ReadSound(const std::string& path, TNotices& notices) {
	if (path.empty())
		return MakeDemoLoop();
	TSoundFileReader file(path);
	TStereoSound sound;
	sound.mSampleRate = file.SampleRate();
	std::vector<float> left(4096);
	std::vector<float> right(4096);
	while (const std::size_t frames = file.Read(left, right)) {
		sound.mLeft.insert(sound.mLeft.end(), left.begin(), left.begin() + static_cast<std::ptrdiff_t>(frames));
		sound.mRight.insert(sound.mRight.end(), right.begin(), right.begin() + static_cast<std::ptrdiff_t>(frames));
	}
	if (!file.Shortfall().empty())
		notices.Warn(file.Shortfall());
	if (sound.mLeft.empty())
		throw TWorkError(path + ": there is no sound in it");
	return sound;
}

/// The editor in a window on the screen, as long as the object lives. Made and used as the instance's GUI.
class TOpenEditor {
public:
	TOpenEditor(TInstance& instance, const TOpenOptions& options, TLoopPlayer& player) {
		TAudioPluginShell::TGui& gui = *instance.Shell().Gui();
		gui.Prepare();
		if (!options.mEditor.mTheme.empty())
			TSkinColors::Instance()->Load(TString(options.mEditor.mTheme.c_str(), kUtf8Encoding));
		mpFrame = std::make_unique<TEditorFrame>();
		mpWindow = MakePtr<TOpenWindow>(TFunctionPtr<void>(&player, &TLoopPlayer::ToggleTransport));
		mpWindow->SetDocument(gui.Document());
		mpWindow->SetClientSize(gui.Size()); // first: the frame takes the size of its window
		mpWindow->SetMainFrame(
		    options.mEditor.mGallery ? TPtr<TMainFrameView>(MakePtr<TGalleryView>()) : TPtr<TMainFrameView>(&gui));
		mpWindow->CenterOnScreen();
		mpWindow->Show();
	}

	~TOpenEditor() {
		mpWindow->Close();
		mpWindow->SetMainFrame(nullptr);
	}

	/// False when the window has been closed.
	bool Tick() {
		mpFrame->EditorFrameTick(mpWindow.Get());
		return mpWindow->IsOpen();
	}

private:
	std::unique_ptr<TEditorFrame> mpFrame;
	TPtr<TOpenWindow> mpWindow;
};

} // namespace

void RunOpen(const TOpenOptions& options, TNotices& notices) {
	TProgramInstance::SetUsesPreferences(true);
	if (!options.mEditor.mPreferences.empty())
		Folders::UsePreferences(
		    TDirectory(TString(std::filesystem::absolute(options.mEditor.mPreferences).c_str(), kUtf8Encoding)));
	TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { options.mEditor.mSettings.ApplyTo(document); });
	TLoopPlayer player(instance.Shell(), ReadSound(options.mInput, notices), options.mTempo);
	std::unique_ptr<TOpenEditor> editor;
	TPlatform* platform = nullptr;
	instance.Shell().AsGui([&] {
		editor = std::make_unique<TOpenEditor>(instance, options, player);
		platform = TPlatform::Instance();
	});
	options.mEditor.mSettings.Report(notices);
	notices.Print();
	{
		const std::unique_ptr<TSoundOutput> output = TSoundOutput::Open(player, options.mSilent);
		while (instance.Shell().AsGui([&] { return editor->Tick() && platform->WaitForTick(); })) {
		}
	}
	instance.Shell().AsGui([&] { editor.reset(); });
	if (!options.mEditor.mSave.empty())
		instance.WithDocument([&](TVortelDocument& document) { DocumentFiles::Save(document, options.mEditor.mSave); });
}
