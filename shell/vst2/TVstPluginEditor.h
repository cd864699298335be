// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/events/TGuiObject.h"
#include "shell/TEditorWindow.h"
#include "shell/vst2/TVstPluginShell.h"

#include <memory>

/// The editor as a VST 2 host sees it: one per instance, opened and closed as often as the host likes, on whichever of
/// its threads. All calls are made inside the main role. Frames run in the host's idle calls.
class TVstPluginShell::TVstEditor final : public TGuiObject, public TGlobalStorageAware, public AVstSdk::AEffEditor {
public:
	explicit TVstEditor(TGui& gui);
	~TVstEditor() override;

	bool getRect(ERect** rect) override;
	bool open(void* parent) override;
	void close() override;
	void idle() override;

	bool IsOpen() const noexcept { return mpWindow != nullptr; }

	/// The host has made room, or refused to: then its window is made larger all the same.
	void SetSize(TSize size);
	void ForceSize(TSize oldSize, TSize newSize);

private:
	void OnWantsKeyboardInput(TObservable* observable, int32_t reason);

	TPtr<TGui> mpGui;
	ERect mRect{};
	std::unique_ptr<TEditorWindow> mpWindow; // while open
};
