// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUSystem.h"
#include "platform/audiounit/AUView.h"
#include "shell/TEditorWindow.h"

#include <memory>

class TAudioUnitPluginShell;

/// The class that a host is told to look for.
inline constexpr char16_t kAudioUnitViewFactoryName[] = u"Vortel215vst3AudioUnitPluginShellUiCreator";

/// The editor as an Audio Unit host sees it: opens when the host puts it into a window and closes when it is taken out.
/// The host holds it, also beyond the instance; it is empty then. Frames run in a timer of its own while it is open.
class Vortel215vst3AudioUnitPluginShellView final : public AUView, private AUSystem::TTimerTarget {
public:
	/// Takes the place of the shell's view so far, which closes.
	Vortel215vst3AudioUnitPluginShellView(TAudioUnitPluginShell& shell, AUViewSize size);

	bool IsOpen() const { return mpShellWindow != nullptr; }

	bool IsInWindow() const { return Window() != 0; }

	/// The host has accepted another size for the editor.
	void Resize(AUViewSize size);
	void updateShellWindowWantKeys();
	/// The instance ends: closes what is open.
	void ShellIsGone();

private:
	~Vortel215vst3AudioUnitPluginShellView() override;

	void viewDidMoveToWindow() override;
	void TakePlace();
	void setContentSize(AUViewSize size);
	void openShellWindow();
	void closeShellWindow();
	void OnTimer() override;

	TAudioUnitPluginShell* mpShell;
	std::unique_ptr<TEditorWindow> mpShellWindow; // while open
};

/// Makes views for the instances of this process.
class Vortel215vst3AudioUnitPluginShellUiCreator final : public AUCocoaUIBase {
public:
	UInt32 interfaceVersion() const override { return 0; }

	/// The preferred size does not count.
	AUView* uiViewForAudioUnit(AudioUnit unit, AUViewSize preferredSize) override;
};
