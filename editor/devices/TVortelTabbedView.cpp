// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelTabbedView.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "editor/support/DrawBlockFrame.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TClipGuard.h"

#include <algorithm>
#include <array>
#include <utility>

using enum TVortelSkinColors::TVortelColor;

namespace {

constexpr int kStripHeight = 29;
constexpr int kTabHeight = 28;
constexpr int kFrameTop = 30; // where the frame turns from the strip to the sides
constexpr int kFrameWidth = 2;
constexpr int kContentLeft = 10;
constexpr int kContentTop = 40;
constexpr int kContentMargins = 20; // both sides together
constexpr int kContentBelow = 50;   // the strip and both margins together

constexpr float kRestingBar = 0.5f;
constexpr float kHoveredBar = 0.75f;
constexpr float kRestingShade = 0.2f;
constexpr float kLightEdge = 0.1f;

constexpr TColor kBlack{0, 0, 0};
constexpr TColor kWhite{255, 255, 255};

} // namespace

void TVortelTabbedView::AddTab(const TPtr<TView>& view, const TString& name) {
	mTabViews.push_back(view);
	mTabNames.push_back(name);
	if (MainFrame())
		view->SetRect({kContentLeft, kContentTop, Width() - kContentMargins, Height() - kContentBelow});
	view->SetVisible(false);
	AddChild(view);
}

void TVortelTabbedView::RemoveTab(TView* view) {
	const auto found = std::ranges::find(mTabViews, view, &TPtr<TView>::Get);
	if (found == mTabViews.end())
		return;
	RemoveChild(view);
	if (mCurrentView.Get() == view)
		mCurrentView = nullptr;
	mTabNames.erase(mTabNames.begin() + (found - mTabViews.begin()));
	mTabViews.erase(found);
}

void TVortelTabbedView::SelectTab(int index) {
	if (index < 0 || index >= Count())
		return;
	mSelectedTab = index;
	const TPtr<TView> view = mTabViews[static_cast<std::size_t>(index)];
	if (view == mCurrentView)
		return;
	for (const TPtr<TView>& other : mTabViews)
		other->SetVisible(false);
	mCurrentView = view;
	PlaceCurrentView();
	view->SetVisible(true);
	Invalidate();
	if (mChangedAction)
		mChangedAction();
}

void TVortelTabbedView::PlaceCurrentView() {
	mCurrentView->SetRect({kContentLeft, kContentTop, Width() - kContentMargins, Height() - kContentBelow});
}

void TVortelTabbedView::OnResized() {
	if (mCurrentView)
		PlaceCurrentView();
}

// Drawing

void TVortelTabbedView::Draw(TSurface& port) {
	TVortelSkin::Instance()->DrawTabArea(port, AbsoluteRect());
	for (int index = 0; index < Count(); ++index)
		DrawTab(port, index);
	if (mSelectedTab >= 0 && mSelectedTab < Count())
		DrawFrame(port);
}

void TVortelTabbedView::DrawTab(TSurface& port, int index) const {
	const int top = AbsolutePosition().mY;
	const int left = TabLeft(index);
	const TRectT<int> rect{left, top + 1, TabLeft(index + 1) - left, kTabHeight};
	const bool isHovered = index == mHoverTab;
	if (index != mSelectedTab) {
		const int barLeft = left + (index == 0 ? 4 : 3);
		const TColor color = TVortelSkinColors::Instance()->RowColor(index);
		port.FillRect(
		    {barLeft, top + 4, TabLeft(index + 1) - 3 - barLeft, 2}, color, isHovered ? kHoveredBar : kRestingBar);
		if (!isHovered)
			port.FillRect(rect, kBlack, kRestingShade);
	}
	if (index > 0) {
		port.DrawVerticalLine({left, top + 2}, 27, kWhite, kLightEdge);
		port.DrawVerticalLine({left - 1, top + 1}, 28, kBlack, 1.0f);
	}
	DrawTabName(port, index, rect);
}

void TVortelTabbedView::DrawTabName(TSurface& port, int index, const TRectT<int>& rect) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	const bool isSelected = index == mSelectedTab;
	const TColor text = colors.VortelColor(kPaletteText);
	const float share = index == mHoverTab ? kHoveredBar : kRestingBar;
	const TColor color = isSelected ? text : Mix(text, colors.MainColor(TSkinColors::kBodyBack), share);
	const TRectT<int> place{rect.mLeft, rect.mTop + (isSelected ? 0 : 2), rect.mWidth, rect.mHeight};
	const TClipGuard clip(port, rect, TClipGuard::kIntersect);
	TVortelSkin::Instance()->DrawText(
	    port, place, mTabNames[static_cast<std::size_t>(index)], color,
	    isSelected ? TFontEngine::kBold : TFontEngine::kStandard, kAlignCenter);
}

