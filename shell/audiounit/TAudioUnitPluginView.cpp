// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/audiounit/TAudioUnitPluginView.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/TStructuredExceptionHandler.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "platform/TPlatform.h"
#include "shell/audiounit/AudioUnitCall.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"

#include <utility>

namespace {

constexpr const char* kLogCategory = "AU Shell";

const AUCocoaUIBase::TClass kCreatorClass(kAudioUnitViewFactoryName, []() -> AUCocoaUIBase* {
	return new Vortel215vst3AudioUnitPluginShellUiCreator;
});

} // namespace

Vortel215vst3AudioUnitPluginShellView::Vortel215vst3AudioUnitPluginShellView(
    TAudioUnitPluginShell& shell, AUViewSize size)
    : AUView(size),
      mpShell(&shell) {
	shell.mViews.push_back(this);
	SetConstraints(size);
	TakePlace();
}

Vortel215vst3AudioUnitPluginShellView::~Vortel215vst3AudioUnitPluginShellView() {
	if (!mpShell)
		return;
	AudioUnitHostCall(mpShell->StorageId(), [this] {
		const TThreadManager::THostScope role(kMainThread);
		std::erase(mpShell->mViews, this);
		if (mpShell->mpView == this)
			mpShell->mpView = nullptr;
		closeShellWindow();
		return noErr;
	});
}

void Vortel215vst3AudioUnitPluginShellView::ShellIsGone() {
	closeShellWindow();
	mpShell = nullptr;
}

/// Of several views of one instance the last one made, or put into a window, shows the editor.
void Vortel215vst3AudioUnitPluginShellView::TakePlace() {
	if (auto* former = std::exchange(mpShell->mpView, this); former && former != this)
		former->closeShellWindow();
}

// Opening and closing

void Vortel215vst3AudioUnitPluginShellView::viewDidMoveToWindow() {
	if (!mpShell)
		return;
	AudioUnitHostCall(mpShell->StorageId(), [this] {
		const TThreadManager::THostScope role(kMainThread);
		if (IsInWindow() && !IsOpen())
			openShellWindow();
		else if (!IsInWindow())
			closeShellWindow();
		return noErr;
	});
}

void Vortel215vst3AudioUnitPluginShellView::openShellWindow() {
	TLog::Instance()->LogText(kLogCategory, "Open plugin editor...");
	TakePlace();
	try {
		mpShellWindow = std::make_unique<TEditorWindow>(*mpShell->Gui(), Window());
	} catch (const TReadableException& failure) {
		TSystemGlobals::Instance()->ShowMessage(
		    TString::Format("Failed to initialize the plugin GUI: '%s'", failure.Message()), kErrorMessage);
		return;
	}
	if (AUSystem* system = AUSystem::Current())
		system->StartTimer(*this, TPlatform::kTickMilliseconds);
	mpShellWindow->Tick();
}

void Vortel215vst3AudioUnitPluginShellView::closeShellWindow() {
	// Taken out first: what the window's end brings about finds a closed editor.
	const std::unique_ptr<TEditorWindow> window = std::exchange(mpShellWindow, nullptr);
	if (!window)
		return;
	TLog::Instance()->LogText(kLogCategory, "Closing plugin editor...");
	if (AUSystem* system = AUSystem::Current())
		system->StopTimer(*this);
}

// Frames

void Vortel215vst3AudioUnitPluginShellView::OnTimer() {
	// What runs in a tick may take the view's last reference.
	const AURef<Vortel215vst3AudioUnitPluginShellView> keep(this);
	if (!mpShell)
		return;
	AudioUnitHostCall(mpShell->StorageId(), [this] {
		// The next tick will do while the host works with the document on another thread.
		const TThreadManager::THostScope role(kMainThread, TThreadManager::TPatience::kNone);
		if (!role.IsTaken())
			return noErr;
		TStructuredExceptionHandler::Instance()->Guard([this] {
			if (mpShellWindow)
				mpShellWindow->Tick();
		});
		return noErr;
	});
}

void Vortel215vst3AudioUnitPluginShellView::updateShellWindowWantKeys() {
	if (mpShellWindow)
		mpShellWindow->UpdateWantsKeyboardInput();
}

// Sizes

void Vortel215vst3AudioUnitPluginShellView::Resize(AUViewSize size) {
	if (mpShellWindow)
		mpShellWindow->SetSize({size.mWidth, size.mHeight});
	setContentSize(size);
}

void Vortel215vst3AudioUnitPluginShellView::setContentSize(AUViewSize size) {
	SetConstraints(size);
	SetSize(size);
}

AUView* Vortel215vst3AudioUnitPluginShellUiCreator::uiViewForAudioUnit(AudioUnit unit, AUViewSize /*preferredSize*/) {
	TAudioUnitPluginShell* const shell = TAudioUnitPluginShell::Find(unit);
	if (!shell || !shell->Gui())
		return nullptr;
	AUView* view = nullptr;
	AudioUnitHostCall(shell->StorageId(), [&] {
		const TThreadManager::THostScope role(kMainThread);
		const TPointT<int> size = TEditorWindow::SizeOf(*shell->Gui());
		view = new Vortel215vst3AudioUnitPluginShellView(*shell, {size.mX, size.mY});
		return noErr;
	});
	return view;
}
