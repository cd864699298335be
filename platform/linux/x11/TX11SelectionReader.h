// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TX11Connection.h"

#include <utility>

/// Fetches what another program offers, in one piece or in many, without waiting: it is shown the events. One transfer
/// at a time. GUI thread.
class TX11SelectionReader {
public:
	/// The property of the service window that is used is this reader's alone.
	explicit TX11SelectionReader(TX11Atom property) : mProperty(property) {}

	void Connect(TX11Connection& connection) { mpConnection = &connection; }

	void Disconnect();

	/// Ends what was going on.
	void Start(xcb_atom_t selection, xcb_atom_t target, xcb_timestamp_t time, std::size_t longest);
	void Stop() { mState = TState::kIdle; }

	bool IsBusy() const { return mState == TState::kAsked || mState == TState::kReceiving; }

	bool HasSucceeded() const { return mState == TState::kDone; }

	/// Grows with each piece that comes.
	std::size_t Received() const { return mReceived; }

	std::string TakeBytes() { return std::exchange(mBytes, {}); }

	/// True for an event of the transfer.
	bool HandleEvent(const xcb_generic_event_t& event);

private:
	enum class TState { kIdle, kAsked, kReceiving, kDone, kFailed };

	xcb_atom_t Property() const { return mpConnection->Atom(mProperty); }

	void OnAnswer(const xcb_selection_notify_event_t& event);
	xcb_atom_t ReadProperty();

	const TX11Atom mProperty;
	TX11Connection* mpConnection = nullptr;
	TState mState = TState::kIdle;
	xcb_atom_t mSelection = 0;
	xcb_atom_t mTarget = 0;
	std::size_t mLongest = 0; // bytes that are kept
	std::size_t mReceived = 0;
	std::string mBytes;
};
