// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TScreens.h"
#include "platform/linux/x11/TX11Connection.h"

#include <string_view>

/// Monitors by XRandR, their work area by what the window manager says, DPI by the resource "Xft.dpi", else by the
/// monitor's size. GUI thread.
class TX11Screens final : public TScreens {
public:
	void Connect(TX11Connection& connection);

	void Disconnect() { mpConnection = nullptr; }

	/// True for an event that tells of screens.
	bool HandleEvent(const xcb_generic_event_t& event);
	/// Whether they are others than at the last call.
	bool TakeChange();

	/// Without a connection one is opened for the moment, once.
	const TList<TScreen>& All() const override;

	/// The value of "Xft.dpi" in the text of a resource data base; 0 if there is none.
	static int DpiOfResources(std::string_view resources);
	/// What a monitor's measures say; 96 where they cannot be true.
	static int DpiOfSize(int pixels, int millimetres);

private:
	mutable TList<TScreen> mScreens;
	mutable bool mIsKnown = false;
	TX11Connection* mpConnection = nullptr;
	uint8_t mFirstEvent = 0;
	bool mMayHaveChanged = false;
};
