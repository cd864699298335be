// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TDynamicLayoutView.h"

#include <algorithm>

namespace {

int LengthOn(bool vertical, TPointT<int> size) {
	return vertical ? size.mY : size.mX;
}

TPointT<int> FromAxes(bool vertical, int main, int cross) {
	return vertical ? TPointT<int>{cross, main} : TPointT<int>{main, cross};
}

/// -1 for none.
int MaximumOf(const TLengthPolicy& length, int present) {
	return length.IsDynamic() ? static_cast<const TDynamicLength&>(length).Maximum() : present;
}

int MinimumOf(const TLengthPolicy& length, int present) {
	return length.IsDynamic() ? static_cast<const TDynamicLength&>(length).Minimum() : present;
}

/// Alignments that a single child has nothing to be spread out with.
bool SpreadsOut(int alignment) {
	return alignment == kLayoutJustified || alignment == kLayoutSpread || alignment == kLayoutCenterSteps;
}

} // namespace

TDynamicLayoutView::TDynamicLayoutView(bool vertical)
    : mVertical(vertical),
      mBackground(MakePtr<TBackgroundView>(TSkin::kNoBackground)) {}

// Settings

void TDynamicLayoutView::SetAlignment(int& alignment, int value) {
	if (alignment == value)
		return;
	alignment = value;
	ContentChanged();
}

void TDynamicLayoutView::SetHorizontalAlignment(int alignment) {
	SetAlignment(mVertical ? mCrossAlignment : mMainAlignment, alignment);
}

void TDynamicLayoutView::SetVerticalAlignment(int alignment) {
	SetAlignment(mVertical ? mMainAlignment : mCrossAlignment, alignment);
}

void TDynamicLayoutView::SetMargins(int all) {
	SetMargins(all, all, all, all);
}

void TDynamicLayoutView::SetMargins(int left, int right, int top, int bottom) {
	const TMargins margins{left, right, top, bottom};
	if (mMargins == margins)
		return;
	mMargins = margins;
	ContentChanged();
}

void TDynamicLayoutView::SetSpacing(int spacing) {
	if (mSpacing == spacing)
		return;
	mSpacing = spacing;
	ContentChanged();
}

void TDynamicLayoutView::SetBackground(int kind) {
	if (mBackground->Kind() == kind)
		return;
	mBackground->SetKind(kind);
	Invalidate();
}

// Limits

const TLengthPolicy& TDynamicLayoutView::LengthOf(const TView& child, bool vertical) const {
	return vertical ? child.SizePolicy().Height() : child.SizePolicy().Width();
}

TLayoutItem TDynamicLayoutView::ItemFor(const TView& child, bool vertical) const {
	const TLengthPolicy& length = LengthOf(child, vertical);
	const int present = LengthOn(vertical, child.Size());
	return {MinimumOf(length, present), MaximumOf(length, present), present, 0};
}

TLayoutAxis TDynamicLayoutView::Axis(bool vertical) const {
	const int spacing = vertical == mVertical ? mSpacing : 0;
	return vertical ? TLayoutAxis{Height(), mMargins.mTop, mMargins.mBottom, spacing}
	                : TLayoutAxis{Width(), mMargins.mLeft, mMargins.mRight, spacing};
}

TPointT<int> TDynamicLayoutView::MinimumSize() const {
	int main = 0;
	int cross = 0;
	int count = 0;
	for (const TPtr<TView>& child : Children()) {
		if (!child->IsVisible())
			continue;
		++count;
		main += ItemFor(*child, mVertical).mMinimum;
		cross = std::max(cross, ItemFor(*child, !mVertical).mMinimum);
	}
	main += std::max(count - 1, 0) * mSpacing;
	const TPointT<int> margins{mMargins.mLeft + mMargins.mRight, mMargins.mTop + mMargins.mBottom};
	return FromAxes(mVertical, main, cross) + margins;
}

TPointT<int> TDynamicLayoutView::MaximumSize() const {
	int main = 0;
	int cross = 0;
	int count = 0;
	bool mainIsFree = false;
	bool crossIsFree = false;
	for (const TPtr<TView>& child : Children()) {
		if (!child->IsVisible())
			continue;
		++count;
		const int mainMaximum = ItemFor(*child, mVertical).mMaximum;
		const int crossMaximum = ItemFor(*child, !mVertical).mMaximum;
		mainIsFree |= mainMaximum < 0;
		crossIsFree |= crossMaximum < 0;
		main += mainMaximum;
		cross = std::max(cross, crossMaximum);
	}
	main += std::max(count - 1, 0) * mSpacing;
	const TPointT<int> margins{mMargins.mLeft + mMargins.mRight, mMargins.mTop + mMargins.mBottom};
	const TPointT<int> size = FromAxes(mVertical, main, cross) + margins;
	const bool widthIsFree = mVertical ? crossIsFree : mainIsFree;
	const bool heightIsFree = mVertical ? mainIsFree : crossIsFree;
	return {widthIsFree ? TLengthPolicy::kNoLimit : size.mX, heightIsFree ? TLengthPolicy::kNoLimit : size.mY};
}

