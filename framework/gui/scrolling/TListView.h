// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/views/TFocusRootView.h"

class TButton;
class TDragContent;
class TKeyboardKey;
class TScrollBar;
class TTextField;

/// A list of texts of which one or several can be selected, filtered by a search field where there is one. Rows are the
/// entries that match. Only the rows in sight cost anything. Main thread.
class TListView : public TFocusRootView {
public:
	static const TTypeRecord kTypeRecord;

	static constexpr int kSearchFieldHeight = 20;

	using TKeyHandler = TFunctionPtr<bool, const TKeyboardKey&, bool, bool>; // key, is-release, is-repeat

	TListView();
	~TListView() override;

	// Hooks

	virtual void OnEntriesChanged();
	virtual void OnSearchChanged();

	virtual void OnFirstRowChanged() {}

	virtual void OnSelectionChanged() {}

	virtual void OnEntryClicked(int /*row*/, int /*modifiers*/) {}

	virtual void OnEntryActivated(int /*row*/, int /*modifiers*/) {}

	/// What is left for a row's text.
	virtual int RowWidth() const;
	/// Below DrawRow. rect in coordinates of the window.
	virtual void DrawRowBackground(TSurface& port, const TRectT<int>& rect, int row);
	/// y in coordinates of the window.
	virtual void DrawRow(TSurface& port, int y, int row, const TColor& color, int font);
	virtual TString MakeRowToolTip(int row);

	virtual void OnRowHovered(int /*row*/) {}

	virtual bool CanDrag(const TList<int>& /*rows*/) { return false; }

	virtual TPtr<TDragContent> MakeDragContent(const TList<int>& rows);

	virtual void OnRowPressed(int /*row*/, int /*modifiers*/) {}

	// Entries and selection

	void SetEntries(const TList<TString>& entries);

	const TList<TString>& Entries() const noexcept { return mEntries; }

	int NumberOfRows() const noexcept { return mVisibleEntries.Count(); }

	const TString& RowText(int row) const { return mVisibleEntries[row]; }

	/// The entry of a row; -1 for no row.
	int EntryOfRow(int row) const;
	/// -1 for an entry that the search has hidden.
	int RowOfEntry(int entry) const;

	/// Rows; others are ignored.
	void Select(int row);
	void SelectRange(int from, int to);
	void AddToSelection(int row);
	void RemoveFromSelection(int row);
	void ClearSelection();
	/// -1 for none.
	int FirstSelected() const;
	bool IsSelected(int row) const;

	/// Rows, in their order.
	const TList<int>& Selection() const noexcept { return mSelection; }

	TObservableBang& SelectionChanged() noexcept { return mSelectionChanged; }

	void EnsureVisible(int row);
	void ScrollToRow(int firstRow);

	int FirstRow() const noexcept { return mFirstRow; }

	/// That fit as a whole.
	int RowsInSight() const;

	int RowHeight() const noexcept { return mRowHeight; }

	void SetRowHeight(int height);
	void SetFont(int font);
	void SetMultiSelect(bool multiSelect) { mMultiSelect = multiSelect; }

	void SetTakesFocusOnEnter(bool takes) { mTakesFocusOnEnter = takes; }

	void ShowSearchField();
	void FocusSearchField();

	TTextField* SearchField() const noexcept { return mSearchField.Get(); }

	TObservableBaseType<TString>& SearchValue() noexcept { return mSearchValue; }

	/// Sees every key first.
	void SetKeyHandler(const TKeyHandler& handler) { mKeyHandler = handler; }

	/// The row at a point of the window; -1 for none.
	int RowAt(int x, int y) const;
	/// In coordinates of the window.
	TRectT<int> RowRect(int row) const;
	void InvalidateRow(int row);
	/// Where rows lie.
	TRectT<int> ListRect() const;

	bool HasRowsOutOfSight() const { return NumberOfRows() > RowsInSight(); }

	const TTypeRecord& FocusTypeName() const override { return kTypeRecord; }

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	void Draw(TSurface& port) override;
	void OnResized() override;
	TString MakeToolTip() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;
	void OnFocusChanged(TView* lost, TView* gained, bool focused) override;

private:
	void OnSearchValueChanged(TObservable* value, int32_t reason);
	void OnClearSearch();
	void RebuildRows();
	void Layout();
	void SetSelectedRows(TList<int> rows);
	void PressRow(int row, int modifiers);
	void MoveSelection(const TKeyboardKey& key);
	int RowAfterKey(int row, int code) const;
	bool HandleSearchKey(const TKeyboardKey& key, bool isRelease, bool isRepeat);
	void BeginRowDrag(int row);

	TList<TString> mEntries;
	TList<TString> mVisibleEntries;
	TList<int> mVisibleIndices;
	TList<int> mSelection;
	int mFirstRow = 0;
	int mLastClickedRow = -1;
	int mAnchorRow = 0;
	bool mMultiSelect = false;
	bool mTakesFocusOnEnter = true;
	bool mPressPending = false;
	int mPressedRow = -1;
	TKeyHandler mKeyHandler;
	int mFont = 0;
	int mRowHeight = 13;
	TPtr<TScrollBar> mScrollBar;
	TPtr<TTextField> mSearchField;
	TPtr<TButton> mSearchClearButton;
	TObservableBaseType<TString> mSearchValue;
	TString mSearchPattern;
	TObservableBang mSelectionChanged;
};
