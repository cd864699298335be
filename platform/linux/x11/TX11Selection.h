// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TX11SelectionReader.h"

#include <chrono>
#include <memory>
#include <vector>

/// One of the server's selections, as a text: owned by us and given to whoever asks, or read from its owner.
///
/// Another editor in this process, or the host itself, may own it and run on this very thread, where it cannot answer
/// while we wait. Texts of our own process are therefore taken from a table, and others are fetched ahead when a window
/// of ours gets the keys. GUI thread.
class TX11Selection {
public:
	TX11Selection(xcb_atom_t predefined, TX11Atom atom, TX11Atom property)
	    : mPredefined(predefined),
	      mAtom(atom),
	      mReader(property) {}
	~TX11Selection() { Disconnect(); }

	TX11Selection(const TX11Selection&) = delete;
	TX11Selection& operator=(const TX11Selection&) = delete;

	void Connect(TX11Connection& connection);
	/// What we own goes to the clipboard's keeper first, if there is one.
	void Disconnect();

	/// UTF-8.
	void Own(std::string text);
	bool HasOwner() const { return mHasOwner; }
	std::string Read();
	/// Begins to read, so that Read need not wait.
	void ReadAhead();

	/// True for an event of this selection.
	bool HandleEvent(const xcb_generic_event_t& event);
	/// The server says who owns it now. True if that is another program.
	bool OnOwnerChanged(xcb_window_t owner, uint32_t sequence);
	/// Gives up on receivers that have gone silent; once in each tick.
	void Settle();

private:
	using TText = std::shared_ptr<const std::string>;
	using TClock = std::chrono::steady_clock;

	/// A text that is too long for one request goes in pieces; the receiver asks for each by deleting the last.
	struct TSending {
		xcb_window_t mReceiver;
		xcb_atom_t mProperty;
		xcb_atom_t mType;
		TText mText;
		std::size_t mSent;
		TClock::time_point mLastSign;
	};

	xcb_atom_t Selection() const;
	void Disown();
	bool WaitForReader();
	void OnReadingEnded();
	void Serve(const xcb_selection_request_event_t& request);
	bool Convert(xcb_window_t receiver, xcb_atom_t property, xcb_atom_t target);
	bool ConvertSeveral(xcb_window_t receiver, xcb_atom_t property);
	void SendText(xcb_window_t receiver, xcb_atom_t property, xcb_atom_t type, TText text);
	bool SendNext(const xcb_property_notify_event_t& event);
	void HandOver();

	const xcb_atom_t mPredefined; // else mAtom counts
	const TX11Atom mAtom;
	TX11SelectionReader mReader;
	TX11Connection* mpConnection = nullptr;
	bool mHasOwner = false;
	xcb_window_t mOwner = 0;
	TText mpText; // while we own it
	xcb_timestamp_t mOwnedSince = 0;
	uint32_t mOwning = 0; // the request by which we got it
	TText mpFetched;      // of the present owner
	bool mTriesLatin1 = false;
	std::vector<TSending> mSendings;
};
