// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TRackView.h"

#include "framework/gui/layout/TAlignerRack.h"

#include <algorithm>

namespace {

/// An aligner keeps room that it once had; in a flow it counts with what it needs.
TPointT<int> FlowSize(const TView& child) {
	const auto* aligner = dynamic_cast<const TAlignerRack*>(&child);
	return aligner ? aligner->ContentSize() : child.Size();
}

} // namespace

TRackView::TRackView(bool vertical, bool uniform, bool wrap, int wrapLimit)
    : mVertical(vertical),
      mUniform(uniform),
      mWrap(wrap),
      mWrapLimit(wrapLimit),
      mBackground(MakePtr<TBackgroundView>(TSkin::kNoBackground)) {}

void TRackView::SetMargin(int all) {
	SetMargins(all, all, all, all);
}

void TRackView::SetMargins(int left, int right, int top, int bottom) {
	const TMargins margins{left, right, top, bottom};
	if (mMargins == margins)
		return;
	mMargins = margins;
	UpdateLayout();
}

void TRackView::SetSpacing(int horizontal, int vertical) {
	if (mHorizontalSpacing == horizontal && mVerticalSpacing == vertical)
		return;
	mHorizontalSpacing = horizontal;
	mVerticalSpacing = vertical;
	UpdateLayout();
}

void TRackView::SetBackground(int kind) {
	if (mBackground->Kind() == kind)
		return;
	mBackground->SetKind(kind);
	Invalidate();
}

void TRackView::UpdateLayout() {
	if (mUpdating || !MainFrame())
		return;
	mUpdating = true;
	if (mUniform)
		MakeUniform();
	const TPointT<int> size = PlaceChildren();
	if (size.mX >= 1 && size.mY >= 1)
		SetSize(size.mX, size.mY);
	mUpdating = false;
}

void TRackView::MakeUniform() {
	const TList<TPtr<TView>> children = Children();
	TPointT<int> largest;
	for (const TPtr<TView>& child : children)
		if (child->IsVisible())
			largest = {std::max(largest.mX, child->Width()), std::max(largest.mY, child->Height())};
	for (const TPtr<TView>& child : children)
		if (child->IsVisible() && mVertical)
			child->SetSize(largest.mX, child->Height());
		else if (child->IsVisible())
			child->SetSize(child->Width(), largest.mY);
}

TPointT<int> TRackView::PlaceChildren() {
	TPointT<int> place{mMargins.mLeft, mMargins.mTop};
	TPointT<int> reach{mMargins.mLeft + mMargins.mRight, mMargins.mTop + mMargins.mBottom};
	TPointT<int> largest;
	const TList<TPtr<TView>> children = Children();
	for (const TPtr<TView>& child : children) {
		if (!child->IsVisible())
			continue;
		const TPointT<int> size = FlowSize(*child);
		if (mWrap && !mVertical && place.mX + size.mX + mMargins.mRight > mWrapLimit)
			place = {mMargins.mLeft, place.mY + largest.mY + mVerticalSpacing};
		else if (mWrap && mVertical && place.mY + size.mY + mMargins.mBottom > mWrapLimit)
			place = {place.mX + largest.mX + mHorizontalSpacing, mMargins.mTop};
		child->SetPosition(place.mX, place.mY);
		largest = {std::max(largest.mX, size.mX), std::max(largest.mY, size.mY)};
		reach = {std::max(reach.mX, place.mX + size.mX), std::max(reach.mY, place.mY + size.mY)};
		if (mVertical)
			place.mY += size.mY + mVerticalSpacing;
		else
			place.mX += size.mX + mHorizontalSpacing;
	}
	return reach + TPointT<int>{mMargins.mRight, mMargins.mBottom};
}

void TRackView::OnMainFrameChanged() {
	UpdateLayout();
}

void TRackView::OnChildAdded(TView& /*child*/) {
	UpdateLayout();
}

void TRackView::OnChildRemoved(TView& /*child*/) {
	UpdateLayout();
}

void TRackView::OnChildChanged(TView& /*child*/) {
	UpdateLayout();
}

void TRackView::OnChildVisibilityChanged(TView& /*child*/) {
	UpdateLayout();
}

void TRackView::OnChildResized(TView& child) {
	const TSizePolicy& policy = child.SizePolicy();
	if (!(mVertical ? policy.Width() : policy.Height()).IsRelative())
		UpdateLayout();
}

bool TRackView::IsRectCovered(const TRectT<int>& rect) const {
	return mBackground->IsOpaque() || TView::IsRectCovered(rect);
}

void TRackView::Draw(TSurface& port) {
	mBackground->DrawBackground(port, AbsoluteRect());
}
