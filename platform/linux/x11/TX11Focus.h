// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TX11Connection.h"
#include "platform/linux/x11/TX11Windows.h"

#include <functional>

/// Who has the keys. The server's focus decides, and is asked whenever an event says that it may have moved; while a
/// pop-up is shown the pointer and the keys are grabbed for it and given back with the last one. A grab that another
/// program's hinders is tried again with each tick. GUI thread.
class TX11Focus {
public:
	explicit TX11Focus(TX11Windows& windows) : mWindows(windows) {}

	/// Hears when the program, or the host around an editor, gets or loses the keys.
	void SetOnActiveChanged(std::function<void(bool)> onChange) { mOnActiveChanged = std::move(onChange); }

	/// Hears who has the keys now, before the windows do; null for none.
	void SetOnKeyWindow(std::function<void(TX11Window*)> onKeyWindow) { mOnKeyWindow = std::move(onKeyWindow); }

	void Connect(TX11Connection& connection) { mpConnection = &connection; }

	void Disconnect();

	TX11Window* KeyWindow() const { return mpKey; }

	/// For an event that came to this window.
	TX11Window* TargetOfKeys(xcb_window_t window) const;

	/// True for an event of the focus.
	bool HandleEvent(const xcb_generic_event_t& event);

	void MayHaveMoved() { mMayHaveMoved = true; }

	void PopupsMayHaveChanged() { mPopupsMayHaveChanged = mMayHaveMoved = true; }

	void Forget(TX11Window& window);
	/// When all events that had come have been handled.
	void Settle();

	/// The focus goes to a window of ours.
	void Take(TX11Window& window);
	/// Who has it, by the server; what is no window is one of the constants of the protocol.
	xcb_window_t Holder() const;

private:
	void UpdateGrab();
	bool Grab(TX11Window& window);
	void Ungrab();
	void FindKeyWindow();
	void SetKeyWindow(TX11Window* window);

	TX11Windows& mWindows;
	std::function<void(bool)> mOnActiveChanged;
	std::function<void(TX11Window*)> mOnKeyWindow;
	TX11Connection* mpConnection = nullptr;
	TX11Window* mpKey = nullptr;
	TX11Window* mpGrabber = nullptr; // the pop-up in whose name the grabs are
	bool mMayHaveMoved = false;
	bool mPopupsMayHaveChanged = false;
	bool mIsActive = false;
};
