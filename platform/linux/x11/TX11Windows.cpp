// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Windows.h"

#include "platform/linux/x11/TX11Window.h"

#include <algorithm>

TX11Window* TX11Windows::Find(xcb_window_t id) const {
	const auto found =
	    std::find_if(mWindows.begin(), mWindows.end(), [&](const TX11Window* window) { return window->Id() == id; });
	return found == mWindows.end() ? nullptr : *found;
}

TX11Window* TX11Windows::TopPopup() const {
	const auto found = std::find_if(mWindows.rbegin(), mWindows.rend(), [](const TX11Window* window) {
		return window->Kind() == kPopupWindow && window->IsVisible();
	});
	return found == mWindows.rend() ? nullptr : *found;
}
