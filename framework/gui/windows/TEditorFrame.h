// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/events/ApplicationEvents.h"

class TWindow;

/// Turns the ticks of a timer into frames of one window and all that belong to it. Whoever has a timer and a window
/// holds one: the editor of an adapter, a program, a modal dialog. Main thread, inside the instance's storage and role.
class TEditorFrame {
public:
	TEditorFrame();

	/// One tick, every 10 ms or so: delivers what the platform has, runs the main thread's commands, and, if a frame is
	/// due, posted events, timers and drawing. A null window, or one that is not open: the commands only. What the
	/// handlers do may close the window.
	void EditorFrameTick(TWindow* window);

	/// So far.
	int64_t Frames() const noexcept { return mFrames; }

private:
	bool IsFrameDue() const;

	static constexpr int kFramesPerIdle = 10;

	TStopwatch mFrameStamp;
	int mFrameCounter = 0;
	int64_t mFrames = 0;
	// The same events serve for all frames.
	const TPtr<TBeginOfNewFrameEvent> mBeginOfNewFrame;
	const TPtr<TEndOfFrameEvent> mEndOfFrame;
	const TPtr<TGuiIdleEvent> mGuiIdle;
};
