// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TX11SelectionReader.h"
#include "platform/linux/x11/TX11Windows.h"

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"

#include <string_view>

/// Files that another program drags over our windows and drops there, by the XDND protocol. The list of files is
/// fetched with the first position; until it is there the drag is neither taken nor refused. GUI thread.
class TX11Drop {
public:
	explicit TX11Drop(TX11Windows& windows) : mWindows(windows) {}

	void Connect(TX11Connection& connection);
	void Disconnect();

	/// Says of a window that it takes part.
	void Announce(xcb_window_t window) const;
	void Forget(TX11Window& window);

	/// True for an event of a drag.
	bool HandleEvent(const xcb_generic_event_t& event);

	/// The local files of a "text/uri-list"; all else in it is left out.
	static TList<TString> PathsOf(std::string_view uris);

private:
	void OnEnter(TX11Window& window, const xcb_client_message_event_t& message);
	void OnPosition(TX11Window& window, const xcb_client_message_event_t& message);
	void OnLeave();
	void OnDrop(const xcb_client_message_event_t& message);
	void OnFiles();
	void SendStatus();
	void Finish(bool isTaken);
	void Reset();

	TX11Windows& mWindows;
	TX11Connection* mpConnection = nullptr;
	TX11SelectionReader mReader{TX11Atom::kDropTransfer};
	TX11Window* mpTarget = nullptr;
	xcb_window_t mSource = 0;
	bool mHasFiles = false; // it offers a list of files
	bool mIsKnown = false;  // which is there
	bool mIsTaken = false;
	bool mIsDropped = false;
	TPointT<int> mPlace; // in the window
	TList<TString> mPaths;
};
