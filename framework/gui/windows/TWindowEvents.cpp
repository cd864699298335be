// SPDX-License-Identifier: GPL-3.0-or-later
// What comes from the system's window into the event queue, and what comes out of the queue for the window.

#include "framework/foundation/files/TLog.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"
#include "framework/gui/windows/TKeyboardEvent.h"
#include "framework/gui/windows/TMouseEvent.h"
#include "framework/gui/windows/TWindow.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr TPointT<int> kOutside{-1, -1};

void Post(TApplicationEvent* event) {
	const TPtr<TApplicationEvent> kept = event;
	if (TApplicationEventQueue* queue = TApplicationEventQueue::Instance())
		queue->PostEvent(kept);
}

/// Rounded down, so that what lies left of a window does so in logical pixels, too.
int Floored(int pixels, TUiScale scale) {
	const int64_t scaled = int64_t{pixels} * scale.mY;
	return static_cast<int>(scaled >= 0 ? scaled / scale.mX : -((-scaled + scale.mX - 1) / scale.mX));
}

} // namespace

TPointT<int> TWindow::LogicalPoint(TPointT<int> pixels) const {
	return {Floored(pixels.mX, mUiScale), Floored(pixels.mY, mUiScale)};
}

// Into the queue

void TWindow::PostMouse(int32_t type, TPointT<int> position) {
	Post(new TMouseEvent(this, type, position));
}

int32_t TWindow::TypeOfButton(const TGlueMouseEvent& event) {
	const bool isPress = event.mType == TGlueMouseEvent::TType::kPress;
	TMouseButton button = event.mButton;
	if (button == TMouseButton::kLeft) {
		// With Control the left button is the right one, up to its release, whatever becomes of the key.
		if (isPress)
			mLeftIsRight = (TPlatform::Instance()->Keyboard().Modifiers() & kControlModifier) != 0;
		if (mLeftIsRight)
			button = TMouseButton::kRight;
		if (!isPress)
			mLeftIsRight = false;
	}
	const bool isDouble = isPress && event.mClickCount % 2 == 0;
	const int32_t first = isDouble ? kLeftDoubleClick : isPress ? kLeftPress : kLeftRelease;
	return first + static_cast<int32_t>(button);
}

void TWindow::PostWheel(const TGlueMouseEvent& event) {
	const TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	const bool accelerates = !prefs || prefs->mApplyMouseWheelAcceleration.Get();
	const auto post = [&](int amount, int32_t above, int32_t below) {
		if (amount == 0)
			return;
		for (int count = accelerates ? std::abs(amount) : 1; count > 0; --count)
			PostMouse(amount > 0 ? above : below, LogicalPoint(event.mPosition));
	};
	post(event.mWheel.mX, kWheelLeft, kWheelRight);
	post(event.mWheel.mY, kWheelUp, kWheelDown);
}

void TWindow::OnGlueMouse(const TGlueMouseEvent& event) {
	if (event.mType == TGlueMouseEvent::TType::kWheel)
		PostWheel(event);
	else
		PostMouse(
		    event.mType == TGlueMouseEvent::TType::kMove ? int32_t{kMouseMove} : TypeOfButton(event),
		    LogicalPoint(event.mPosition));
}

void TWindow::OnGlueKey(const TGlueKeyEvent& event) {
	const TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	const bool isSystemShortcut =
	    (event.mModifiers & kCommandModifier) != 0 && !(prefs && prefs->mOverrideSystemShortcuts.Get());
	// Held keys repeat by the toolkit's own clock.
	if (!event.mIsRepeat || isSystemShortcut)
		Post(new TKeyboardEvent(this, event));
}

void TWindow::OnGlueText(const TString& text) {
	if (text.Length() != 1) {
		Post(new TKeyboardEvent(this, text));
		return;
	}
	const TKeyboardKey key(text[0], 0);
	Post(new TKeyboardEvent(this, key, false));
	Post(new TKeyboardEvent(this, key, true));
}

bool TWindow::IsGlueEditingText(TRectT<int>& caret) {
	TWindow* receiver = mIsSubWindow && Parent() ? Parent() : this;
	if (receiver->AcceptsTextInput())
		return false;
	caret = Scaled(receiver->TextInputRect(), mUiScale);
	return true;
}

