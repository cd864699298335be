// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TPixelCopySurface.h"

class TAggWorkspace;

/// A surface on a plain block of memory, which stays when it is not mapped. What windows show is read from here.
class TMemorySurface final : public TPixelCopySurface {
public:
	/// Rows are filled up to multiples of 16 bytes. Throws TReadableException for sizes that cannot be.
	TMemorySurface(TPointT<int> size, const TPixelFormat& format, const TPtr<TAggWorkspace>& workspace);
	~TMemorySurface() override;

	void* NativeContext() override { return nullptr; }

	void MapPixels() override;
	void UnmapPixels() override;
	bool Lock() override;

	bool IsLocked() const override { return mIsLocked; }

	void Unlock() override { mIsLocked = false; }

	void SetLostCallback(const TLostCallback& callback) override { mLostCallback = callback; }

private:
	const TPtr<TAggWorkspace> mWorkspace;
	const int mBlockRowBytes;
	uint8_t* const mpBlock;
	bool mIsLocked = false;
	TLostCallback mLostCallback;
};
