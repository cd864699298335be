// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TMouseEventHandler.h"

#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TMouseEvent.h"

#include <algorithm>
#include <utility>

namespace {

constexpr float kRepeatDelay = 600.0f; // milliseconds

/// The button that the event is about; kMiddle for those of no button.
TMouseButton ButtonOf(int type) {
	return static_cast<TMouseButton>((type - kLeftPress) % 3);
}

} // namespace

TMouseEventHandler::TMouseEventHandler(TMainFrameView* mainFrame) : mMainFrame(mainFrame) {}

bool TMouseEventHandler::IsAnyButtonHeld() const noexcept {
	return std::any_of(mButtons.begin(), mButtons.end(), [](const TButton& button) { return button.mIsPressed; });
}

int TMouseEventHandler::Modifiers() const {
	const TViewWindow* window = mMainFrame ? mMainFrame->ViewWindow() : nullptr;
	const int keys = window ? window->KeyModifiers() : 0;
	return ((keys & kCommandModifier) != 0 ? kMouseCommand : 0) | ((keys & kOptionModifier) != 0 ? kMouseOption : 0) |
	       ((keys & kShiftModifier) != 0 ? kMouseShift : 0) |
	       (Button(TMouseButton::kLeft).mIsPressed ? kMouseLeftHeld : 0) |
	       (Button(TMouseButton::kRight).mIsPressed ? kMouseRightHeld : 0) |
	       (Button(TMouseButton::kMiddle).mIsPressed ? kMouseMiddleHeld : 0);
}

int TMouseEventHandler::ModifiersFor(int type) const {
	const bool isRepeat = (type == kLeftRelease && Button(TMouseButton::kLeft).mIsRepeating) ||
	                      (type == kRightRelease && Button(TMouseButton::kRight).mIsRepeating);
	return Modifiers() | (isRepeat ? kMouseAutoRepeat : 0);
}

void TMouseEventHandler::UpdateButtons(const TMouseEvent& event) {
	const int type = event.Type();
	if (type == kMouseMove)
		return;
	if (!event.IsRepeat()) {
		for (TButton& button : mButtons)
			button.mIsRepeating = false;
		mRepeatsImmediately = false;
	}
	if (IsMouseWheel(type))
		return;
	TButton& own = Button(ButtonOf(type));
	for (TButton& button : mButtons)
		if (&button != &own)
			button.mIsPressed = false;
	if (!IsMouseRelease(type)) {
		own.mIsPressed = true;
		own.mSincePress.Restart();
		own.mPressPosition = event.Position();
	} else if (event.IsRepeat())
		own.mIsRepeating = true;
	else
		own.mIsPressed = false;
}

void TMouseEventHandler::HandleMouseEvent(const TMouseEvent& event) {
	const TKeptAlive kept(this);
	const TPtr<TMainFrameView> mainFrame = mMainFrame.Get();
	const bool isNews = event.Type() != kMouseMove || !(event.Position() == mLastPosition) || mLastPosition == kNowhere;
	if (!mainFrame || !isNews)
		return;
	mLastPosition = event.Position();
	UpdateButtons(event);
	if (mainFrame->IsInputBlocked(&event))
		return;
	if (event.Type() == kMouseMove && !IsAnyButtonHeld()) {
		TGuiEventTarget::CancelDrag();
		TGuiEventTarget::ReleaseMouseCapture(
		    TGuiEventTarget::CapturedTarget(), mLastPosition.mX, mLastPosition.mY, Modifiers());
	}
	if (!TGuiEventTarget::IsDragging())
		Route(*mainFrame, event);
	if (TGuiEventTarget::IsDragging())
		Drag(*mainFrame, event);
	mToolTips.OnMouseEvent(*mainFrame, mLastPosition);
}

void TMouseEventHandler::Route(TMainFrameView& mainFrame, const TMouseEvent& event) {
	const TPointT<int> point = event.Position();
	const int modifiers = ModifiersFor(event.Type());
	UpdateCursor(mainFrame);
	if (event.Type() == kMouseMove)
		mainFrame.UpdateMouseInside(point.mX, point.mY, modifiers);
	mainFrame.HandleMouseEvent(point.mX, point.mY, event.Type(), modifiers);
	if (IsMouseRelease(event.Type()) && !event.IsRepeat() && !TGuiEventTarget::IsDragging())
		TGuiEventTarget::ReleaseMouseCapture(TGuiEventTarget::CapturedTarget(), point.mX, point.mY, modifiers);
	UpdateCursor(mainFrame);
}

