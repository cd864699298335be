// SPDX-License-Identifier: GPL-3.0-or-later
// What a tree shows, and how it is painted.

#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TView.h"

#include <algorithm>
#include <optional>

bool TView::IsVisibleInTree() const noexcept {
	const TView* view = this;
	while (view && view->mVisible)
		view = view->mParent;
	return view == nullptr;
}

void TView::SetVisible(bool visible) {
	if (mVisible == visible)
		return;
	const TKeptAlive kept(this);
	Invalidate();
	mVisible = visible;
	if (const std::optional<TPointT<int>> point = MousePointInWindow()) {
		if (visible && IsVisibleInTree())
			UpdateMouseInside(point->mX, point->mY, 0);
		else
			LeaveMouse(point->mX, point->mY);
	}
	if (visible)
		RunFrameWalk();
	if (mMainFrame)
		SetKeyModifiers(mMainFrame->KeyModifiers());
	if (mParent)
		mParent->OnChildVisibilityChanged(*this);
	NotifyVisibilityChanged();
	Invalidate();
}

bool TView::IsRectCovered(const TRectT<int>& rect) const {
	return std::any_of(
	    mChildren.begin(), mChildren.end(), [&](const TPtr<TView>& child) { return child->Covers(rect); });
}

bool TView::Covers(const TRectT<int>& rect) const {
	return mVisible && mVisibleRect.ContainsRect(rect) && IsRectCovered(rect);
}

void TView::DrawTree(TSurface& port) {
	if (!mVisible || port.ClipRect().Intersected(mVisibleRect).IsEmpty())
		return;
	const TClipGuard clip(port, mVisibleRect, TClipGuard::kIntersect);
	if (mDrawOrder != kSelfFirst) {
		DrawChildren(port);
		Draw(port);
	} else {
		const TRectT<int> rect = port.ClipRect();
		const bool isHidden = std::any_of(
		    mChildren.begin(), mChildren.end(), [&](const TPtr<TView>& child) { return child->Covers(rect); });
		if (!isHidden)
			Draw(port);
		DrawChildren(port);
	}
	DrawOverlay(port);
}

void TView::DrawChildren(TSurface& port) {
	for (int32_t index = 0; index < mChildren.Count(); ++index)
		mChildren[index]->DrawTree(port);
}
