// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>
#include <xcb/xcb.h>

class TX11Window;

/// The open windows of one platform object, in the order of their making. GUI thread.
class TX11Windows {
public:
	const std::vector<TX11Window*>& All() const { return mWindows; }

	void Add(TX11Window& window) { mWindows.push_back(&window); }

	void Remove(TX11Window& window) { std::erase(mWindows, &window); }

	/// Null for a window of somebody else.
	TX11Window* Find(xcb_window_t id) const;
	/// The pop-up shown last; null without one.
	TX11Window* TopPopup() const;

private:
	std::vector<TX11Window*> mWindows;
};
