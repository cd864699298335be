// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TBrokenPipeGuard.h"
#include "platform/linux/x11/TXcbPtr.h"
#include "platform/linux/x11/X11Atoms.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

/// What we ask for of windows that are not ours, always the same, because several of us may look at one window.
constexpr uint32_t kEventsOfOthers =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_FOCUS_CHANGE;

/// One connection to the X server, of this platform object alone. A server that has gone makes every request and answer
/// empty, nothing worse. GUI thread.
class TX11Connection {
public:
	/// Throws TReadableException.
	TX11Connection();
	~TX11Connection();

	TX11Connection(const TX11Connection&) = delete;
	TX11Connection& operator=(const TX11Connection&) = delete;

	xcb_connection_t* Xcb() const { return mpXcb; }

	const xcb_screen_t& Screen() const { return *mpScreen; }

	int ScreenNumber() const { return mScreenNumber; }

	xcb_window_t Root() const { return mpScreen->root; }

	xcb_atom_t Atom(TX11Atom atom) const { return mAtoms[static_cast<std::size_t>(atom)]; }

	bool IsBroken() const { return xcb_connection_has_error(mpXcb) != 0; }

	int Descriptor() const { return xcb_get_file_descriptor(mpXcb); }

	// How our windows are made

	/// A visual with true colours.
	const xcb_visualtype_t& Visual() const { return *mpVisual; }

	uint8_t Depth() const { return mDepth; }

	xcb_colormap_t Colormap() const { return mColormap; }

	/// Is never shown: owns selections, receives what is transferred. Of our visual.
	xcb_window_t ServiceWindow() const { return mServiceWindow; }

	// Requests

	uint32_t NewId() const;
	void Flush() const;

	/// Null where the request failed: conn.Reply(xcb_get_geometry_reply, xcb_get_geometry(conn.Xcb(), window)).
	template <class TReply, class TCookie>
	TXcbPtr<TReply> Reply(
	    TReply* (*wait)(xcb_connection_t*, TCookie, xcb_generic_error_t**),
	    std::type_identity_t<TCookie> cookie) const {
		const TBrokenPipeGuard guard;
		xcb_generic_error_t* error = nullptr;
		TXcbPtr<TReply> reply(wait(mpXcb, cookie, &error));
		std::free(error);
		return reply;
	}

	/// The number of bytes that one request may carry.
	std::size_t LongestRequest() const;

	void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::span<const uint32_t> values) const;
	void SetTextProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& bytes) const;
	/// 32-bit values; empty where there are none of this type.
	std::vector<uint32_t> Property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const;
	std::string TextProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const;
	/// To the window manager, for a window of its.
	void TellWindowManager(xcb_window_t window, xcb_atom_t type, const std::array<uint32_t, 5>& data) const;
	/// To one window.
	void Tell(xcb_window_t to, xcb_window_t window, xcb_atom_t type, const std::array<uint32_t, 5>& data) const;

	// Events

	/// Null when nothing has come. Set-aside events first.
	TXcbEvent NextEvent();
	enum class TTaken { kNo, kYes, kLast };

	/// Shows each event that comes to `take` until it calls one the last: true; or until the time is over: false. What
	/// it does not take is set aside for NextEvent.
	bool WaitFor(int milliseconds, const std::function<TTaken(const xcb_generic_event_t&)>& take);
	/// Whether NextEvent has something without a word from the server.
	bool HasSetAside() const { return !mSetAside.empty(); }

	/// The server's time of the user's last doing.
	xcb_timestamp_t UserTime() const { return mUserTime; }

	void SetUserTime(xcb_timestamp_t time) { mUserTime = time; }

private:
	void FindVisual();
	void FetchAtoms();
	bool WaitForBytes(int milliseconds) const;

	xcb_connection_t* mpXcb = nullptr;
	int mScreenNumber = 0;
	const xcb_screen_t* mpScreen = nullptr;
	const xcb_visualtype_t* mpVisual = nullptr;
	uint8_t mDepth = 0;
	xcb_colormap_t mColormap = 0;
	xcb_window_t mServiceWindow = 0;
	xcb_timestamp_t mUserTime = XCB_CURRENT_TIME;
	std::array<xcb_atom_t, static_cast<std::size_t>(TX11Atom::kCount)> mAtoms{};
	std::deque<TXcbEvent> mSetAside;
};
