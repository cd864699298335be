// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TListView.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/scrolling/TScrollBar.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/views/TMainFrameView.h"

#include <algorithm>

const TTypeRecord TListView::kTypeRecord{"TListView", &TFocusRootView::kTypeRecord};

namespace {

/// What is typed matches anywhere; a "*" at one end only is meant for the other end, too.
TString PatternFor(const TString& text) {
	const bool starts = text.StartsWithChar('*');
	const bool ends = text.EndsWithChar('*');
	if (starts && ends)
		return text;
	if (starts)
		return text + "*";
	if (ends)
		return "*" + text;
	return "*" + text + "*";
}

bool IsMoveKey(int code) {
	return code >= kKeyUp && code <= kKeyEnd && code != kKeyLeft && code != kKeyRight;
}

} // namespace

TListView::TListView() : mScrollBar(MakePtr<TScrollBar>(TScrollBar::kVertical)) {
	mScrollBar->SetRangeValue(new TConstLinkedViewValue<int>(this, {this, &TListView::NumberOfRows}));
	mScrollBar->SetWindowValue(new TConstLinkedViewValue<int>(this, {this, &TListView::RowsInSight}));
	mScrollBar->SetPositionValue(
	    new TLinkedViewValue<int>(this, {this, &TListView::FirstRow}, {this, &TListView::ScrollToRow}));
	mScrollBar->SetArrowStep(1);
	mScrollBar->SetVisible(false);
	AddChild(mScrollBar);
	mSearchValue.AddObserver({this, &TListView::OnSearchValueChanged});
}

TListView::~TListView() = default;

// Entries

void TListView::SetEntries(const TList<TString>& entries) {
	if (mEntries == entries)
		return;
	mEntries = entries;
	OnEntriesChanged();
}

void TListView::OnEntriesChanged() {
	RebuildRows();
}

void TListView::OnSearchChanged() {
	RebuildRows();
}

void TListView::OnSearchValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason != kDidChange)
		return;
	mSearchPattern = mSearchValue.Get().IsEmpty() ? TString() : PatternFor(mSearchValue.Get());
	OnSearchChanged();
}

// The selection stays with its entries, as far as they are still there.
void TListView::RebuildRows() {
	TList<int> selectedEntries;
	for (const int row : mSelection)
		selectedEntries.Append(EntryOfRow(row));
	mVisibleEntries.Clear();
	mVisibleIndices.Clear();
	for (int entry = 0; entry < mEntries.Count(); ++entry) {
		if (!mSearchPattern.IsEmpty() && !mEntries[entry].WildcardMatches(mSearchPattern, true))
			continue;
		mVisibleEntries.Append(mEntries[entry]);
		mVisibleIndices.Append(entry);
	}
	TList<int> rows;
	for (const int entry : selectedEntries)
		if (const int row = RowOfEntry(entry); row >= 0)
			rows.Append(row);
	mAnchorRow = rows.IsEmpty() ? 0 : rows[0];
	mLastClickedRow = rows.IsEmpty() ? -1 : rows[0];
	SetSelectedRows(rows);
	Layout();
	Invalidate();
}

int TListView::EntryOfRow(int row) const {
	return row >= 0 && row < mVisibleIndices.Count() ? mVisibleIndices[row] : -1;
}

int TListView::RowOfEntry(int entry) const {
	const int* found = std::lower_bound(mVisibleIndices.begin(), mVisibleIndices.end(), entry);
	return found != mVisibleIndices.end() && *found == entry ? static_cast<int>(found - mVisibleIndices.begin()) : -1;
}

// Selection

void TListView::SetSelectedRows(TList<int> rows) {
	std::sort(rows.begin(), rows.end());
	if (rows == mSelection)
		return;
	mSelection = std::move(rows);
	Invalidate();
	OnSelectionChanged();
	mSelectionChanged.Bang();
}

void TListView::Select(int row) {
	if (row < 0 || row >= NumberOfRows())
		return;
	mAnchorRow = mLastClickedRow = row;
	SetSelectedRows({row});
}

void TListView::SelectRange(int from, int to) {
	const int last = std::min(std::max(from, to), NumberOfRows() - 1);
	TList<int> rows;
	for (int row = std::max(std::min(from, to), 0); row <= last; ++row)
		rows.Append(row);
	SetSelectedRows(std::move(rows));
}

