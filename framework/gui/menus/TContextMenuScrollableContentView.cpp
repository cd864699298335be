// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TContextMenuScrollableContentView.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/menus/TContextMenu.h"

#include <algorithm>

namespace {

constexpr int kSeparatorHeight = 8;
constexpr int kCaptionHeight = 11; // more, for a separator with a caption
constexpr int kNarrowestText = 20;
constexpr int kCheckColumn = 22;
constexpr int kArrowColumn = 20;
constexpr int kBeforeHint = 14;
constexpr int kAtTheEnd = 22;
constexpr int kTextIndent = 4;
constexpr int kSelectionIndent = 4;
constexpr float kSubMenuMilliseconds = 200.0f;

constexpr int kFont = 0;
constexpr int kBoldFont = 2;
constexpr int kCaptionFont = 3;

constexpr const char* kFocusHere = "(Set Keyboard Focus Here)";
constexpr const char* kFocusHint = "Click";

int LabelFont(const TMenuEntry& entry) {
	return entry.IsChecked() && entry.HasSubEntries() ? kBoldFont : kFont;
}

TColor MainColor(int index) {
	return TSkinColors::Instance()->MainColor(index);
}

} // namespace

// Entries

TMenuEntryView::TMenuEntryView(const TPtr<TMenuEntry>& entry) : mEntry(entry) {
	SetKey(entry->Key());
	SetKeyCommand(entry->BoundAction());
}

int TMenuEntryView::HintWidth() const {
	if (mEntry->Label() == kFocusHere)
		return TextMetrics::Width(kFocusHint, kFont);
	return ToolTipKey().IsKey() ? ToolTipKeyWidth() : 0;
}

void TMenuEntryView::DrawHint(TSurface& port, const TRectT<int>& rect, const TColor& color) const {
	if (mEntry->Label() == kFocusHere)
		TSkin::Instance()->DrawText(port, rect, kFocusHint, color, kFont, kAlignLeft);
	else if (ToolTipKey().IsKey())
		DrawToolTipKey(port, rect, color);
}

// Layout

TContextMenuScrollableContentView::TContextMenuScrollableContentView(
    const TList<TPtr<TMenuEntry>>& entries, bool hasChecks)
    : mEntries(entries),
      mArrowBitmap(MakePtr<TRecolorableBitmap>("Icons/ArrowRight.bmp")),
      mCheckBitmap(MakePtr<TRecolorableBitmap>("Icons/SwitchOn.bmp")),
      mHasChecks(hasChecks) {
	for (const TPtr<TMenuEntry>& entry : mEntries) {
		mEntryViews.Append(MakePtr<TMenuEntryView>(entry));
		AddChild(mEntryViews[mEntryViews.Count() - 1]);
	}
}

TContextMenuScrollableContentView::~TContextMenuScrollableContentView() = default;

void TContextMenuScrollableContentView::SetFrame(TContextMenuMainFrameView* frame) {
	mFrame = frame;
}

int TContextMenuScrollableContentView::CheckColumnWidth() const {
	return mHasChecks ? kCheckColumn : 0;
}

void TContextMenuScrollableContentView::OnLayout() {
	mTextWidth = kNarrowestText;
	int hintWidth = 0;
	int arrowWidth = 0;
	int top = 0;
	mRowTops.Clear();
	for (const TPtr<TMenuEntryView>& view : mEntryViews) {
		const TMenuEntry& entry = view->Entry();
		mTextWidth = std::max(mTextWidth, TextMetrics::Width(entry.Label(), LabelFont(entry)));
		mTextWidth = std::max(mTextWidth, TextMetrics::Width(entry.SeparatorCaption(), kCaptionFont));
		hintWidth = std::max(hintWidth, view->HintWidth());
		if (entry.HasSubEntries())
			arrowWidth = kArrowColumn;
		if (entry.HasSeparator())
			top += kSeparatorHeight + (entry.SeparatorCaption().IsEmpty() ? 0 : kCaptionHeight);
		mRowTops.Append(top);
		top += kRowHeight;
	}
	const int checkWidth = CheckColumnWidth();
	mKeyColumn = checkWidth + mTextWidth + hintWidth + kBeforeHint;
	SetSize(checkWidth + mTextWidth + hintWidth + arrowWidth + kAtTheEnd, top);
	for (int row = 0; row < NumberOfRows(); ++row)
		mEntryViews[row]->SetRect(RowRect(row));
}

