// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TSurface.h"

/// For the guard's life the surface counts in its own pixels; the rectangle, if given, is converted.
class [[nodiscard]] TDeviceAccess {
public:
	explicit TDeviceAccess(TSurface& surface, TRectT<int>* inOutRect = nullptr)
	    : mSurface(surface),
	      mScale(surface.Scale()),
	      mClip(surface.ClipRect()) {
		surface.BeginDeviceAccess(inOutRect);
	}

	~TDeviceAccess() { mSurface.EndDeviceAccess(mScale, mClip); }

	TDeviceAccess(const TDeviceAccess&) = delete;
	TDeviceAccess& operator=(const TDeviceAccess&) = delete;

	/// Outside of the guard.
	TUiScale Scale() const noexcept { return mScale; }

private:
	TSurface& mSurface;
	const TUiScale mScale;
	const TRectT<int> mClip;
};
