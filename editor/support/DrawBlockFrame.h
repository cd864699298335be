// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/skin/TVortelSkin.h"
#include "framework/graphics/surfaces/TSurface.h"

/// A frame with the corners of a block, around one.
inline void DrawBlockFrame(TSurface& port, const TRectT<int>& rect, const TColor& color, float opacity) {
	constexpr float kCorner = 2.0f;
	TVortelSkin& skin = *TVortelSkin::Instance();
	skin.StrokeOutline(port, rect, color, TCornerRadii::All(skin.ScaledBevel(port, kCorner)), opacity);
}

/// A width in logical pixels as the surface's strokes take it.
inline float StrokeWidth(const TSurface& port, float width) {
	return width * ScaleValue(port.Scale());
}
