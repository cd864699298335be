// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Host.h"

#include "framework/foundation/text/TReadableException.h"

#include <algorithm>

namespace {

constexpr std::size_t kDeepest = 64; // windows; more are taken for a mistake

xcb_window_t ParentOf(const TX11Connection& connection, xcb_window_t window) {
	const auto tree = connection.Reply(xcb_query_tree_reply, xcb_query_tree(connection.Xcb(), window));
	return tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
}

bool HasState(const TX11Connection& connection, xcb_window_t window) {
	const xcb_atom_t atom = connection.Atom(TX11Atom::kWmState);
	return !connection.Property(window, atom, atom).empty();
}

/// Which of its windows an event speaks of; 0 for other events.
xcb_window_t SubjectOf(const xcb_generic_event_t& event) {
	switch (event.response_type & 0x7F) {
	case XCB_CONFIGURE_NOTIFY:
		return reinterpret_cast<const xcb_configure_notify_event_t&>(event).event;
	case XCB_MAP_NOTIFY:
		return reinterpret_cast<const xcb_map_notify_event_t&>(event).event;
	case XCB_UNMAP_NOTIFY:
		return reinterpret_cast<const xcb_unmap_notify_event_t&>(event).event;
	case XCB_DESTROY_NOTIFY:
		return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).event;
	case XCB_REPARENT_NOTIFY:
		return reinterpret_cast<const xcb_reparent_notify_event_t&>(event).event;
	case XCB_PROPERTY_NOTIFY:
		return reinterpret_cast<const xcb_property_notify_event_t&>(event).window;
	default:
		return XCB_WINDOW_NONE;
	}
}

} // namespace

TX11Host::TX11Host(const TX11Connection& connection, xcb_window_t window) : mConnection(connection) {
	if (!connection.Reply(xcb_get_geometry_reply, xcb_get_geometry(connection.Xcb(), window)))
		throw TReadableException(
		    TString::Format("The host's window %s does not exist.", TString::ToString(static_cast<unsigned>(window))));
	FollowChain(window);
	Refresh();
}

TX11Host::~TX11Host() {
	ForgetChain();
}

void TX11Host::FollowChain(xcb_window_t window) {
	mTopLevel = 0;
	while (window != XCB_WINDOW_NONE && window != mConnection.Root() && mChain.size() < kDeepest) {
		mChain.push_back(window);
		xcb_change_window_attributes(mConnection.Xcb(), window, XCB_CW_EVENT_MASK, &kEventsOfOthers);
		if (mTopLevel == 0 && HasState(mConnection, window))
			mTopLevel = window;
		window = ParentOf(mConnection, window);
	}
	if (mTopLevel == 0)
		mTopLevel = mChain.back();
}

void TX11Host::ForgetChain() {
	const uint32_t nothing = 0;
	for (const xcb_window_t window : mChain)
		xcb_change_window_attributes(mConnection.Xcb(), window, XCB_CW_EVENT_MASK, &nothing);
	mChain.clear();
}

bool TX11Host::HandleEvent(const xcb_generic_event_t& event) {
	const xcb_window_t subject = SubjectOf(event);
	if (subject == XCB_WINDOW_NONE || std::find(mChain.begin(), mChain.end(), subject) == mChain.end())
		return false;
	const int type = event.response_type & 0x7F;
	mHasNewParents = mHasNewParents || type == XCB_REPARENT_NOTIFY;
	if (type != XCB_PROPERTY_NOTIFY) {
		mNeedsRefresh = true;
		return true;
	}
	const xcb_atom_t atom = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
	mNeedsRefresh = mNeedsRefresh || atom == mConnection.Atom(TX11Atom::kNetWmState) ||
	                atom == mConnection.Atom(TX11Atom::kWmState);
	return true;
}

void TX11Host::Refresh() {
	mNeedsRefresh = false;
	const xcb_window_t innermost = Window();
	if (std::exchange(mHasNewParents, false)) {
		ForgetChain();
		FollowChain(innermost);
	}
	const auto attributes =
	    mConnection.Reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(mConnection.Xcb(), innermost));
	const auto states = mConnection.Property(mTopLevel, mConnection.Atom(TX11Atom::kNetWmState), XCB_ATOM_ATOM);
	const bool isHidden =
	    std::find(states.begin(), states.end(), mConnection.Atom(TX11Atom::kNetWmStateHidden)) != states.end();
	mIsViewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && !isHidden;
}

bool TX11Host::Holds(xcb_window_t window) const {
	for (std::size_t depth = 0; window > XCB_INPUT_FOCUS_POINTER_ROOT && depth < kDeepest; ++depth) {
		if (window == mTopLevel || window == mChain.back())
			return true;
		if (window == mConnection.Root())
			return false;
		window = ParentOf(mConnection, window);
	}
	return false;
}
