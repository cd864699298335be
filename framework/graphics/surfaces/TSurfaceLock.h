// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TSurface.h"

/// Holds a surface locked; one that was locked already stays so.
class [[nodiscard]] TSurfaceLock {
public:
	explicit TSurfaceLock(TSurface& surface) : mSurface(surface), mIsMine(!surface.IsLocked()) {
		if (mIsMine)
			surface.Lock();
	}

	~TSurfaceLock() {
		if (mIsMine)
			mSurface.Unlock();
	}

	TSurfaceLock(const TSurfaceLock&) = delete;
	TSurfaceLock& operator=(const TSurfaceLock&) = delete;

private:
	TSurface& mSurface;
	const bool mIsMine;
};
