// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TWindowGlue.h"
#include "platform/linux/x11/TX11Connection.h"

#include <vector>

/// Brings pixels to windows: large pieces through memory that is shared with the server, small ones, and all where
/// nothing can be shared, through the connection. GUI thread.
class TX11Presenter {
public:
	TX11Presenter() = default;
	~TX11Presenter() { Disconnect(); }

	TX11Presenter(const TX11Presenter&) = delete;
	TX11Presenter& operator=(const TX11Presenter&) = delete;

	void Connect(TX11Connection& connection);
	void Disconnect();

	bool SharesMemory() const { return mpShared != nullptr; }

	void Present(xcb_window_t window, const TGluePixels& picture, std::span<const TRectT<int>> rects);

private:
	void ShareMemory();
	void StopSharing();
	void WaitForServer();
	void SendShared(xcb_window_t window, const TGluePixels& picture, const TRectT<int>& rect);
	void Send(xcb_window_t window, const TGluePixels& picture, const TRectT<int>& rect);
	void CopyRows(const TGluePixels& picture, const TRectT<int>& rect, std::byte* to) const;
	void ConvertRow(const std::byte* from, int width, std::byte* to) const;

	TX11Connection* mpConnection = nullptr;
	xcb_gcontext_t mContext = 0;
	bool mIsPlain = false; // the server's pixels are like ours
	bool mHasTriedSharing = false;
	std::size_t mPixelBytes = 4;
	std::byte* mpShared = nullptr;
	uint32_t mSegment = 0;
	std::size_t mUsed = 0; // of the shared memory, since the server was last known to have read all
	bool mIsServerBehind = false;
	xcb_get_input_focus_cookie_t mFence{};
	std::vector<std::byte> mBuffer;
};
