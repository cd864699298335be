// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11SelectionReader.h"

#include <algorithm>

namespace {

constexpr uint32_t kWholeProperty = 0x1FFFFFFF; // in units of four bytes

} // namespace

void TX11SelectionReader::Disconnect() {
	mpConnection = nullptr;
	mState = TState::kIdle;
	mBytes = {};
}

void TX11SelectionReader::Start(xcb_atom_t selection, xcb_atom_t target, xcb_timestamp_t time, std::size_t longest) {
	mState = TState::kAsked;
	mSelection = selection;
	mTarget = target;
	mLongest = longest;
	mReceived = 0;
	mBytes.clear();
	xcb_delete_property(mpConnection->Xcb(), mpConnection->ServiceWindow(), Property());
	xcb_convert_selection(mpConnection->Xcb(), mpConnection->ServiceWindow(), selection, target, Property(), time);
	mpConnection->Flush();
}

bool TX11SelectionReader::HandleEvent(const xcb_generic_event_t& event) {
	const int type = event.response_type & 0x7F;
	if (type == XCB_SELECTION_NOTIFY && mState == TState::kAsked) {
		const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
		if (answer.requestor != mpConnection->ServiceWindow() || answer.selection != mSelection ||
		    answer.target != mTarget)
			return false;
		OnAnswer(answer);
		return true;
	}
	if (type != XCB_PROPERTY_NOTIFY || !mpConnection)
		return false;
	const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
	if (change.window != mpConnection->ServiceWindow() || change.atom != Property())
		return false;
	if (mState == TState::kReceiving && change.state == XCB_PROPERTY_NEW_VALUE) {
		const std::size_t before = mReceived;
		ReadProperty();
		if (mReceived == before) // an empty piece ends the transfer
			mState = TState::kDone;
	}
	return true;
}

void TX11SelectionReader::OnAnswer(const xcb_selection_notify_event_t& event) {
	if (event.property == XCB_ATOM_NONE) {
		mState = TState::kFailed;
		return;
	}
	const xcb_atom_t type = ReadProperty();
	if (type == XCB_ATOM_NONE) {
		mState = TState::kFailed;
	} else if (type == mpConnection->Atom(TX11Atom::kIncr)) {
		mState = TState::kReceiving; // deleting the property has asked for the first piece
		mReceived = 0;
		mBytes.clear();
	} else {
		mState = TState::kDone;
	}
}

/// Takes the property away, which tells the owner that it may go on.
xcb_atom_t TX11SelectionReader::ReadProperty() {
	const auto reply = mpConnection->Reply(
	    xcb_get_property_reply, xcb_get_property(
	                                mpConnection->Xcb(), true, mpConnection->ServiceWindow(), Property(),
	                                XCB_GET_PROPERTY_TYPE_ANY, 0, kWholeProperty));
	if (!reply)
		return XCB_ATOM_NONE;
	const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
	mReceived += length;
	if (reply->format == 8)
		mBytes.append(
		    static_cast<const char*>(xcb_get_property_value(reply.get())),
		    std::min(length, mLongest - std::min(mLongest, mBytes.size())));
	return reply->type;
}
