// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Clipboard.h"

#include "platform/linux/text/Utf8Text.h"

#include <xcb/xfixes.h>

void TX11Clipboard::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	const auto* extension = xcb_get_extension_data(connection.Xcb(), &xcb_xfixes_id);
	if (extension && extension->present) {
		mFirstEvent = extension->first_event;
		constexpr uint32_t kChanges = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
		                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
		                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
		for (const xcb_atom_t selection : {connection.Atom(TX11Atom::kClipboard), xcb_atom_t{XCB_ATOM_PRIMARY}})
			xcb_xfixes_select_selection_input(connection.Xcb(), connection.ServiceWindow(), selection, kChanges);
	}
	// Only now they ask for the owners: a change in between is told, and not lost.
	mClipboard.Connect(connection);
	mPrimary.Connect(connection);
}

void TX11Clipboard::Disconnect() {
	mClipboard.Disconnect();
	mPrimary.Disconnect();
	mpConnection = nullptr;
	mFirstEvent = -1;
	mHasChanged = false;
}

bool TX11Clipboard::HandleEvent(const xcb_generic_event_t& event) {
	return OnOwnerChanged(event) || mClipboard.HandleEvent(event) || mPrimary.HandleEvent(event);
}

bool TX11Clipboard::OnOwnerChanged(const xcb_generic_event_t& event) {
	if (mFirstEvent < 0 || (event.response_type & 0x7F) != mFirstEvent + XCB_XFIXES_SELECTION_NOTIFY)
		return false;
	const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
	if (change.selection == XCB_ATOM_PRIMARY)
		mPrimary.OnOwnerChanged(change.owner, event.full_sequence);
	else if (mClipboard.OnOwnerChanged(change.owner, event.full_sequence))
		mHasChanged = true;
	return true;
}

void TX11Clipboard::Settle() {
	mClipboard.Settle();
	mPrimary.Settle();
}

TString TX11Clipboard::Text() {
	return TextOfUtf8(mClipboard.Read());
}

void TX11Clipboard::SetText(const TString& text) {
	mClipboard.Own(Utf8Of(text));
}

TString TX11Clipboard::PrimaryText() {
	return TextOfUtf8(mPrimary.Read());
}

void TX11Clipboard::SetPrimaryText(const TString& text) {
	mPrimary.Own(Utf8Of(text));
}
