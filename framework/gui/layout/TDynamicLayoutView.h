// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/layout/LayoutDistribution.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/views/TView.h"

/// Lays its visible children out in a row or a column: lengths between the limits of their size policies, free pixels
/// to those that can grow. Runs when something changes, once it is in a main frame; never when drawing.
///
/// A layout that was added to another with the default policy takes limits that follow its own children, so that
/// nested layouts hand their limits outward. Main thread.
class TDynamicLayoutView : public TView {
public:
	/// TLayoutAlignment. In a row the horizontal one is the main axis, in a column the vertical one. The other axis
	/// knows start, end and centre.
	void SetHorizontalAlignment(int alignment);
	void SetVerticalAlignment(int alignment);
	void SetMargins(int all);
	void SetMargins(int left, int right, int top, int bottom);
	void SetSpacing(int spacing);
	/// TSkin::TBackground.
	void SetBackground(int kind);

	/// What the children need and what they can fill; kNoLimit on an axis where that is unbounded.
	TPointT<int> MinimumSize() const;
	TPointT<int> MaximumSize() const;

	bool IsRectCovered(const TRectT<int>& rect) const override;
	void Draw(TSurface& port) override;
	void OnMainFrameChanged() override;
	void OnChildAdded(TView& child) override;
	void OnChildRemoved(TView& child) override;
	void OnChildChanged(TView& child) override;
	void OnResized() override;
	void OnChildResized(TView& child) override;
	void OnSizePolicyChanged() override;
	void OnChildSizePolicyChanged(TView& child) override;
	void OnChildVisibilityChanged(TView& child) override;
	bool IsChildSizeDynamic(const TSizePolicy& policy) const override;

protected:
	explicit TDynamicLayoutView(bool vertical);

private:
	void Layout();
	void LayoutOnce();
	void ContentChanged();
	void SetAlignment(int& alignment, int value);
	TPtr<TSizePolicy> PolicyOfContent() const;
	const TLengthPolicy& LengthOf(const TView& child, bool vertical) const;
	TLayoutItem ItemFor(const TView& child, bool vertical) const;
	TLayoutAxis Axis(bool vertical) const;
	TLayoutItem AcrossItem(const TView& child, const TLayoutAxis& cross) const;
	bool HasDefaultPolicy() const;

	const bool mVertical;
	int mMainAlignment = kLayoutStart;
	int mCrossAlignment = kLayoutStart;
	TMargins mMargins;
	int mSpacing = 0;
	bool mPolicyFollowsContent = false;
	bool mIsLayingOut = false;
	bool mLayOutAgain = false;
	TPtr<TBackgroundView> mBackground;
};

class TDynamicRowLayoutView final : public TDynamicLayoutView {
public:
	TDynamicRowLayoutView() : TDynamicLayoutView(false) {}
};

class TDynamicColumnLayoutView final : public TDynamicLayoutView {
public:
	TDynamicColumnLayoutView() : TDynamicLayoutView(true) {}
};
