// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Connection.h"

#include "framework/foundation/text/TReadableException.h"

#include <chrono>
#include <cstring>
#include <poll.h>

namespace {

const xcb_screen_t* ScreenOf(xcb_connection_t* xcb, int number) {
	for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb)); screens.rem > 0; xcb_screen_next(&screens))
		if (number-- == 0)
			return screens.data;
	return nullptr;
}

/// Its lines of 32 bits have the bytes blue, green, red as they lie in our own surfaces.
bool IsPlain(const xcb_visualtype_t& visual) {
	return visual.red_mask == 0xFF0000 && visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
}

} // namespace

TX11Connection::TX11Connection() {
	const TBrokenPipeGuard guard;
	mpXcb = xcb_connect(nullptr, &mScreenNumber);
	mpScreen = IsBroken() ? nullptr : ScreenOf(mpXcb, mScreenNumber);
	if (mpScreen)
		FindVisual();
	if (!mpVisual) {
		const char* display = std::getenv("DISPLAY");
		const TString message = TString::Format(
		    mpScreen ? "The display '%s' has no true colours." : "The display '%s' cannot be opened.",
		    TString(display ? display : "", kPlatformEncoding));
		xcb_disconnect(mpXcb);
		throw TReadableException(message);
	}
	FetchAtoms();
	mColormap = NewId();
	xcb_create_colormap(mpXcb, XCB_COLORMAP_ALLOC_NONE, mColormap, Root(), mpVisual->visual_id);
	mServiceWindow = NewId();
	const std::array<uint32_t, 3> values{0, XCB_EVENT_MASK_PROPERTY_CHANGE, mColormap};
	xcb_create_window(
	    mpXcb, mDepth, mServiceWindow, Root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, mpVisual->visual_id,
	    XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values.data());
}

TX11Connection::~TX11Connection() {
	const TBrokenPipeGuard guard;
	xcb_disconnect(mpXcb);
}

/// The root's own visual where that will do, so that windows need no conversion; else the first that fits best.
void TX11Connection::FindVisual() {
	int best = 0;
	for (auto depths = xcb_screen_allowed_depths_iterator(mpScreen); depths.rem > 0; xcb_depth_next(&depths)) {
		for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
			const xcb_visualtype_t& visual = *visuals.data;
			if (visual._class != XCB_VISUAL_CLASS_TRUE_COLOR || depths.data->depth > 30)
				continue;
			const int fitness = 1 + (visual.visual_id == mpScreen->root_visual ? 2 : 0) + (IsPlain(visual) ? 4 : 0);
			if (fitness > best) {
				best = fitness;
				mpVisual = &visual;
				mDepth = depths.data->depth;
			}
		}
	}
}

void TX11Connection::FetchAtoms() {
	std::array<xcb_intern_atom_cookie_t, kX11AtomNames.size()> cookies{};
	for (std::size_t i = 0; i < cookies.size(); ++i)
		cookies[i] =
		    xcb_intern_atom(mpXcb, false, static_cast<uint16_t>(std::strlen(kX11AtomNames[i])), kX11AtomNames[i]);
	for (std::size_t i = 0; i < cookies.size(); ++i)
		if (const auto reply = Reply(xcb_intern_atom_reply, cookies[i]))
			mAtoms[i] = reply->atom;
}

uint32_t TX11Connection::NewId() const {
	const TBrokenPipeGuard guard;
	return xcb_generate_id(mpXcb);
}

void TX11Connection::Flush() const {
	const TBrokenPipeGuard guard;
	xcb_flush(mpXcb);
}

std::size_t TX11Connection::LongestRequest() const {
	const TBrokenPipeGuard guard;
	constexpr std::size_t kHeader = 64;
	return std::size_t{xcb_get_maximum_request_length(mpXcb)} * 4 - kHeader;
}

void TX11Connection::SetProperty(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::span<const uint32_t> values) const {
	xcb_change_property(
	    mpXcb, XCB_PROP_MODE_REPLACE, window, property, type, 32, static_cast<uint32_t>(values.size()), values.data());
}

void TX11Connection::SetTextProperty(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& bytes) const {
	xcb_change_property(
	    mpXcb, XCB_PROP_MODE_REPLACE, window, property, type, 8, static_cast<uint32_t>(bytes.size()), bytes.data());
}

std::vector<uint32_t> TX11Connection::Property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const {
	constexpr uint32_t kLongest = 4096;
	const auto reply =
	    Reply(xcb_get_property_reply, xcb_get_property(mpXcb, false, window, property, type, 0, kLongest));
	if (!reply || reply->format != 32)
		return {};
	const auto* values = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
	return {values, values + reply->value_len};
}

std::string TX11Connection::TextProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const {
	constexpr uint32_t kLongest = 1 << 18; // in units of four bytes
	const auto reply =
	    Reply(xcb_get_property_reply, xcb_get_property(mpXcb, false, window, property, type, 0, kLongest));
	if (!reply || reply->format != 8)
		return {};
	return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

void TX11Connection::TellWindowManager(
    xcb_window_t window, xcb_atom_t type, const std::array<uint32_t, 5>& data) const {
	xcb_client_message_event_t event{};
	event.response_type = XCB_CLIENT_MESSAGE;
	event.format = 32;
	event.window = window;
	event.type = type;
	std::memcpy(event.data.data32, data.data(), sizeof data);
	xcb_send_event(
	    mpXcb, false, Root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
	    reinterpret_cast<const char*>(&event));
}

void TX11Connection::Tell(
    xcb_window_t to, xcb_window_t window, xcb_atom_t type, const std::array<uint32_t, 5>& data) const {
	xcb_client_message_event_t event{};
	event.response_type = XCB_CLIENT_MESSAGE;
	event.format = 32;
	event.window = window;
	event.type = type;
	std::memcpy(event.data.data32, data.data(), sizeof data);
	xcb_send_event(mpXcb, false, to, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
}

TXcbEvent TX11Connection::NextEvent() {
	if (mSetAside.empty())
		return TXcbEvent(xcb_poll_for_event(mpXcb));
	TXcbEvent event = std::move(mSetAside.front());
	mSetAside.pop_front();
	return event;
}

bool TX11Connection::WaitFor(int milliseconds, const std::function<TTaken(const xcb_generic_event_t&)>& take) {
	using TClock = std::chrono::steady_clock;
	const auto end = TClock::now() + std::chrono::milliseconds(milliseconds);
	Flush();
	for (;;) {
		while (TXcbEvent event{xcb_poll_for_event(mpXcb)}) {
			const TTaken taken = take(*event);
			if (taken == TTaken::kLast)
				return true;
			if (taken == TTaken::kNo)
				mSetAside.push_back(std::move(event));
		}
		const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - TClock::now()).count();
		if (left <= 0 || !WaitForBytes(static_cast<int>(left)))
			return false;
	}
}

bool TX11Connection::WaitForBytes(int milliseconds) const {
	pollfd input{Descriptor(), POLLIN, 0};
	poll(&input, 1, milliseconds);
	return !IsBroken();
}
