// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "framework/gui/views/TDragTracker.h"
#include "framework/gui/views/TToolTipTracker.h"
#include "platform/TWindowGlueClient.h"

#include <array>
#include <cstdint>

class TGuiEventTarget;
class TMainFrameView;
class TMouseEvent;
class TWindow;

/// Stands between the mouse events of a window and its tree: buttons, auto-repeat, cursor, capture, drags, tool tips.
/// Main thread.
class TMouseEventHandler final : public TApplicationEventListener {
public:
	explicit TMouseEventHandler(TMainFrameView* mainFrame);

	/// The frames' begin, on which held buttons repeat.
	bool HandleEvent(TApplicationEvent* event) override;

	/// What the window hands on.
	void HandleMouseEvent(const TMouseEvent& event);

	/// Where the mouse is, and nothing more; a press lets go of capture and drag.
	void HandleForeignMouseEvent(const TMouseEvent& event);

	/// From OnLeftMouseDown: the held button repeats from the next frame on, with every frame.
	void RepeatImmediately() noexcept { mRepeatsImmediately = true; }

	bool IsAnyButtonHeld() const noexcept;
	/// TMouseModifiers, as an event would have them now.
	int Modifiers() const;

	TPointT<int> LastPosition() const noexcept { return mLastPosition; }

	/// The keys that choose what a drop does have changed.
	void UpdateDrag();
	/// The mouse is at another place of the window without having moved.
	void OnWindowMoved();
	/// The window has lost the keyboard: nothing stays held, captured or dragged.
	void Reset();

private:
	static constexpr TPointT<int> kNowhere{-1, -1};

	struct TButton {
		bool mIsPressed = false;
		TPointT<int> mPressPosition;
		bool mIsRepeating = false;
		TStopwatch mSincePress;
		TStopwatch mSinceRepeat;
	};

	TButton& Button(TMouseButton button) noexcept { return mButtons[static_cast<std::size_t>(button)]; }

	const TButton& Button(TMouseButton button) const noexcept { return mButtons[static_cast<std::size_t>(button)]; }

	void UpdateButtons(const TMouseEvent& event);
	int ModifiersFor(int type) const;
	void Route(TMainFrameView& mainFrame, const TMouseEvent& event);
	void Drag(TMainFrameView& mainFrame, const TMouseEvent& event);
	bool IsOwn(TGuiEventTarget* target) const;
	void UpdateCursor(TMainFrameView& mainFrame) const;
	void RepeatButton(TWindow& window, TMouseButton button, TMouseButton other, int type, int interval);

	TWeakPtr<TMainFrameView> mMainFrame;
	std::array<TButton, 3> mButtons;
	TPointT<int> mLastPosition = kNowhere;
	bool mRepeatsImmediately = false;
	TDragTracker mDrag;
	TToolTipTracker mToolTips;
};
