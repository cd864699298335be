// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/bitmaps/TBitmap.h"

/// A white-on-black image through which a colour is painted: one set of icons for all themes. Without colours it is
/// drawn as it is.
class TRecolorableBitmap : public TBitmap {
public:
	using TBitmap::TBitmap;

	/// The background takes no part in drawing; it is for who draws something behind the image.
	void SetColors(const TColor& foreground, const TColor& background);
	void ClearColors();

	TColor Foreground() const noexcept { return mForeground; }

	TColor Background() const noexcept { return mBackground; }

	void Draw(TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, float opacity) override;
	void DrawTinted(TSurface& surface, TPointT<int> point, const TColor& color, float opacity) override;

private:
	void
	Paint(TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, const TColor& color, float opacity);

	bool mRecolor = false;
	TColor mForeground{255, 255, 255};
	TColor mBackground{0, 0, 0};
};
