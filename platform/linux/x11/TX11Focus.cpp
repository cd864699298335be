// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Focus.h"

#include "platform/linux/x11/TX11Window.h"

#include <algorithm>
#include <utility>

void TX11Focus::Disconnect() {
	mpConnection = nullptr;
	mpKey = nullptr;
	mpGrabber = nullptr;
	mIsActive = mMayHaveMoved = mPopupsMayHaveChanged = false;
}

TX11Window* TX11Focus::TargetOfKeys(xcb_window_t window) const {
	if (TX11Window* popup = mWindows.TopPopup())
		return popup;
	return mpKey ? mpKey : mWindows.Find(window);
}

bool TX11Focus::HandleEvent(const xcb_generic_event_t& event) {
	const int type = event.response_type & 0x7F;
	if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT)
		return false;
	const uint8_t mode = reinterpret_cast<const xcb_focus_in_event_t&>(event).mode;
	if (mode != XCB_NOTIFY_MODE_GRAB && mode != XCB_NOTIFY_MODE_UNGRAB)
		mMayHaveMoved = true;
	return true;
}

void TX11Focus::Forget(TX11Window& window) {
	mMayHaveMoved = true;
	if (mpKey == &window)
		mpKey = nullptr;
	if (mpGrabber == &window)
		Ungrab();
}

void TX11Focus::Settle() {
	if (!mpConnection)
		return;
	if (mPopupsMayHaveChanged)
		UpdateGrab();
	if (std::exchange(mMayHaveMoved, false))
		FindKeyWindow();
}

void TX11Focus::UpdateGrab() {
	TX11Window* popup = mWindows.TopPopup();
	mPopupsMayHaveChanged = false;
	if (mpGrabber && (!popup || !mpGrabber->IsVisible()))
		Ungrab();
	if (popup && !mpGrabber)
		mPopupsMayHaveChanged = !Grab(*popup);
}

/// The keys are a bonus: some servers refuse them to a menu, and the menu works by the pointer alone.
bool TX11Focus::Grab(TX11Window& window) {
	constexpr uint16_t kPointerEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
	                                    XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
	                                    XCB_EVENT_MASK_LEAVE_WINDOW;
	xcb_connection_t* xcb = mpConnection->Xcb();
	const auto pointer = mpConnection->Reply(
	    xcb_grab_pointer_reply, xcb_grab_pointer(
	                                xcb, true, window.Id(), kPointerEvents, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
	                                XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME));
	if (!pointer || pointer->status != XCB_GRAB_STATUS_SUCCESS)
		return false;
	mpGrabber = &window;
	mpConnection->Reply(
	    xcb_grab_keyboard_reply,
	    xcb_grab_keyboard(xcb, false, window.Id(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
	return true;
}

void TX11Focus::Ungrab() {
	mpGrabber = nullptr;
	mPopupsMayHaveChanged = true;
	xcb_ungrab_pointer(mpConnection->Xcb(), XCB_CURRENT_TIME);
	xcb_ungrab_keyboard(mpConnection->Xcb(), XCB_CURRENT_TIME);
	mpConnection->Flush();
}

xcb_window_t TX11Focus::Holder() const {
	const auto reply = mpConnection->Reply(xcb_get_input_focus_reply, xcb_get_input_focus(mpConnection->Xcb()));
	return reply ? reply->focus : xcb_window_t{XCB_INPUT_FOCUS_NONE};
}

void TX11Focus::FindKeyWindow() {
	const xcb_window_t holder = Holder();
	TX11Window* key = mWindows.Find(holder);
	bool isActive = key != nullptr;
	for (TX11Window* window : mWindows.All()) {
		if (isActive)
			break;
		isActive = window->HostHolds(holder);
		if (isActive && window->HasEmbedderFocus())
			key = window;
	}
	TX11Window* popup = mWindows.TopPopup();
	if (popup && (isActive || mpGrabber))
		key = popup;
	const bool mayBe = isActive || (holder == XCB_INPUT_FOCUS_POINTER_ROOT && mIsActive);
	const bool wasActive = std::exchange(mIsActive, mayBe);
	SetKeyWindow(key);
	if (wasActive != mIsActive && mOnActiveChanged)
		mOnActiveChanged(mIsActive);
}

void TX11Focus::SetKeyWindow(TX11Window* window) {
	if (window == mpKey)
		return;
	const TPtr<TX11Window> previous(std::exchange(mpKey, window));
	const TPtr<TX11Window> next(window);
	if (mOnKeyWindow)
		mOnKeyWindow(window);
	if (previous && previous->IsOpen())
		previous->Client().OnGlueLostKey(next ? &next->Client() : nullptr);
	if (next && next->IsKey())
		next->Client().OnGlueBecameKey(previous && previous->IsOpen() ? &previous->Client() : nullptr);
}

void TX11Focus::Take(TX11Window& window) {
	xcb_set_input_focus(mpConnection->Xcb(), XCB_INPUT_FOCUS_PARENT, window.Id(), XCB_CURRENT_TIME);
	mpConnection->Flush();
	mMayHaveMoved = true;
}
