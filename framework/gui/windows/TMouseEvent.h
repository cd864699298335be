// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/gui/events/TApplicationEvent.h"

#include <cstdint>

class TWindow;

enum TMouseEventType : int32_t {
	kMouseMove = 0, // also with buttons held
	kLeftPress = 1,
	kRightPress = 2,
	kMiddlePress = 3,
	kLeftRelease = 4, // with the repeat flag: an auto-repeat of the held button
	kRightRelease = 5,
	kMiddleRelease = 6,
	kLeftDoubleClick = 7,
	kRightDoubleClick = 8,
	kMiddleDoubleClick = 9,
	kWheelUp = 10,
	kWheelDown = 11,
	kWheelLeft = 12,
	kWheelRight = 13
};

/// What every mouse operation is told beside the position. The modifiers of a key are others (TKeyModifiers).
enum TMouseModifiers : int32_t {
	kMouseCommand = 1,
	kMouseOption = 2,
	kMouseShift = 4,
	kMouseAutoRepeat = 16, // this release is an auto-repeat
	kMouseLeftHeld = 32,
	kMouseRightHeld = 64,
	kMouseMiddleHeld = 128
};

constexpr bool IsMousePress(int32_t type) noexcept {
	return type >= kLeftPress && type <= kMiddlePress;
}

constexpr bool IsMouseRelease(int32_t type) noexcept {
	return type >= kLeftRelease && type <= kMiddleRelease;
}

constexpr bool IsMouseDoubleClick(int32_t type) noexcept {
	return type >= kLeftDoubleClick && type <= kMiddleDoubleClick;
}

constexpr bool IsMouseWheel(int32_t type) noexcept {
	return type >= kWheelUp && type <= kWheelRight;
}

/// One doing of the mouse in a window; the position is in that window's logical coordinates. Main thread.
class TMouseEvent final : public TApplicationEvent {
public:
	TMouseEvent(TWindow* window, int32_t type, TPointT<int> position, bool isRepeat = false);

	int32_t Type() const noexcept { return mType; }

	TPointT<int> Position() const noexcept { return mPosition; }

	bool IsRepeat() const noexcept { return mIsRepeat; }

	/// A press or double click that is no repeat.
	bool IsFreshPress() const noexcept { return !mIsRepeat && (IsMousePress(mType) || IsMouseDoubleClick(mType)); }

	/// Null once it is gone.
	TWindow* Window() const noexcept { return mWindow.Get(); }

private:
	const int32_t mType;
	const TPointT<int> mPosition;
	const bool mIsRepeat;
	TWeakPtr<TWindow> mWindow;
};
