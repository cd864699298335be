// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/scrolling/TListView.h"
#include "framework/gui/views/TMainFrameView.h"

class TPopUpMenu;
class TPopupListView;

/// The window's content of a TPopUpMenu's list. Main thread.
class TPopupMainFrameView final : public TMainFrameView {
public:
	TPopupMainFrameView(TPopUpMenu& owner, const TList<TString>& labels, bool searchable);

	TPopupListView& List() const noexcept { return *mList; }

	TFocusRootView* InitialFocus() override;
	void OnResized() override;
	void Draw(TSurface& port) override;
	void DrawOverlay(TSurface& port) override;

private:
	TPtr<TPopupListView> mList;
};

/// The entries of a TPopUpMenu, in its window. Main thread.
class TPopupListView final : public TListView {
public:
	static constexpr int kRowHeight = 16;

	explicit TPopupListView(TPopUpMenu& owner);

	TPopUpMenu* Owner() const noexcept { return mOwner.Get(); }

	/// Under the pointer; -1 for none.
	int HoveredRow() const noexcept { return mHoveredRow; }

	void OnRowHovered(int row) override;
	void DrawRowBackground(TSurface& port, const TRectT<int>& rect, int row) override;
	void DrawRow(TSurface& port, int y, int row, const TColor& color, int font) override;
	void DrawOverlay(TSurface& port) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnRightMouseUp(int x, int y, int modifiers) override;
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;
	void OnMouseLeave(int x, int y, int modifiers) override;

private:
	bool ReleaseAt(int x, int y, int modifiers, int mouseButton);
	void ChooseRow(int row, int mouseButton);

	TWeakPtr<TPopUpMenu> mOwner;
	int mHoveredRow = -1;
};