void TListView::AddToSelection(int row) {
	if (row < 0 || row >= NumberOfRows() || IsSelected(row))
		return;
	TList<int> rows = mSelection;
	rows.Append(row);
	SetSelectedRows(std::move(rows));
}

void TListView::RemoveFromSelection(int row) {
	TList<int> rows = mSelection;
	if (const int index = rows.IndexOf(row); index >= 0)
		rows.RemoveAt(index);
	SetSelectedRows(std::move(rows));
}

void TListView::ClearSelection() {
	SetSelectedRows({});
}

int TListView::FirstSelected() const {
	return mSelection.IsEmpty() ? -1 : mSelection[0];
}

bool TListView::IsSelected(int row) const {
	return std::binary_search(mSelection.begin(), mSelection.end(), row);
}

// Geometry

TRectT<int> TListView::ListRect() const {
	const TRectT<int> rect = AbsoluteRect();
	const int top = mSearchField ? kSearchFieldHeight : 0;
	const int right = mScrollBar->IsVisible() ? TScrollBar::kThickness : 0;
	return {rect.mLeft, rect.mTop + top, rect.mWidth - right, rect.mHeight - top};
}

int TListView::RowsInSight() const {
	return std::max(ListRect().mHeight / mRowHeight, 0);
}

int TListView::RowWidth() const {
	return ListRect().mWidth;
}

TRectT<int> TListView::RowRect(int row) const {
	const TRectT<int> list = ListRect();
	return {list.mLeft, list.mTop + (row - mFirstRow) * mRowHeight, list.mWidth, mRowHeight};
}

void TListView::InvalidateRow(int row) {
	const TRectT<int> rect = RowRect(row);
	Invalidate({rect.mLeft - AbsolutePosition().mX, rect.mTop - AbsolutePosition().mY, rect.mWidth, rect.mHeight});
}

int TListView::RowAt(int x, int y) const {
	const TRectT<int> list = ListRect();
	if (!list.Contains({x, y}))
		return -1;
	const int row = mFirstRow + (y - list.mTop) / mRowHeight;
	return row < NumberOfRows() ? row : -1;
}

void TListView::SetRowHeight(int height) {
	mRowHeight = std::max(height, 1);
	Layout();
	Invalidate();
}

void TListView::SetFont(int font) {
	mFont = font;
	Invalidate();
}

void TListView::OnResized() {
	Layout();
}

void TListView::Layout() {
	const int top = mSearchField ? kSearchFieldHeight : 0;
	mScrollBar->SetVisible((Height() - top) / mRowHeight < NumberOfRows());
	mScrollBar->SetRect({Width() - TScrollBar::kThickness, top, TScrollBar::kThickness, Height() - top});
	if (mSearchField) {
		mSearchField->SetRect({0, 0, Width() - kSearchFieldHeight, kSearchFieldHeight});
		mSearchClearButton->SetRect({Width() - kSearchFieldHeight, 0, kSearchFieldHeight, kSearchFieldHeight});
	}
	ScrollToRow(mFirstRow);
}

void TListView::ScrollToRow(int firstRow) {
	const int row = std::clamp(firstRow, 0, std::max(NumberOfRows() - RowsInSight(), 0));
	if (row == mFirstRow)
		return;
	mFirstRow = row;
	Invalidate();
	OnFirstRowChanged();
}

void TListView::EnsureVisible(int row) {
	if (row < 0 || row >= NumberOfRows())
		return;
	if (row < mFirstRow)
		ScrollToRow(row);
	else if (row >= mFirstRow + RowsInSight())
		ScrollToRow(row - std::max(RowsInSight() - 1, 0));
}

// Search

