// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Pointer.h"

#include "platform/linux/x11/TX11Window.h"

#include <cstdlib>

namespace {

constexpr xcb_timestamp_t kDoubleClickTime = 400; // milliseconds
constexpr int kDoubleClickDistance = 5;           // pixels on either axis
constexpr uint32_t kFirstWheelButton = 4;
constexpr uint32_t kLastWheelButton = 7;
constexpr uint32_t kCoreEvents =
    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;

bool IsBefore(uint32_t sequence, uint32_t other) {
	return static_cast<int32_t>(sequence - other) < 0;
}

TMouseButton ButtonOf(uint32_t button) {
	return button == 1 ? TMouseButton::kLeft : button == 3 ? TMouseButton::kRight : TMouseButton::kMiddle;
}

TPointT<int> NotchOf(uint32_t button) {
	constexpr TPointT<int> kNotches[]{{0, 1}, {0, -1}, {1, 0}, {-1, 0}};
	return kNotches[button - kFirstWheelButton];
}

/// Points come in fractions of 65536.
TPointT<int> Whole(xcb_input_fp1616_t x, xcb_input_fp1616_t y) {
	return {x >> 16, y >> 16};
}

} // namespace

void TX11Pointer::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	mImages.Connect(connection);
	mHasInputExtension = mWheel.Connect(connection);
	if (mHasInputExtension)
		mInputOpcode = xcb_get_extension_data(connection.Xcb(), &xcb_input_id)->major_opcode;
}

void TX11Pointer::Disconnect() {
	mQuestion.Drop();
	mImages.Disconnect();
	mWheel.Disconnect();
	mpConnection = nullptr;
	mButtons = 0;
	mClick = {};
	mMove.reset();
	mHasWarped = false;
}

uint32_t TX11Pointer::SelectEvents(xcb_window_t window) {
	if (!mHasInputExtension)
		return kCoreEvents;
	struct {
		xcb_input_event_mask_t mHead;
		uint32_t mBits;
	} mask{
	    {XCB_INPUT_DEVICE_ALL_MASTER, 1},
	    XCB_INPUT_XI_EVENT_MASK_MOTION | XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
	        XCB_INPUT_XI_EVENT_MASK_DEVICE_CHANGED};
	xcb_input_xi_select_events(mpConnection->Xcb(), window, 1, &mask.mHead);
	return 0;
}

void TX11Pointer::Forget(TX11Window& window) {
	for (TX11Window** pointer : {&mpUnder, &mpLeft, &mpPressed})
		if (*pointer == &window)
			*pointer = nullptr;
	if (mMove && mMove->mWindow == window.Id())
		mMove.reset();
}

bool TX11Pointer::HandleEvent(const xcb_generic_event_t& event) {
	switch (event.response_type & 0x7F) {
	case XCB_MOTION_NOTIFY: {
		const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
		mKeyboard.NoteState(motion.state);
		OnMotion(
		    {motion.event,
		     {motion.root_x, motion.root_y},
		     {motion.event_x, motion.event_y},
		     motion.time,
		     event.full_sequence});
		return true;
	}
	case XCB_BUTTON_PRESS:
	case XCB_BUTTON_RELEASE: {
		const auto& button = reinterpret_cast<const xcb_button_press_event_t&>(event);
		mKeyboard.NoteState(button.state);
		OnButton(
		    {button.event,
		     {button.root_x, button.root_y},
		     {button.event_x, button.event_y},
		     button.time,
		     event.full_sequence},
		    button.detail, (event.response_type & 0x7F) == XCB_BUTTON_PRESS);
		return true;
	}
	case XCB_ENTER_NOTIFY:
	case XCB_LEAVE_NOTIFY:
		OnCrossing(reinterpret_cast<const xcb_enter_notify_event_t&>(event));
		return true;
	case XCB_GE_GENERIC: {
		const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
		return mHasInputExtension && generic.extension == mInputOpcode && HandleInputEvent(generic);
	}
	default:
		return false;
	}
}

