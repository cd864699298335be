// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TSurface.h"

/// Another clip for the guard's life.
class [[nodiscard]] TClipGuard {
public:
	enum TMode : int32_t { kReplace = 0, kIntersect = 1 };

	TClipGuard(TSurface& surface, const TRectT<int>& rect, TMode mode)
	    : mSurface(surface),
	      mPrevious(surface.ClipRect()) {
		if (mode == kReplace)
			surface.SetClipRect(rect);
		else
			surface.IntersectClipRect(rect);
	}

	~TClipGuard() { mSurface.SetClipRect(mPrevious); }

	TClipGuard(const TClipGuard&) = delete;
	TClipGuard& operator=(const TClipGuard&) = delete;

private:
	TSurface& mSurface;
	const TRectT<int> mPrevious;
};
