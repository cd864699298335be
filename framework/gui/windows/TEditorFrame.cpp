// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TEditorFrame.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/windows/TWindow.h"
#include "platform/TPlatform.h"

TEditorFrame::TEditorFrame()
    : mBeginOfNewFrame(MakePtr<TBeginOfNewFrameEvent>()),
      mEndOfFrame(MakePtr<TEndOfFrameEvent>()),
      mGuiIdle(MakePtr<TGuiIdleEvent>()) {}

/// Ticks and frames need not beat in time: what comes within half a frame of the last is too early.
bool TEditorFrame::IsFrameDue() const {
	const TGraphPortPrefs& prefs = *TGraphPortPrefs::Instance();
	if (!prefs.mApplyFrameRate.Get())
		return true;
	const float frameTime = 1000.0f / static_cast<float>(prefs.mMaxFrameRate.Get());
	return mFrameStamp.ElapsedMilliseconds() >= frameTime / 2.0f;
}

void TEditorFrame::EditorFrameTick(TWindow* window) {
	const TPtr<TWindow> kept = window;
	if (TPlatform* platform = TPlatform::Instance())
		platform->ProcessEvents();
	TThreadCommunicator::Instance()->ProcessCommands();
	if (!IsFrameDue())
		return;
	mFrameStamp.Restart();
	if (!window || !window->IsOpen())
		return;
	TApplicationEventQueue& queue = *TApplicationEventQueue::Instance();
	queue.SendEvent(mBeginOfNewFrame);
	queue.DispatchPostedEvents();
	if (window->IsOpen())
		window->RunFrame();
	queue.SendEvent(mEndOfFrame);
	++mFrames;
	if (++mFrameCounter < kFramesPerIdle)
		return;
	mFrameCounter = 0;
	queue.SendEvent(mGuiIdle);
}