bool TX11Pointer::HandleInputEvent(const xcb_ge_generic_event_t& event) {
	const auto& input = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
	const TPlace place{
	    input.event, Whole(input.root_x, input.root_y), Whole(input.event_x, input.event_y), input.time,
	    FullSequence(event)};
	switch (event.event_type) {
	case XCB_INPUT_MOTION:
		mKeyboard.NoteState(input.mods.effective);
		OnWheel(place, mWheel.NotchesOf(input));
		OnMotion(place);
		break;
	case XCB_INPUT_BUTTON_PRESS:
	case XCB_INPUT_BUTTON_RELEASE:
		mKeyboard.NoteState(input.mods.effective);
		if (input.detail < kFirstWheelButton || input.detail > kLastWheelButton || !mWheel.IsKnown(input))
			OnButton(place, input.detail, event.event_type == XCB_INPUT_BUTTON_PRESS);
		break;
	case XCB_INPUT_DEVICE_CHANGED:
		mWheel.ReadDevices();
		break;
	default:
		break;
	}
	return true;
}

TX11Window* TX11Pointer::TargetOf(const TPlace& place) const {
	if (mButtons != 0 && mpPressed)
		return mpPressed;
	TX11Window* window = mWindows.Find(place.mWindow);
	if (!window || window->Kind() != kPopupWindow)
		return window;
	const TPointT<int> size = window->ClientSize();
	return TRectT<int>{0, 0, size.mX, size.mY}.Contains(place.mInWindow) ? window : &window->Root();
}

void TX11Pointer::Send(TX11Window* target, const TPlace& place, TGlueMouseEvent event) {
	if (!target || !target->IsOpen())
		return;
	const TPtr<TX11Window> keep(target);
	event.mPosition = target->Id() == place.mWindow ? place.mInWindow : target->ScreenToClient(place.mOnScreen);
	event.mModifiers = mKeyboard.Modifiers();
	target->Client().OnGlueMouse(event);
}

/// A place from before a warp would look like a jump back.
void TX11Pointer::OnMotion(const TPlace& place) {
	if (mHasWarped && IsBefore(place.mSequence, mWarp))
		return;
	mHasWarped = false;
	mPlace = place.mOnScreen;
	if (mMove && mMove->mWindow != place.mWindow)
		DeliverMove();
	mMove = place;
}

void TX11Pointer::DeliverMove() {
	if (!mMove)
		return;
	const TPlace place = *mMove;
	mMove.reset();
	Send(TargetOf(place), place, {});
}

void TX11Pointer::OnWheel(const TPlace& place, TPointT<int> notches) {
	if (notches == TPointT<int>{})
		return;
	DeliverMove();
	Send(TargetOf(place), place, {.mType = TGlueMouseEvent::TType::kWheel, .mWheel = notches});
}

void TX11Pointer::OnButton(const TPlace& place, uint32_t button, bool isPress) {
	DeliverMove();
	mPlace = place.mOnScreen;
	if (button >= kFirstWheelButton && button <= kLastWheelButton) {
		if (isPress)
			OnWheel(place, NotchOf(button));
		return;
	}
	mLastButtonSequence = place.mSequence;
	const TMouseButton which = ButtonOf(button);
	TX11Window* target = TargetOf(place);
	if (!isPress) {
		mButtons &= ~BitOf(which);
		if (mButtons == 0)
			mpPressed = nullptr;
		const int clicks = mClick.mButton == which ? mClick.mCount : 1;
		Send(target, place, {.mType = TGlueMouseEvent::TType::kRelease, .mButton = which, .mClickCount = clicks});
		return;
	}
	if (mButtons == 0)
		mpPressed = target;
	mButtons |= BitOf(which);
	if (!target)
		return;
	mpConnection->SetUserTime(place.mTime);
	const TPtr<TX11Window> keep(target);
	if (mOnPress)
		mOnPress(*target);
	Send(
	    target, place,
	    {.mType = TGlueMouseEvent::TType::kPress, .mButton = which, .mClickCount = CountClicks(which, place, *target)});
}