TRectT<int> TContextMenuScrollableContentView::RowRect(int row) const {
	return {0, mRowTops[row], Width(), kRowHeight};
}

int TContextMenuScrollableContentView::RowAt(int x, int y) const {
	if (!VisibleRect().Contains({x, y}))
		return -1;
	const int inside = y - AbsolutePosition().mY;
	for (int row = 0; row < NumberOfRows(); ++row)
		if (inside >= mRowTops[row] && inside < mRowTops[row] + kRowHeight)
			return row;
	return -1;
}

// Highlight

bool TContextMenuScrollableContentView::CanChoose(int row) const {
	return row >= 0 && row < NumberOfRows() && mEntries[row]->IsEnabled();
}

void TContextMenuScrollableContentView::Highlight(int row, bool fromKeyboard) {
	if (row == mHighlightedRow)
		return;
	for (const int changed : {mHighlightedRow, row})
		if (changed >= 0)
			Invalidate(RowRect(changed));
	mHighlightedRow = row;
	if (fromKeyboard && row >= 0)
		ScrollIntoView(RowRect(row), false);
}

// One round at most: there may be nothing to choose.
void TContextMenuScrollableContentView::HighlightNext(bool forward) {
	const int count = NumberOfRows();
	const int start = mHighlightedRow >= 0 ? mHighlightedRow : forward ? -1 : count;
	for (int step = 1; step <= count; ++step) {
		const int row = ((forward ? start + step : start - step) % count + count) % count;
		if (CanChoose(row))
			return Highlight(row, true);
	}
}

// Mouse

void TContextMenuScrollableContentView::HoverAt(int x, int y) {
	const int row = RowAt(x, y);
	if (row == mHighlightedRow)
		return;
	Highlight(row, false);
	if (row < 0)
		return;
	mPendingSubMenuRow = row;
	mHoverClock.Restart();
	if (TContextMenu* subMenu = mFrame ? mFrame->SubMenu() : nullptr)
		subMenu->Frame().Content().Highlight(-1, false);
}

bool TContextMenuScrollableContentView::OnMouseHover(int x, int y, int /*modifiers*/) {
	HoverAt(x, y);
	return true;
}

bool TContextMenuScrollableContentView::OnMouseDrag(int x, int y, int /*modifiers*/) {
	HoverAt(x, y);
	return true;
}

// The row whose menu the pointer has gone to stays marked.
void TContextMenuScrollableContentView::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	mPendingSubMenuRow = -1;
	Highlight(mFrame ? mFrame->SubMenuRow() : -1, false);
}

bool TContextMenuScrollableContentView::WantsMouseCapture(int x, int y, int /*modifiers*/) {
	return ContainsPoint(x, y);
}

bool TContextMenuScrollableContentView::OnLeftMouseDown(int x, int y, int /*modifiers*/) {
	HoverAt(x, y);
	return true;
}

bool TContextMenuScrollableContentView::OnLeftMouseUp(int x, int y, int modifiers) {
	const int row = RowAt(x, y);
	if (!(modifiers & kMouseAutoRepeat) && row >= 0 && mFrame)
		mFrame->ChooseRow(row);
	return true;
}

// The pointer has rested on a row: the menu of the row opens, or that of another one closes.
void TContextMenuScrollableContentView::OnFrame() {
	if (mPendingSubMenuRow < 0 || !mFrame || mHoverClock.ElapsedMilliseconds() <= kSubMenuMilliseconds)
		return;
	const int row = std::exchange(mPendingSubMenuRow, -1);
	if (CanChoose(row) && Entry(row).HasSubEntries())
		mFrame->OpenSubMenu(row);
	else
		mFrame->CloseSubMenu();
}

// Drawing