void TListView::ShowSearchField() {
	if (mSearchField)
		return;
	mSearchField = MakePtr<TTextField>(&mSearchValue);
	mSearchField->SetLiveUpdate(true);
	mSearchField->SetHint("Search");
	mSearchField->SetToolTip("Click and type to show matching entries only.");
	mSearchField->SetKeyFilter({this, &TListView::HandleSearchKey});
	mSearchClearButton = MakePtr<TButton>();
	const TPtr<TBitmap> picture = MakePtr<TRecolorableBitmap>("Icons/Clear.bmp");
	mSearchClearButton->SetStyle(kBitmapButton);
	mSearchClearButton->SetLabel("Clear");
	mSearchClearButton->SetBitmaps(picture, picture, true);
	mSearchClearButton->SetToolTip("Click to reset the search field.");
	mSearchClearButton->SetClickAction({this, &TListView::OnClearSearch});
	AddChild(mSearchField);
	AddChild(mSearchClearButton);
	Layout();
}

void TListView::FocusSearchField() {
	if (mSearchField)
		mSearchField->BeginEdit();
}

void TListView::OnClearSearch() {
	if (mSearchField->IsEditing())
		mSearchField->SetText(TString());
	mSearchValue.Set(TString());
}

// From the field one goes on into the list: by the keys that move there, and back to it by Tab.
bool TListView::HandleSearchKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (isRelease)
		return false;
	if (key.Code() == kKeyTab && !isRepeat) {
		mSearchField->EndEdit();
		GrabFocus();
		return true;
	}
	const bool isOfList = key.Code() == kKeyUp || key.Code() == kKeyDown || key.Code() == kKeyPrior ||
	                      key.Code() == kKeyNext || (key.Code() == kKeyReturn && !mSelection.IsEmpty());
	return isOfList && HandleKey(key, isRelease, isRepeat);
}

// Drawing

void TListView::DrawRowBackground(TSurface& port, const TRectT<int>& rect, int row) {
	if (IsSelected(row))
		TSkin::Instance()->DrawListEntryBackground(
		    port, rect, IsFocused() ? TSkin::kEntrySelected : TSkin::kEntrySelectedStandBy);
}

void TListView::DrawRow(TSurface& port, int y, int row, const TColor& color, int font) {
	const TRectT<int> rect{ListRect().mLeft, y, RowWidth(), mRowHeight};
	const TString text = TextMetrics::CutAtEnd(mVisibleEntries[row], font, rect.mWidth - 4);
	TSkin::Instance()->DrawText(port, rect, text, color, font, kAlignLeft);
}

void TListView::Draw(TSurface& port) {
	const int last = std::min(mFirstRow + RowsInSight() + 1, NumberOfRows());
	for (int row = mFirstRow; row < last; ++row) {
		const TRectT<int> rect = RowRect(row);
		const TSkin::TEntryState state = !IsSelected(row) ? TSkin::kEntryAtRest
		                                 : IsFocused()    ? TSkin::kEntrySelected
		                                                  : TSkin::kEntrySelectedStandBy;
		DrawRowBackground(port, rect, row);
		DrawRow(port, rect.mTop, row, TSkin::Instance()->ListEntryTextColor(state), mFont);
	}
}

TString TListView::MakeRowToolTip(int row) {
	const TString& text = mVisibleEntries[row];
	return TextMetrics::Width(text, mFont) > RowWidth() ? text : TString();
}

TString TListView::MakeToolTip() {
	const int row = RowAt(MousePoint().mX, MousePoint().mY);
	return row >= 0 ? MakeRowToolTip(row) : TString();
}

void TListView::OnFocusChanged(TView* /*lost*/, TView* /*gained*/, bool /*focused*/) {
	Invalidate();
}

// Mouse

bool TListView::WantsMouseCapture(int x, int y, int /*modifiers*/) {
	return ListRect().Contains({x, y});
}

void TListView::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	const TFocusRootView* focused = MainFrame() ? MainFrame()->FocusedView() : nullptr;
	if (mTakesFocusOnEnter && !HasMouseCapture() && focused != this && !(focused && focused->IsEditingText()))
		GrabFocus();
}

bool TListView::OnMouseHover(int x, int y, int /*modifiers*/) {
	OnRowHovered(RowAt(x, y));
	return false;
}

bool TListView::OnLeftMouseDown(int x, int y, int modifiers) {
	if (!IsCapturing(this))
		return false;
	mPressedRow = RowAt(x, y);
	if (mPressedRow < 0)
		return true;
	const bool waits = IsSelected(mPressedRow) || (mMultiSelect && (modifiers & kMouseCommand));
	mPressPending = waits;
	if (!waits)
		PressRow(mPressedRow, modifiers);
	return true;
}