int TX11Pointer::CountClicks(TMouseButton button, const TPlace& place, const TX11Window& target) {
	const TPointT<int> way = place.mOnScreen - mClick.mOnScreen;
	const bool goesOn = mClick.mCount > 0 && mClick.mWindow == target.Id() && mClick.mButton == button &&
	                    place.mTime - mClick.mTime <= kDoubleClickTime && std::abs(way.mX) <= kDoubleClickDistance &&
	                    std::abs(way.mY) <= kDoubleClickDistance;
	mClick = {target.Id(), button, place.mOnScreen, place.mTime, goesOn ? mClick.mCount + 1 : 1};
	return mClick.mCount;
}

void TX11Pointer::OnCrossing(const xcb_enter_notify_event_t& event) {
	TX11Window* window = mWindows.Find(event.event);
	if (!window || event.mode == XCB_NOTIFY_MODE_GRAB)
		return;
	mKeyboard.NoteState(event.state);
	if ((event.response_type & 0x7F) == XCB_ENTER_NOTIFY) {
		if (std::exchange(mpUnder, window) != window)
			mWheel.ReadDevices();
		OnMotion(
		    {event.event,
		     {event.root_x, event.root_y},
		     {event.event_x, event.event_y},
		     event.time,
		     FullSequence(event)});
	} else if (mpUnder == window && event.detail != XCB_NOTIFY_DETAIL_INFERIOR) {
		DeliverMove();
		mpLeft = std::exchange(mpUnder, nullptr);
	}
}

void TX11Pointer::Settle() {
	DeliverMove();
	if (TX11Window* left = std::exchange(mpLeft, nullptr); left && !mpUnder && mButtons == 0) {
		const TPtr<TX11Window> keep(left);
		left->Client().OnGlueMouse({.mPosition = {-1, -1}, .mModifiers = mKeyboard.Modifiers()});
	}
	CompareWithServer();
}

void TX11Pointer::CompareWithServer() {
	if (!mpConnection)
		return;
	if (const auto answer = mQuestion.TakeAnswer(mLastButtonSequence)) {
		const std::pair<int, uint16_t> kMasks[]{
		    {BitOf(TMouseButton::kLeft), XCB_BUTTON_MASK_1},
		    {BitOf(TMouseButton::kMiddle), XCB_BUTTON_MASK_2},
		    {BitOf(TMouseButton::kRight), XCB_BUTTON_MASK_3}};
		for (const auto& [bit, mask] : kMasks)
			if ((answer->mask & mask) == 0)
				mButtons &= ~bit;
		if (mButtons == 0)
			mpPressed = nullptr;
	}
	if (mButtons != 0 && mQuestion.IsDue())
		mQuestion.Ask(mpConnection->Xcb(), xcb_query_pointer(mpConnection->Xcb(), mpConnection->Root()).sequence);
}

void TX11Pointer::Define(int id, const TCursorImage& image) {
	mImages.Define(id, image);
	if (id == mCurrent)
		ShowCursor();
}

void TX11Pointer::ForgetAll() {
	mImages.Clear();
}

void TX11Pointer::SetCurrent(int id) {
	if (std::exchange(mCurrent, id) != id)
		ShowCursor();
}

void TX11Pointer::ShowCursor() {
	if (!mpConnection)
		return;
	const xcb_cursor_t cursor = CurrentCursor();
	for (const TX11Window* window : mWindows.All())
		xcb_change_window_attributes(mpConnection->Xcb(), window->Id(), XCB_CW_CURSOR, &cursor);
	mpConnection->Flush();
}

TPointT<int> TX11Pointer::MousePosition() const {
	if (mpConnection && !mpUnder && mButtons == 0) {
		const auto reply =
		    mpConnection->Reply(xcb_query_pointer_reply, xcb_query_pointer(mpConnection->Xcb(), mpConnection->Root()));
		if (reply)
			return {reply->root_x, reply->root_y};
	}
	return mPlace;
}

void TX11Pointer::SetMousePosition(TPointT<int> position) {
	if (!mpConnection)
		return;
	const auto cookie = xcb_warp_pointer(
	    mpConnection->Xcb(), XCB_WINDOW_NONE, mpConnection->Root(), 0, 0, 0, 0, static_cast<int16_t>(position.mX),
	    static_cast<int16_t>(position.mY));
	mWarp = cookie.sequence;
	mHasWarped = true;
	mPlace = position;
	mMove.reset();
	mpConnection->Flush();
}
