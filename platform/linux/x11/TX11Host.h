// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TX11Connection.h"

#include <vector>

/// The host's window that an editor lies in, with all windows around it up to the screen. We look at them and hear of
/// their changes, and never own them: any may go at any time. GUI thread.
class TX11Host {
public:
	/// Throws TReadableException when there is no such window.
	TX11Host(const TX11Connection& connection, xcb_window_t window);
	~TX11Host();

	TX11Host(const TX11Host&) = delete;
	TX11Host& operator=(const TX11Host&) = delete;

	xcb_window_t Window() const { return mChain.front(); }

	/// The window that the window manager knows.
	xcb_window_t TopLevel() const { return mTopLevel; }

	/// Whether it can be seen, as of the last Refresh.
	bool IsViewable() const { return mIsViewable; }

	/// Whether the event was about one of these windows; Refresh is due then.
	bool HandleEvent(const xcb_generic_event_t& event);

	bool NeedsRefresh() const { return mNeedsRefresh; }

	void Refresh();

	/// Whether this is one of its windows or lies in one.
	bool Holds(xcb_window_t window) const;

private:
	void FollowChain(xcb_window_t window);
	void ForgetChain();

	const TX11Connection& mConnection;
	std::vector<xcb_window_t> mChain; // from the inside out, never empty
	xcb_window_t mTopLevel = 0;
	bool mIsViewable = false;
	bool mNeedsRefresh = false;
	bool mHasNewParents = false;
};
