// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"
#include "framework/gui/views/TView.h"

#include <functional>
#include <vector>

/// One view at a time under a strip of tabs in the row colours; a frame in its colour runs from the tab of the view
/// that is shown down along both sides.
class TVortelTabbedView final : public TView {
public:
	void AddTab(const TPtr<TView>& view, const TString& name);
	void RemoveTab(TView* view);
	/// Ignored for an index that there is no tab for.
	void SelectTab(int index);

	/// Called when another view has come to be shown, by whomever.
	void SetChangedAction(std::function<void()> action) { mChangedAction = std::move(action); }

	/// -1 before the first.
	int SelectedTab() const noexcept { return mSelectedTab; }

	/// -1 while the pointer is over none.
	int HoverTab() const noexcept { return mHoverTab; }

	const std::vector<TString>& TabNames() const noexcept { return mTabNames; }

	TView* CurrentView() const noexcept { return mCurrentView.Get(); }

	void OnResized() override;
	void Draw(TSurface& port) override;
	bool OnMouseHover(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;

private:
	int Count() const noexcept { return static_cast<int>(mTabViews.size()); }

	double TabWidth() const { return static_cast<double>(Width() - 1) / Count(); }

	/// Of the tab's left edge, in the window.
	int TabLeft(int index) const { return AbsolutePosition().mX + static_cast<int>(TabWidth() * index); }

	/// Of the strip, below which nothing counts as a tab. In coordinates of the window; -1 for none.
	int TabUnder(int x, int y) const;
	void PlaceCurrentView();
	void SetHoverTab(int index);
	bool StepTab(int x, int y, int modifiers, int step);
	void DrawTab(TSurface& port, int index) const;
	void DrawTabName(TSurface& port, int index, const TRectT<int>& rect) const;
	void DrawFrame(TSurface& port) const;
	void DrawFrameSide(TSurface& port, int x, const TColor& color) const;

	std::vector<TPtr<TView>> mTabViews;
	std::vector<TString> mTabNames;
	TPtr<TView> mCurrentView;
	int mHoverTab = -1;
	int mSelectedTab = -1;
	TPointT<int> mPressPosition{-1, -1}; // in the view
	std::function<void()> mChangedAction;
};