void TContextMenuScrollableContentView::Draw(TSurface& port) {
	const TRectT<int> clip = port.ClipRect();
	for (int row = 0; row < NumberOfRows(); ++row) {
		const int top = AbsolutePosition().mY + mRowTops[row];
		if (top < clip.Bottom() && top + kRowHeight > clip.mTop)
			DrawRow(port, row);
		if (mEntries[row]->HasSeparator())
			DrawSeparator(port, row, {AbsolutePosition().mX, top, Width(), kRowHeight});
	}
}

void TContextMenuScrollableContentView::DrawSeparator(TSurface& port, int row, const TRectT<int>& rect) {
	const TRectT<int> line{
	    rect.mLeft + kSelectionIndent, rect.mTop - kSeparatorHeight, rect.mWidth - 2 * kSelectionIndent,
	    kSeparatorHeight};
	TSkin::Instance()->DrawMenuSeparator(port, line);
	const TString& caption = mEntries[row]->SeparatorCaption();
	if (caption.IsEmpty())
		return;
	const TColor color = Mix(MainColor(TSkinColors::kBodyFont), MainColor(TSkinColors::kBodyBack), 0.75f);
	const TRectT<int> band{
	    rect.mLeft + CheckColumnWidth() + kTextIndent, line.mTop - kCaptionHeight, mTextWidth + kTextIndent,
	    kCaptionHeight};
	TSkin::Instance()->DrawText(port, band, caption, color, kCaptionFont, kAlignLeft);
}

void TContextMenuScrollableContentView::DrawRow(TSurface& port, int row) {
	const TMenuEntry& entry = *mEntries[row];
	const TRectT<int> rect{AbsolutePosition().mX, AbsolutePosition().mY + mRowTops[row], Width(), kRowHeight};
	const bool isHighlighted = row == mHighlightedRow && entry.IsEnabled();
	TColor color = MainColor(isHighlighted ? TSkinColors::kSelectionFont : TSkinColors::kStrongBodyFont);
	if (!entry.IsEnabled())
		color = Mix(color, MainColor(TSkinColors::kBodyBack), 0.4f);
	if (isHighlighted)
		TSkin::Instance()->DrawMenuEntryBackground(
		    port, {rect.mLeft + kSelectionIndent, rect.mTop, rect.mWidth - 2 * kSelectionIndent, rect.mHeight}, true);
	DrawSign(port, entry, rect, color);
	const int left = rect.mLeft + CheckColumnWidth() + kTextIndent;
	TSkin::Instance()->DrawText(
	    port, {left, rect.mTop, mTextWidth + kTextIndent, rect.mHeight}, entry.Label(), color, LabelFont(entry),
	    kAlignLeft);
	const TMenuEntryView& view = *mEntryViews[row];
	const int hintWidth = view.HintWidth();
	view.DrawHint(port, {rect.mLeft + mKeyColumn - hintWidth, rect.mTop, hintWidth, rect.mHeight}, color);
	if (!entry.HasSubEntries())
		return;
	mArrowBitmap->SetColors(color, MainColor(TSkinColors::kBodyBack));
	const TPointT<int> size = mArrowBitmap->Size();
	mArrowBitmap->DrawAt(
	    port, {rect.Right() - kSelectionIndent - size.mX - 2, rect.mTop + (rect.mHeight - size.mY) / 2}, 1.0f);
}

/// A check mark, else the icon, in their column.
void TContextMenuScrollableContentView::DrawSign(
    TSurface& port, const TMenuEntry& entry, const TRectT<int>& rect, const TColor& color) {
	const bool hasMark = entry.IsChecked() && !entry.HasSubEntries();
	TBitmap* bitmap = hasMark ? mCheckBitmap.Get() : entry.Icon();
	if (!bitmap || !mHasChecks)
		return;
	if (auto* recolorable = dynamic_cast<TRecolorableBitmap*>(bitmap))
		recolorable->SetColors(color, MainColor(TSkinColors::kBodyBack));
	bitmap->DrawAt(port, {rect.mLeft + kTextIndent, rect.mTop + (rect.mHeight - bitmap->Size().mY) / 2}, 1.0f);
}
