// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <vector>
#include <xcb/xcb.h>

/// A host's window with nothing in it, of the size that an editor asks for.
class THostWindow {
public:
	static constexpr uint16_t kWidth = 962;
	static constexpr uint16_t kHeight = 595;

	explicit THostWindow(int16_t left = 0)
	    : mpConnection(xcb_connect(nullptr, nullptr)),
	      mId(xcb_generate_id(mpConnection)) {
		const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(mpConnection)).data;
		xcb_create_window(
		    mpConnection, XCB_COPY_FROM_PARENT, mId, screen->root, left, 0, kWidth, kHeight, 0,
		    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
		xcb_map_window(mpConnection, mId);
		Sync();
	}

	~THostWindow() { xcb_disconnect(mpConnection); }

	void* Parent() const { return reinterpret_cast<void*>(uintptr_t{mId}); }

	void Destroy() {
		xcb_destroy_window(mpConnection, mId);
		Sync();
	}

	int NumberOfChildren() {
		const TCPtr<xcb_query_tree_reply_t> reply(
		    xcb_query_tree_reply(mpConnection, xcb_query_tree(mpConnection, mId), nullptr), &std::free);
		return reply ? reply->children_len : -1;
	}

	/// Blackens what is embedded, as a server does that has lost a window's contents, and asks for it anew.
	void LoseContents() {
		const TCPtr<xcb_query_tree_reply_t> reply(
		    xcb_query_tree_reply(mpConnection, xcb_query_tree(mpConnection, mId), nullptr), &std::free);
		if (!reply || reply->children_len == 0)
			return;
		const xcb_window_t child = xcb_query_tree_children(reply.get())[0];
		const xcb_gcontext_t black = xcb_generate_id(mpConnection);
		xcb_create_gc(mpConnection, black, child, 0, nullptr);
		const xcb_rectangle_t whole{0, 0, kWidth, kHeight};
		xcb_poly_fill_rectangle(mpConnection, child, black, 1, &whole);
		xcb_clear_area(mpConnection, 1, child, 0, 0, 0, 0);
		xcb_free_gc(mpConnection, black);
		Sync();
	}

	/// All pixels that the window shows, line by line.
	std::vector<uint32_t> Picture() {
		const auto cookie =
		    xcb_get_image(mpConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mId, 0, 0, kWidth, kHeight, ~uint32_t{0});
		const TCPtr<xcb_get_image_reply_t> reply(xcb_get_image_reply(mpConnection, cookie, nullptr), &std::free);
		if (!reply)
			return {};
		const auto* pixels = reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply.get()));
		return {pixels, pixels + kWidth * kHeight};
	}

	/// How many colours the window shows; few while nothing is drawn.
	std::size_t NumberOfColors() {
		const std::vector<uint32_t> picture = Picture();
		return std::set<uint32_t>(picture.begin(), picture.end()).size();
	}

private:
	template <class T>
	using TCPtr = std::unique_ptr<T, decltype(&std::free)>;

	void Sync() { std::free(xcb_get_input_focus_reply(mpConnection, xcb_get_input_focus(mpConnection), nullptr)); }

	xcb_connection_t* mpConnection;
	xcb_window_t mId;
};
