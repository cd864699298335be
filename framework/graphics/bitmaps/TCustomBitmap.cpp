// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TCustomBitmap.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TGraphPort.h"

void TCustomBitmap::Load() {
	const TUiScale scale = CurrentScale();
	mSurface = TGraphPort::Instance()->CreateSurface(Scaled(mSize, scale), 0, {this, &TBitmap::DropPixels});
	if (!mSurface)
		throw TReadableException("Failed to create an offscreen surface.");
	mSurface->SetScale(scale);
	mSurface->Clear({0, 0, 0});
}