// Out of the queue

bool TWindow::HandleEvent(TApplicationEvent* event) {
	if (!IsOpen())
		return true;
	if (event->Kind() == kMouseEvent)
		DispatchMouse(*static_cast<const TMouseEvent*>(event));
	else if (event->Kind() == kKeyboardEvent)
		DispatchKey(*static_cast<const TKeyboardEvent*>(event));
	else
		DispatchState(*static_cast<const TApplicationStateEvent*>(event));
	return true;
}

void TWindow::DispatchState(const TApplicationStateEvent& event) {
	switch (event.Type()) {
	case TApplicationEventType::kAppActivated:
		return OnApplicationActivated();
	case TApplicationEventType::kAppDeactivated:
		return OnApplicationDeactivated();
	case TApplicationEventType::kClipboardContentChanged:
		return OnClipboardChanged();
	case TApplicationEventType::kHardwareDevicesConnectedOrRemoved:
		return OnHardwareChanged();
	default:
		return;
	}
}

void TWindow::DispatchKey(const TKeyboardEvent& event) {
	TWindow* window = event.Window();
	TWindow* receiver = window && window->IsSubWindow() && window->Parent() ? window->Parent() : window;
	if (receiver != this || !IsVisible())
		return;
	if (event.Text().IsEmpty())
		HandleKeyboardEvent(event);
	else
		InsertText(event.Text());
}

void TWindow::DispatchMouse(const TMouseEvent& event) {
	if (event.Window() != this || !IsVisible())
		return;
	if (mClosesPopupsOnPress && event.IsFreshPress() && ClosePopupsForPress()) {
		if (IsOpen())
			HandleForeignMouseEvent(event);
		return;
	}
	if (!TakesMouse(event))
		return;
	if (event.Type() == kMouseMove && !(event.Position() == kOutside))
		TellLastMouseWindow();
	HandleMouseEvent(event);
}

bool TWindow::ClosePopupsForPress() {
	return (mKind == kPopupWindow ? this : Root())->ClosePopups();
}

bool TWindow::TakesMouse(const TMouseEvent& event) {
	return (event.Type() == kMouseMove && PopupChild()) || !BlockingWindow();
}

void TWindow::TellLastMouseWindow() {
	TDesktop* desktop = TDesktop::Instance();
	const TCursor* cursor = TCursor::Instance();
	if (!desktop || desktop->LastMouseWindow() == this || (cursor && cursor->IsAnyButtonDown()))
		return;
	if (TWindow* last = desktop->LastMouseWindow())
		last->PostMouse(kMouseMove, kOutside);
	desktop->SetLastMouseWindow(this);
}

// What the system's window tells at once

void TWindow::OnGlueResized(TPointT<int> size) {
	if (mSurface && !(mSurface->Size() == size))
		mSurface = nullptr;
	mFramesToRetry = 0;
	OnResized();
}

void TWindow::OnGlueMoved(TPointT<int> /*position*/) {
	OnMoved();
}

void TWindow::OnGlueVisibilityChanged(bool visible) {
	mFramesToRetry = 0;
	if (visible)
		OnShown();
	else
		OnVisibilityChanged();
}

void TWindow::OnGlueBecameKey(TWindowGlueClient* previous) {
	OnBecameKey(static_cast<TWindow*>(previous));
}

void TWindow::OnGlueLostKey(TWindowGlueClient* next) {
	OnLostKey(static_cast<TWindow*>(next));
}

void TWindow::OnGlueCloseAsked() {
	RequestClose();
}

void TWindow::OnGlueExposed(std::span<const TRectT<int>> rects) {
	TGraphPort* port = TGraphPort::Instance();
	if (!mSurface || !port)
		return Invalidate();
	const TPointT<int> size = mSurface->Size();
	port->InvalidateRects(*mGlue, rects);
	port->Present(*mGlue, {0, 0}, *mSurface, {0, 0, size.mX, size.mY});
}

void TWindow::OnGlueLost(const TString& reason) {
	TLog::Instance()->LogString("Window", TString::Format("A window was lost: %s", reason));
	Close();
}