void TMouseEventHandler::Drag(TMainFrameView& mainFrame, const TMouseEvent& event) {
	if (IsMouseWheel(event.Type()))
		mDrag.Wheel(mainFrame, event.Position(), event.Type(), ModifiersFor(event.Type()));
	else
		mDrag.Update(mainFrame, event.Position());
	if (IsMouseRelease(event.Type()) && !event.IsRepeat())
		mDrag.Finish(mainFrame, event.Position());
	if (!TGuiEventTarget::IsDragging())
		mDrag.Forget();
}

void TMouseEventHandler::UpdateDrag() {
	const TPtr<TMainFrameView> mainFrame = mMainFrame.Get();
	if (mainFrame && TGuiEventTarget::IsDragging())
		mDrag.Update(*mainFrame, mLastPosition);
	if (!TGuiEventTarget::IsDragging())
		mDrag.Forget();
}

void TMouseEventHandler::UpdateCursor(TMainFrameView& mainFrame) const {
	TCursor* cursor = TCursor::Instance();
	// Once the mouse has left the window, the cursor is another window's matter.
	if (!cursor || !mainFrame.Window() || (mLastPosition == kNowhere && !TGuiEventTarget::HasMouseCapture()))
		return;
	const TView* view = mainFrame.CursorViewAt(mLastPosition.mX, mLastPosition.mY);
	cursor->SetCurrent(view ? view->Cursor() : int{kDefaultCursor});
}

void TMouseEventHandler::HandleForeignMouseEvent(const TMouseEvent& event) {
	mLastPosition = event.Position();
	if (!event.IsFreshPress())
		return;
	TGuiEventTarget::ReleaseMouseCapture(
	    TGuiEventTarget::CapturedTarget(), mLastPosition.mX, mLastPosition.mY, Modifiers());
	TGuiEventTarget::CancelDrag();
	mDrag.Forget();
}

void TMouseEventHandler::Reset() {
	const TKeptAlive kept(this);
	for (TButton& button : mButtons) {
		button.mIsPressed = false;
		button.mIsRepeating = false;
	}
	mRepeatsImmediately = false;
	const TPointT<int> point = std::exchange(mLastPosition, kNowhere);
	if (const TDragContent* content = TGuiEventTarget::CurrentDragContent();
	    content && (!content->Source() || IsOwn(content->Source()))) {
		TGuiEventTarget::CancelDrag();
		mDrag.Forget();
	}
	if (TGuiEventTarget* captured = TGuiEventTarget::CapturedTarget(); IsOwn(captured))
		TGuiEventTarget::ReleaseMouseCapture(captured, point.mX, point.mY, 0);
}

void TMouseEventHandler::OnWindowMoved() {
	const TWindow* window = mMainFrame ? mMainFrame->Window() : nullptr;
	if (window && TCursor::Instance() && !(mLastPosition == kNowhere))
		mLastPosition = window->ScreenToClient(TCursor::Instance()->MousePosition());
}

/// In the tree of this handler's window.
bool TMouseEventHandler::IsOwn(TGuiEventTarget* target) const {
	const TView* view = target ? target->AsView() : nullptr;
	return view && view->MainFrame() && mMainFrame == view->MainFrame();
}

// Auto-repeat

bool TMouseEventHandler::HandleEvent(TApplicationEvent* event) {
	if (!IsApplicationEvent(event, TApplicationEventType::kBeginOfNewFrame))
		return true;
	const TPtr<TMainFrameView> mainFrame = mMainFrame.Get();
	const TPtr<TWindow> window = mainFrame ? mainFrame->Window() : nullptr;
	if (!window || !window->IsVisible())
		return true;
	if (IsAnyButtonHeld()) {
		TBaseViewsPrefs& prefs = *TBaseViewsPrefs::Instance();
		RepeatButton(
		    *window, TMouseButton::kLeft, TMouseButton::kRight, kLeftRelease, prefs.LeftButtonRepeatInterval().Get());
		RepeatButton(
		    *window, TMouseButton::kRight, TMouseButton::kLeft, kRightRelease, prefs.RightButtonRepeatInterval().Get());
	}
	mToolTips.OnFrame(*mainFrame, mLastPosition);
	return true;
}

void TMouseEventHandler::RepeatButton(
    TWindow& window, TMouseButton button, TMouseButton other, int type, int interval) {
	TButton& own = Button(button);
	if (!own.mIsPressed)
		return;
	if (!window.IsButtonDown(button)) {
		own.mIsPressed = false;
		if (!Button(other).mIsPressed)
			Button(other).mIsPressed = window.IsButtonDown(other);
		return;
	}
	const bool isDue = own.mSincePress.ElapsedMilliseconds() > kRepeatDelay &&
	                   own.mSinceRepeat.ElapsedMilliseconds() > static_cast<float>(interval);
	if (!isDue && !mRepeatsImmediately)
		return;
	own.mSinceRepeat.Restart();
	TApplicationEventQueue::Instance()->PostEvent(MakePtr<TMouseEvent>(&window, type, mLastPosition, true));
}
