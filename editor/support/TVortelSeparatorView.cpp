// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/support/TVortelSeparatorView.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"

namespace {

constexpr float kDarkSide = 0.5f;
constexpr float kLightSide = 2.0f;

/// One pixel thick, from nothing to full opacity in the middle and back.
void DrawFadedLine(TSurface& port, const TRectT<int>& rect, const TColor& color) {
	const bool isHorizontal = rect.mWidth > rect.mHeight;
	TRectT<int> first = rect;
	TRectT<int> second = rect;
	if (isHorizontal) {
		first.mWidth = rect.mWidth / 2;
		second.mLeft += first.mWidth;
		second.mWidth -= first.mWidth;
	} else {
		first.mHeight = rect.mHeight / 2;
		second.mTop += first.mHeight;
		second.mHeight -= first.mHeight;
	}
	const auto direction = isHorizontal ? TSkin::kHorizontal : TSkin::kVertical;
	TVortelSkin::Instance()->FillFade(port, first, color, 0.0f, 1.0f, direction);
	TVortelSkin::Instance()->FillFade(port, second, color, 1.0f, 0.0f, direction);
}

} // namespace

void TVortelSeparatorView::Draw(TSurface& port) {
	const TRectT<int> area = AbsoluteRect();
	const bool isHorizontal = Width() > Height();
	TRectT<int> line = area;
	if (isHorizontal) {
		line.mTop += Height() / 2 - 1;
		line.mHeight = 1;
	} else {
		line.mLeft += Width() / 2 - 1;
		line.mWidth = 1;
	}
	const TColor body = TVortelSkinColors::Instance()->MainColor(TSkinColors::kBodyBack);
	DrawFadedLine(port, line, body * kDarkSide);
	(isHorizontal ? line.mTop : line.mLeft) += 1;
	DrawFadedLine(port, line, body * kLightSide);
}
