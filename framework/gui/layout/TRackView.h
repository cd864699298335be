// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/layout/LayoutDistribution.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/views/TView.h"

/// Lets its visible children flow in a row or a column, at their own sizes, and takes the size that they need. Main
/// thread.
class TRackView : public TView {
public:
	static constexpr int kDefaultMargin = 4;

	void SetMargin(int all);
	void SetMargins(int left, int right, int top, int bottom);
	void SetSpacing(int horizontal, int vertical);
	/// TSkin::TBackground.
	void SetBackground(int kind);

	bool IsRectCovered(const TRectT<int>& rect) const override;
	void Draw(TSurface& port) override;
	void OnMainFrameChanged() override;
	void OnChildAdded(TView& child) override;
	void OnChildRemoved(TView& child) override;
	void OnChildChanged(TView& child) override;
	void OnChildResized(TView& child) override;
	void OnChildVisibilityChanged(TView& child) override;

protected:
	/// uniform: all children get the size of the largest across the flow. wrap: a new line begins where the next child
	/// would pass the limit.
	TRackView(bool vertical, bool uniform, bool wrap, int wrapLimit);

private:
	void UpdateLayout();
	/// Returns the size of the whole.
	TPointT<int> PlaceChildren();
	void MakeUniform();

	TMargins mMargins = TMargins::All(kDefaultMargin);
	int mHorizontalSpacing = 0;
	int mVerticalSpacing = 0;
	const bool mVertical;
	const bool mUniform;
	const bool mWrap;
	const int mWrapLimit; // of the rack's length along the flow
	TPtr<TBackgroundView> mBackground;
	bool mUpdating = false;
};

class TRowRack final : public TRackView {
public:
	explicit TRowRack(bool wrap = false, int wrapLimit = 0) : TRackView(false, false, wrap, wrapLimit) {}
};

class TColumnRack final : public TRackView {
public:
	explicit TColumnRack(bool wrap = false, int wrapLimit = 0) : TRackView(true, false, wrap, wrapLimit) {}
};

class TUniformedColumnRack final : public TRackView {
public:
	explicit TUniformedColumnRack(bool wrap = false, int wrapLimit = 0) : TRackView(true, true, wrap, wrapLimit) {}
};
