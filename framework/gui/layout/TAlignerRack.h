// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/layout/LayoutDistribution.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/views/TView.h"

/// Places its visible children, at their own sizes, by an alignment along its length. Grows to the size that they need
/// and does not shrink. Main thread.
class TAlignerRack : public TView {
public:
	/// TLayoutAlignment.
	TAlignerRack(bool vertical, int mode);

	void SetMargins(int all);
	void SetMargins(int left, int right, int top, int bottom);
	void SetMode(int mode);

	int Mode() const noexcept { return mMode; }

	void SetSpacing(int spacing);
	/// TSkin::TBackground.
	void SetBackground(int kind);

	/// What the children need.
	TPointT<int> ContentSize() const;

	bool IsRectCovered(const TRectT<int>& rect) const override;
	void Draw(TSurface& port) override;
	void OnMainFrameChanged() override;
	void OnResized() override;
	void OnChildAdded(TView& child) override;
	void OnChildRemoved(TView& child) override;
	void OnChildResized(TView& child) override;
	void OnChildVisibilityChanged(TView& child) override;

private:
	void Layout();

	const bool mVertical;
	int mMode;
	TMargins mMargins;
	int mSpacing = 0;
	bool mUpdating = false;
	TPtr<TBackgroundView> mBackground;
};

class THorizontalAligner final : public TAlignerRack {
public:
	explicit THorizontalAligner(int mode) : TAlignerRack(false, mode) {}
};
