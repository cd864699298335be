// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCursorImpl.h"
#include "platform/linux/x11/TX11Connection.h"

#include <map>

/// The server's cursors made of our pictures. GUI thread.
class TX11CursorImages {
public:
	void Connect(TX11Connection& connection);
	void Disconnect();

	/// Only while connected.
	bool Has(int id) const { return mCursors.contains(id); }

	void Define(int id, const TCursorImage& image);
	void Clear();

	/// The arrow for what is not defined.
	xcb_cursor_t CursorOf(int id);

private:
	xcb_cursor_t MakeCursor(const TCursorImage& image) const;
	xcb_cursor_t MakeArrow() const;

	TX11Connection* mpConnection = nullptr;
	uint32_t mFormat = 0; // of pictures with alpha; 0 where the server has none
	xcb_cursor_t mArrow = 0;
	std::map<int, xcb_cursor_t> mCursors;
};
