// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/controls/TControl.h"
#include "framework/gui/menus/TMenuEntry.h"
#include "framework/gui/scrolling/TScrollableContentView.h"

class TContextMenuMainFrameView;
class TRecolorableBitmap;

/// Lends an entry of a menu what a control can say of its key. Draws nothing. Main thread.
class TMenuEntryView final : public TControl {
public:
	explicit TMenuEntryView(const TPtr<TMenuEntry>& entry);

	TMenuEntry& Entry() const noexcept { return *mEntry; }

	/// What the entry is called.
	TString Label() const { return mEntry->Label(); }

	/// Of the key, which may be a word instead; 0 without one.
	int HintWidth() const;
	void DrawHint(TSurface& port, const TRectT<int>& rect, const TColor& color) const;

	/// The mouse is the business of the menu as a whole.
	bool HitTest(int /*x*/, int /*y*/) override { return false; }

private:
	TPtr<TMenuEntry> mEntry;
};

/// The entries of a menu, one below the other. Main thread.
class TContextMenuScrollableContentView final : public TScrollableContentView {
public:
	static constexpr int kRowHeight = 18;

	TContextMenuScrollableContentView(const TList<TPtr<TMenuEntry>>& entries, bool hasChecks);
	~TContextMenuScrollableContentView() override;

	void SetFrame(TContextMenuMainFrameView* frame);

	/// Works out the columns and takes the size for them.
	void OnLayout();

	int NumberOfRows() const noexcept { return mEntries.Count(); }

	TMenuEntry& Entry(int row) const noexcept { return *mEntries[row]; }

	/// In coordinates of the view. A separator above belongs to no row.
	TRectT<int> RowRect(int row) const;
	/// A point of the window; -1 for none.
	int RowAt(int x, int y) const;

	/// -1 for none.
	int HighlightedRow() const noexcept { return mHighlightedRow; }

	void Highlight(int row, bool fromKeyboard);
	/// To the next row that can be chosen, around the ends.
	void HighlightNext(bool forward);
	bool CanChoose(int row) const;

	int ArrowStepY() const override { return kRowHeight; }

	void Draw(TSurface& port) override;
	void OnFrame() override;
	bool WantsMouseCapture(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;

private:
	void DrawRow(TSurface& port, int row);
	void DrawSeparator(TSurface& port, int row, const TRectT<int>& rect);
	void DrawSign(TSurface& port, const TMenuEntry& entry, const TRectT<int>& rect, const TColor& color);
	void HoverAt(int x, int y);
	int CheckColumnWidth() const;

	TList<TPtr<TMenuEntryView>> mEntryViews;
	const TList<TPtr<TMenuEntry>> mEntries;
	TList<int> mRowTops;
	int mHighlightedRow = -1;
	int mPendingSubMenuRow = -1;
	TStopwatch mHoverClock;
	TPtr<TRecolorableBitmap> mArrowBitmap;
	TPtr<TRecolorableBitmap> mCheckBitmap;
	int mTextWidth = 0;
	int mKeyColumn = 0; // its right edge
	const bool mHasChecks;
	TWeakPtr<TContextMenuMainFrameView> mFrame;
};
