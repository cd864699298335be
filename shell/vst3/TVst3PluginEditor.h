// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/events/TGuiObject.h"
#include "shell/TEditorWindow.h"
#include "shell/vst3/TVst3PluginShell.h"
#include "shell/vst3/TVst3Timer.h"

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/gui/iplugviewcontentscalesupport.h>

#include <atomic>
#include <memory>

/// The editor as a VST 3 host sees it: made to be asked, opened and closed by the host as often as it likes. Holds a
/// reference on the shell. Calls come in any order, attached twice or removed late; each plays the main thread.
///
/// Frames run in a timer of the run loop that the host's frame lends, and come early when the display has sent
/// something; without one in the shell's own clock.
class TVst3PluginShell::TPluginEditor final : public TGuiObject,
                                              public TGlobalStorageAware,
                                              public Steinberg::IPlugView,
                                              public Steinberg::IPlugViewContentScaleSupport,
                                              private TVst3Timer::TTarget {
public:
	/// The host's first reference is counted already.
	explicit TPluginEditor(TVst3PluginShell& shell);

	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override;
	Steinberg::uint32 PLUGIN_API addRef() override;
	Steinberg::uint32 PLUGIN_API release() override;

	Steinberg::tresult PLUGIN_API isPlatformTypeSupported(Steinberg::FIDString type) override;
	Steinberg::tresult PLUGIN_API attached(void* parent, Steinberg::FIDString type) override;
	Steinberg::tresult PLUGIN_API removed() override;
	Steinberg::tresult PLUGIN_API getSize(Steinberg::ViewRect* size) override;
	Steinberg::tresult PLUGIN_API onSize(Steinberg::ViewRect* newSize) override;
	Steinberg::tresult PLUGIN_API setFrame(Steinberg::IPlugFrame* frame) override;

	/// Before or after the editor is opened. Counts while the user has chosen no size.
	Steinberg::tresult PLUGIN_API setContentScaleFactor(ScaleFactor factor) override;

	/// Only the editor itself asks for sizes.
	Steinberg::tresult PLUGIN_API canResize() override { return Steinberg::kResultFalse; }

	Steinberg::tresult PLUGIN_API checkSizeConstraint(Steinberg::ViewRect* rect) override {
		return rect ? Steinberg::kResultFalse : Steinberg::kInvalidArgument;
	}

	// Wheel, keys and focus come to the window itself.

	Steinberg::tresult PLUGIN_API onWheel(float /*distance*/) override { return Steinberg::kResultFalse; }

	Steinberg::tresult PLUGIN_API
	onKeyDown(Steinberg::char16 /*key*/, Steinberg::int16 /*code*/, Steinberg::int16 /*modifiers*/) override {
		return Steinberg::kResultFalse;
	}

	Steinberg::tresult PLUGIN_API
	onKeyUp(Steinberg::char16 /*key*/, Steinberg::int16 /*code*/, Steinberg::int16 /*modifiers*/) override {
		return Steinberg::kResultFalse;
	}

	Steinberg::tresult PLUGIN_API onFocus(Steinberg::TBool /*state*/) override { return Steinberg::kResultFalse; }

	bool IsOpen() const noexcept { return mpWindow != nullptr; }

	/// Whether it has no timer of its own.
	bool NeedsTicks() const noexcept { return IsOpen() && !mpTimer; }

	/// Every 10 ms or so while it is open.
	void Tick();
	/// Whether the host agreed.
	bool RequestResize(TSize oldSize, TSize newSize);
	/// The instance ends while the host still holds the view.
	void Close();

private:
	~TPluginEditor() override;

	void Open(TNativeWindow parent);
	void FollowHostScale();
	void OnTimer() noexcept override;
	void OnWantsKeyboardInput(TObservable* observable, int32_t reason);

	std::atomic<Steinberg::int32> mReferenceCount{1};
	TVst3PluginShell& mShell;
	TPtr<TGui> mpGui;
	bool mResizeRequested = false;
	std::unique_ptr<TEditorWindow> mpWindow; // while open
	Steinberg::IPtr<TVst3Timer> mpTimer;     // while open, if the host lends a run loop
	Steinberg::IPtr<Steinberg::IPlugFrame> mpFrame;
};
