// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCursorImpl.h"
#include "platform/linux/x11/TX11CursorImages.h"
#include "platform/linux/x11/TX11Keyboard.h"
#include "platform/linux/x11/TX11Question.h"
#include "platform/linux/x11/TX11Wheel.h"
#include "platform/linux/x11/TX11Windows.h"

#include <functional>
#include <optional>

/// The pointer over our windows: its picture, its place, its buttons, and whose its events are. Events that come in one
/// go are drawn together to the last place; while a button is held all belong to the window of the press, and beyond
/// all windows to the root of the pop-up that has grabbed the pointer. Place and buttons are known from events; while a
/// button seems to be held they are compared with the server in the background. GUI thread.
class TX11Pointer final : public TCursorImpl {
public:
	TX11Pointer(TX11Windows& windows, TX11Keyboard& keyboard) : mWindows(windows), mKeyboard(keyboard) {}

	/// onPress hears of each press before its window does.
	void SetOnPress(std::function<void(TX11Window&)> onPress) { mOnPress = std::move(onPress); }

	void Connect(TX11Connection& connection);
	void Disconnect();

	/// The pointer's part of a window's event mask. Where there is XInput 2 this also asks for its events.
	uint32_t SelectEvents(xcb_window_t window);
	void Forget(TX11Window& window);

	/// True for an event of the pointer.
	bool HandleEvent(const xcb_generic_event_t& event);
	/// When all events that had come have been handled.
	void Settle();
	/// Before an event that must not overtake the pointer's.
	void DeliverMove();

	TX11Window* WindowUnder() const { return mpUnder; }

	bool IsDefined(int id) const override { return mImages.Has(id); }

	void Define(int id, const TCursorImage& image) override;
	void ForgetAll() override;

	int Current() const override { return mCurrent; }

	void SetCurrent(int id) override;
	xcb_cursor_t CurrentCursor() { return mImages.CursorOf(mCurrent); }

	TPointT<int> MousePosition() const override;
	void SetMousePosition(TPointT<int> position) override;

	bool IsButtonDown(TMouseButton button) const override { return (mButtons & BitOf(button)) != 0; }

private:
	/// What core events and those of XInput have in common.
	struct TPlace {
		xcb_window_t mWindow;
		TPointT<int> mOnScreen;
		TPointT<int> mInWindow;
		xcb_timestamp_t mTime;
		uint32_t mSequence;
	};

	static int BitOf(TMouseButton button) { return 1 << static_cast<int>(button); }

	bool HandleInputEvent(const xcb_ge_generic_event_t& event);
	void OnMotion(const TPlace& place);
	void OnButton(const TPlace& place, uint32_t button, bool isPress);
	void OnCrossing(const xcb_enter_notify_event_t& event);
	void OnWheel(const TPlace& place, TPointT<int> notches);
	int CountClicks(TMouseButton button, const TPlace& place, const TX11Window& target);
	TX11Window* TargetOf(const TPlace& place) const;
	void Send(TX11Window* target, const TPlace& place, TGlueMouseEvent event);
	void CompareWithServer();
	void ShowCursor();

	TX11Windows& mWindows;
	TX11Keyboard& mKeyboard;
	std::function<void(TX11Window&)> mOnPress;
	TX11Connection* mpConnection = nullptr;
	TX11CursorImages mImages;
	TX11Wheel mWheel;
	bool mHasInputExtension = false;
	uint8_t mInputOpcode = 0;
	int mCurrent = 0;
	TPointT<int> mPlace;
	int mButtons = 0;
	TX11Window* mpUnder = nullptr;
	TX11Window* mpLeft = nullptr; // has lost the pointer since the last Settle
	TX11Window* mpPressed = nullptr;
	std::optional<TPlace> mMove; // not delivered yet
	uint32_t mWarp = 0;          // the request after which places are believed
	bool mHasWarped = false;
	struct TClick {
		xcb_window_t mWindow = 0;
		TMouseButton mButton{};
		TPointT<int> mOnScreen;
		xcb_timestamp_t mTime = 0;
		int mCount = 0;
	} mClick;
	uint32_t mLastButtonSequence = 0;
	TX11Question<xcb_query_pointer_reply_t> mQuestion;
};