TPtr<TSizePolicy> TDynamicLayoutView::PolicyOfContent() const {
	const TPointT<int> minimum = MinimumSize();
	const TPointT<int> maximum = MaximumSize();
	return MakePtr<TSizePolicy>(
	    MakePtr<TDynamicLength>(minimum.mX, maximum.mX), MakePtr<TDynamicLength>(minimum.mY, maximum.mY));
}

void TDynamicLayoutView::OnSizePolicyChanged() {
	mPolicyFollowsContent = SizePolicy().Equals(*PolicyOfContent());
}

void TDynamicLayoutView::ContentChanged() {
	if (mPolicyFollowsContent)
		SetSizePolicy(PolicyOfContent());
	Layout();
}

// Layout

// A child may change its size while it is given one; what came of that is laid out once more, but not for ever.
void TDynamicLayoutView::Layout() {
	constexpr int kMaximumRounds = 4;
	if (!MainFrame())
		return;
	if (mIsLayingOut) {
		mLayOutAgain = true;
		return;
	}
	mIsLayingOut = true;
	for (int round = 0; round < kMaximumRounds; ++round) {
		mLayOutAgain = false;
		LayoutOnce();
		if (!mLayOutAgain)
			break;
	}
	mIsLayingOut = false;
}

void TDynamicLayoutView::LayoutOnce() {
	// A child's hooks may take children away.
	TList<TPtr<TView>> children;
	TList<TLayoutItem> items;
	children.Reserve(Children().Count());
	items.Reserve(Children().Count());
	for (const TPtr<TView>& child : Children()) {
		if (!child->IsVisible())
			continue;
		children.Append(child);
		items.Append(ItemFor(*child, mVertical));
	}
	const TLayoutAxis main = Axis(mVertical);
	const TLayoutAxis cross = Axis(!mVertical);
	DistributeLengths(items, main);
	PlaceItems(items, main, items.Count() == 1 && SpreadsOut(mMainAlignment) ? kLayoutCenter : mMainAlignment);
	for (int i = 0; i < children.Count(); ++i) {
		const TLayoutItem across = AcrossItem(*children[i], cross);
		const TPointT<int> size = FromAxes(mVertical, items[i].mLength, across.mLength);
		const TPointT<int> position = FromAxes(mVertical, items[i].mPosition, across.mPosition);
		children[i]->SetSize(size.mX, size.mY);
		children[i]->SetPosition(position.mX, position.mY);
	}
}

TLayoutItem TDynamicLayoutView::AcrossItem(const TView& child, const TLayoutAxis& cross) const {
	TLayoutItem item = ItemFor(child, !mVertical);
	const int limited = item.mMaximum < 0 ? cross.Available() : std::min(cross.Available(), item.mMaximum);
	item.mLength = std::max(limited, item.mMinimum);
	item.mPosition = cross.mStartMargin;
	const int free = cross.Available() - item.mLength;
	if (mCrossAlignment == kLayoutEnd)
		item.mPosition += free;
	else if (mCrossAlignment == kLayoutCenter)
		item.mPosition += free / 2;
	return item;
}

// What happens to the view and its children

void TDynamicLayoutView::OnChildAdded(TView& child) {
	auto* layout = dynamic_cast<TDynamicLayoutView*>(&child);
	if (layout && !MainFrame() && layout->HasDefaultPolicy())
		layout->SetSizePolicy(layout->PolicyOfContent());
	ContentChanged();
}

bool TDynamicLayoutView::HasDefaultPolicy() const {
	return SizePolicy().Width().IsManual() && SizePolicy().Height().IsManual();
}

void TDynamicLayoutView::OnChildRemoved(TView& /*child*/) {
	ContentChanged();
}

void TDynamicLayoutView::OnChildChanged(TView& /*child*/) {
	ContentChanged();
}

void TDynamicLayoutView::OnChildVisibilityChanged(TView& /*child*/) {
	ContentChanged();
}

void TDynamicLayoutView::OnChildSizePolicyChanged(TView& /*child*/) {
	ContentChanged();
}

void TDynamicLayoutView::OnChildResized(TView& child) {
	if (child.IsVisible() && (child.SizePolicy().Width().IsManual() || child.SizePolicy().Height().IsManual()))
		ContentChanged();
}

void TDynamicLayoutView::OnResized() {
	Layout();
}

void TDynamicLayoutView::OnMainFrameChanged() {
	Layout();
}

bool TDynamicLayoutView::IsChildSizeDynamic(const TSizePolicy& policy) const {
	const auto canChange = [](const TLengthPolicy& length) { return length.IsManual() || length.IsDynamic(); };
	return canChange(policy.Width()) || canChange(policy.Height());
}

bool TDynamicLayoutView::IsRectCovered(const TRectT<int>& rect) const {
	return mBackground->IsOpaque() || TView::IsRectCovered(rect);
}

void TDynamicLayoutView::Draw(TSurface& port) {
	mBackground->DrawBackground(port, AbsoluteRect());
}