void TVortelTabbedView::DrawFrame(TSurface& port) const {
	const TColor color = TVortelSkinColors::Instance()->RowColor(mSelectedTab);
	const auto line = static_cast<float>(kFrameWidth);
	const auto left = static_cast<float>(AbsolutePosition().mX);
	const auto top = static_cast<float>(AbsolutePosition().mY);
	const float right = left + static_cast<float>(Width());
	const bool isFirst = mSelectedTab == 0;
	const bool isLast = mSelectedTab == Count() - 1;
	const float tabLeft = isFirst ? left + line : static_cast<float>(TabLeft(mSelectedTab) + 1);
	const float tabRight = isLast ? right - line : static_cast<float>(TabLeft(mSelectedTab + 1)) - line;
	const float bottom = top + kFrameTop;
	const float cutLeft = isFirst ? line : 0.0f;
	const float cutRight = isLast ? line : 0.0f;
	const std::array<TPointT<float>, 8> points{{
	    {left + line, bottom},
	    {tabLeft, bottom},
	    {tabLeft, top + line + cutLeft},
	    {tabLeft + cutLeft, top + line},
	    {tabRight - cutRight, top + line},
	    {tabRight, top + line + cutRight},
	    {tabRight, bottom},
	    {right - line, bottom},
	}};
	port.StrokePolyline(points, color, StrokeWidth(port, line), 1.0f);
	DrawFrameSide(port, AbsolutePosition().mX, color);
	DrawFrameSide(port, AbsolutePosition().mX + Width() - kFrameWidth, color);
}

/// A dot where the line ends, and from there on a strip that fades out.
void TVortelTabbedView::DrawFrameSide(TSurface& port, int x, const TColor& color) const {
	const int top = AbsolutePosition().mY + kFrameTop;
	port.FillRect({x, top, kFrameWidth, 1}, color, 1.0f);
	TVortelSkin::Instance()->FillFade(
	    port, {x, top + 1, kFrameWidth, (Height() - kFrameTop) / 2}, color, 1.0f, 0.0f, TSkin::kVertical);
}

// Mouse

int TVortelTabbedView::TabUnder(int x, int y) const {
	if (y - AbsolutePosition().mY > kStripHeight)
		return -1;
	for (int index = 0; index < Count(); ++index)
		if (x < TabLeft(index + 1))
			return index;
	return -1;
}

void TVortelTabbedView::SetHoverTab(int index) {
	if (std::exchange(mHoverTab, index) != index)
		Invalidate({0, 0, Width(), kFrameTop});
}

bool TVortelTabbedView::OnMouseHover(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	SetHoverTab(TabUnder(x, y));
	return mHoverTab != -1;
}

void TVortelTabbedView::OnMouseLeave(int, int, int) {
	SetHoverTab(-1);
}

/// Left to a view below, too.
bool TVortelTabbedView::OnLeftMouseDown(int x, int y, int modifiers) {
	if (!(modifiers & kMouseAutoRepeat))
		mPressPosition = TPointT<int>{x, y} - AbsolutePosition();
	return false;
}

bool TVortelTabbedView::OnLeftMouseUp(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	const bool wasPressedOnStrip = mPressPosition.mY >= 0 && mPressPosition.mY < kFrameTop;
	mPressPosition = {-1, -1};
	const int tab = wasPressedOnStrip ? TabUnder(x, y) : -1;
	if (tab == -1)
		return false;
	SelectTab(tab);
	return true;
}

bool TVortelTabbedView::OnWheelUp(int x, int y, int modifiers) {
	return StepTab(x, y, modifiers, 1);
}

bool TVortelTabbedView::OnWheelDown(int x, int y, int modifiers) {
	return StepTab(x, y, modifiers, -1);
}

/// Round at both ends.
bool TVortelTabbedView::StepTab(int x, int y, int modifiers, int step) {
	if ((modifiers & kMouseAutoRepeat) || TabUnder(x, y) == -1)
		return false;
	SelectTab((mSelectedTab + step + Count()) % Count());
	return true;
}
