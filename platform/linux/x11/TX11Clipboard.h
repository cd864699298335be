// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TClipboardImpl.h"
#include "platform/linux/x11/TX11Selection.h"

/// CLIPBOARD and PRIMARY. What was set without a connection is not kept: there is no window to copy from, either.
/// GUI thread.
class TX11Clipboard final : public TClipboardImpl {
public:
	void Connect(TX11Connection& connection);
	void Disconnect();

	/// True for an event of one of the two.
	bool HandleEvent(const xcb_generic_event_t& event);
	void Settle();
	/// A window of ours has got the keys: the user may soon paste.
	void ReadAhead() { mClipboard.ReadAhead(); }

	/// Whether another program has set the clipboard since the last call.
	bool TakeChange() { return std::exchange(mHasChanged, false); }

	bool HasText() const override { return mClipboard.HasOwner(); }

	TString Text() override;
	void SetText(const TString& text) override;
	TString PrimaryText() override;
	void SetPrimaryText(const TString& text) override;

private:
	bool OnOwnerChanged(const xcb_generic_event_t& event);

	TX11Selection mClipboard{XCB_ATOM_NONE, TX11Atom::kClipboard, TX11Atom::kClipboardTransfer};
	TX11Selection mPrimary{XCB_ATOM_PRIMARY, TX11Atom::kCount, TX11Atom::kPrimaryTransfer};
	TX11Connection* mpConnection = nullptr;
	int mFirstEvent = -1;
	bool mHasChanged = false;
};
