// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/gui/windows/TEditorFrame.h"
#include "platform/TWindowGlue.h"
#include "shell/TAudioPluginShell.h"

#include <memory>

class TViewWindow;

/// An instance's editor while a host has it open: the window around the GUI object, and its frames. Every adapter holds
/// one from the host's open to its close. Sizes are pixels. Main thread.
class TEditorWindow {
public:
	/// Lies in the host's window from now on. Throws TReadableException: no display, no such window.
	TEditorWindow(TAudioPluginShell::TGui& gui, TNativeWindow host);
	~TEditorWindow();

	TEditorWindow(const TEditorWindow&) = delete;
	TEditorWindow& operator=(const TEditorWindow&) = delete;

	/// What an editor of this GUI needs, without a window: for hosts that ask before they open one.
	static TPointT<int> SizeOf(TAudioPluginShell::TGui& gui);

	/// The scale that a host says its screen has, 1 for 96 dots per inch, stands in for "Auto", in an open editor at
	/// once. What the user has chosen stays. before: what the last call has given, 0 at first.
	static int FollowHostScale(TAudioPluginShell::TGui& gui, float scale, int before);

	/// False when somebody else has destroyed the window.
	bool IsOpen() const;
	TViewWindow& Window() const noexcept { return *mpWindow; }

	TPointT<int> Size() const;
	/// The host has given this size.
	void SetSize(TPointT<int> size);
	/// The host has refused a size that the editor needs: its window is made that much larger.
	void ForceSize(TPointT<int> oldSize, TPointT<int> newSize);
	void UpdateWantsKeyboardInput();

	/// Every 10 ms while the editor is open: runs what was posted to the main thread, and a frame when one is due.
	void Tick();
	/// For those who watch the window system's connection.
	int EventDescriptor() const;

	const TEditorFrame& Frame() const noexcept { return *mpFrame; }

private:
	TPtr<TAudioPluginShell::TGui> mpGui;
	TPtr<TViewWindow> mpWindow;
	std::shared_ptr<TEditorFrame> mpFrame;
};
