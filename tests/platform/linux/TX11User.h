// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TWindowGlue.h"

#include <xcb/xcb.h>

/// Somebody in front of the screen, and other programs on it: a connection of its own that moves the pointer, presses
/// keys, opens windows and looks at what is shown.
class TX11User {
public:
	TX11User();
	~TX11User();

	TX11User(const TX11User&) = delete;
	TX11User& operator=(const TX11User&) = delete;

	xcb_connection_t* Xcb() const { return mpXcb; }
	xcb_window_t Root() const { return mpScreen->root; }

	void MovePointer(TPointT<int> position);
	/// X's number of the button.
	void Button(int button, bool press);
	void Key(int keycode, bool press);
	/// On a US keyboard; 0 for keys that the tests do not use.
	static int KeycodeOf(int code);

	/// Without a window manager's say.
	xcb_window_t OpenWindow(const TRectT<int>& place, bool show = true);
	void Configure(xcb_window_t window, uint16_t mask, const uint32_t* values);
	void Focus(xcb_window_t window);
	xcb_window_t FocusHolder() const;
	uint32_t PixelAt(xcb_window_t window, TPointT<int> point) const;

	/// The server has worked off all that was asked of it here.
	void Sync() const;

private:
	void Fake(uint8_t type, int detail, TPointT<int> position);

	xcb_connection_t* mpXcb;
	const xcb_screen_t* mpScreen;
};
