// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TAlignerRack.h"

#include <algorithm>

TAlignerRack::TAlignerRack(bool vertical, int mode)
    : mVertical(vertical),
      mMode(mode),
      mBackground(MakePtr<TBackgroundView>(TSkin::kNoBackground)) {}

void TAlignerRack::SetMargins(int all) {
	SetMargins(all, all, all, all);
}

void TAlignerRack::SetMargins(int left, int right, int top, int bottom) {
	const TMargins margins{left, right, top, bottom};
	if (mMargins == margins)
		return;
	mMargins = margins;
	Layout();
}

void TAlignerRack::SetMode(int mode) {
	if (mMode == mode)
		return;
	mMode = mode;
	Layout();
}

void TAlignerRack::SetSpacing(int spacing) {
	if (mSpacing == spacing)
		return;
	mSpacing = spacing;
	Layout();
}

void TAlignerRack::SetBackground(int kind) {
	if (mBackground->Kind() == kind)
		return;
	mBackground->SetKind(kind);
	Invalidate();
}

TPointT<int> TAlignerRack::ContentSize() const {
	TPointT<int> sum;
	TPointT<int> largest;
	int count = 0;
	for (const TPtr<TView>& child : Children()) {
		if (!child->IsVisible() || !MainFrame())
			continue;
		++count;
		sum = sum + child->Size();
		largest = {std::max(largest.mX, child->Width()), std::max(largest.mY, child->Height())};
	}
	const int spacing = std::max(count - 1, 0) * mSpacing;
	const TPointT<int> size =
	    mVertical ? TPointT<int>{largest.mX, sum.mY + spacing} : TPointT<int>{sum.mX + spacing, largest.mY};
	return size + TPointT<int>{mMargins.mLeft + mMargins.mRight, mMargins.mTop + mMargins.mBottom};
}

void TAlignerRack::Layout() {
	if (mUpdating || !MainFrame())
		return;
	mUpdating = true;
	const TPointT<int> needed = ContentSize();
	SetSize(std::max(Width(), needed.mX), std::max(Height(), needed.mY));

	const TList<TPtr<TView>> children = Children();
	TList<TLayoutItem> items;
	for (const TPtr<TView>& child : children)
		if (child->IsVisible())
			items.Append({0, 0, mVertical ? child->Height() : child->Width(), 0});
	const int mode = mMode == kLayoutJustified && items.Count() == 1 ? kLayoutCenterSteps : mMode;
	// Where gaps take what is free, the spacing is part of it.
	const int spacing = mode == kLayoutJustified || mode == kLayoutSpread ? 0 : mSpacing;
	const TLayoutAxis axis = mVertical ? TLayoutAxis{Height(), mMargins.mTop, mMargins.mBottom, spacing}
	                                   : TLayoutAxis{Width(), mMargins.mLeft, mMargins.mRight, spacing};
	PlaceItems(items, axis, mode);
	int i = 0;
	for (const TPtr<TView>& child : children) {
		if (!child->IsVisible())
			continue;
		const int place = items[i++].mPosition;
		child->SetPosition(mVertical ? mMargins.mLeft : place, mVertical ? place : mMargins.mTop);
	}
	mUpdating = false;
}

void TAlignerRack::OnMainFrameChanged() {
	Layout();
}

void TAlignerRack::OnResized() {
	Layout();
}

void TAlignerRack::OnChildAdded(TView& /*child*/) {
	Layout();
}

void TAlignerRack::OnChildRemoved(TView& /*child*/) {
	Layout();
}

void TAlignerRack::OnChildResized(TView& /*child*/) {
	Layout();
}

void TAlignerRack::OnChildVisibilityChanged(TView& /*child*/) {
	Layout();
}

bool TAlignerRack::IsRectCovered(const TRectT<int>& rect) const {
	return mBackground->IsOpaque() || TView::IsRectCovered(rect);
}

void TAlignerRack::Draw(TSurface& port) {
	mBackground->DrawBackground(port, AbsoluteRect());
}