void TListView::PressRow(int row, int modifiers) {
	if (mMultiSelect && !mSelection.IsEmpty() && (modifiers & kMouseShift)) {
		mLastClickedRow = row;
		SelectRange(mAnchorRow, row);
		return;
	}
	if (mMultiSelect && (modifiers & kMouseCommand)) {
		if (IsSelected(row))
			RemoveFromSelection(row);
		else
			AddToSelection(row);
		mAnchorRow = mLastClickedRow = row;
		return;
	}
	Select(row);
	OnEntryClicked(row, modifiers);
}

bool TListView::OnLeftMouseUp(int x, int y, int modifiers) {
	if (!IsCapturing(this))
		return false;
	if (modifiers & kMouseAutoRepeat)
		return true;
	const bool isDue = mPressPending && mPressedRow >= 0 && mPressedRow == RowAt(x, y);
	mPressPending = false;
	if (isDue)
		PressRow(mPressedRow, modifiers);
	return true;
}

bool TListView::OnLeftDoubleClick(int x, int y, int modifiers) {
	const int row = RowAt(x, y);
	if (row < 0 || !IsCapturing(this))
		return OnLeftMouseDown(x, y, modifiers);
	mPressPending = false;
	mPressedRow = row;
	Select(row);
	OnEntryActivated(row, modifiers);
	return true;
}

bool TListView::OnMouseDrag(int x, int y, int /*modifiers*/) {
	if (mPressedRow >= 0 && mPressedRow < NumberOfRows() && ShouldBeginDrag(x, y))
		BeginRowDrag(mPressedRow);
	return true;
}

void TListView::BeginRowDrag(int row) {
	const TList<int> rows = IsSelected(row) ? mSelection : TList<int>{row};
	if (!CanDrag(rows))
		return;
	if (const TPtr<TDragContent> content = MakeDragContent(rows)) {
		mPressPending = false;
		BeginDrag(content);
	}
}

TPtr<TDragContent> TListView::MakeDragContent(const TList<int>& /*rows*/) {
	return nullptr;
}

bool TListView::OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	ScrollToRow(mFirstRow - 1);
	return HasRowsOutOfSight();
}

bool TListView::OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	ScrollToRow(mFirstRow + 1);
	return HasRowsOutOfSight();
}

// Keys

bool TListView::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (mKeyHandler && mKeyHandler(key, isRelease, isRepeat))
		return true;
	if (isRelease)
		return false;
	const bool withShift = key.Modifiers() == kShiftModifier;
	if (key.Code() == kKeyTab && mSearchField && !isRepeat && (key.Modifiers() == 0 || withShift)) {
		FocusSearchField();
		return true;
	}
	if (key.Modifiers() != 0 && !(withShift && mMultiSelect))
		return false;
	if (IsMoveKey(key.Code()))
		MoveSelection(key);
	else if (key.Code() == kKeyReturn && !mSelection.IsEmpty()) {
		if (!isRepeat)
			OnEntryActivated(FirstSelected(), 0);
		return true;
	}
	return key.Code() >= kKeyUp && key.Code() <= kKeyEnd;
}

int TListView::RowAfterKey(int row, int code) const {
	const int page = std::max(RowsInSight(), 1);
	const int last = NumberOfRows() - 1;
	switch (code) {
	case kKeyUp:
		return row < 0 ? last : row - 1;
	case kKeyDown:
		return row + 1;
	case kKeyPrior:
		return row - page;
	case kKeyNext:
		return row + page;
	case kKeyHome:
		return 0;
	default:
		return last;
	}
}

void TListView::MoveSelection(const TKeyboardKey& key) {
	if (NumberOfRows() == 0)
		return;
	const int from = mSelection.IsEmpty() ? -1 : mLastClickedRow;
	const int row = std::clamp(RowAfterKey(from, key.Code()), 0, NumberOfRows() - 1);
	if ((key.Modifiers() & kShiftModifier) && !mSelection.IsEmpty()) {
		mLastClickedRow = row;
		SelectRange(mAnchorRow, row);
	} else
		Select(row);
	EnsureVisible(row);
}
