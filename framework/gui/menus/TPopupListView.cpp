// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TPopupListView.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/menus/TPopUpMenu.h"
#include "framework/gui/views/TViewWindow.h"

TPopupMainFrameView::TPopupMainFrameView(TPopUpMenu& owner, const TList<TString>& labels, bool searchable)
    : mList(MakePtr<TPopupListView>(owner)) {
	mList->SetEntries(labels);
	if (searchable)
		mList->ShowSearchField();
	AddChild(mList);
}

TFocusRootView* TPopupMainFrameView::InitialFocus() {
	return mList.Get();
}

void TPopupMainFrameView::OnResized() {
	mList->SetRect({0, 0, Width(), Height()});
}

void TPopupMainFrameView::Draw(TSurface& port) {
	port.FillRect(AbsoluteRect(), TSkinColors::Instance()->MainColor(TSkinColors::kMainBack), 1.0f);
}

void TPopupMainFrameView::DrawOverlay(TSurface& port) {
	constexpr float kOutlineOpacity = 0.16f;
	const TColor color = TSkinColors::Instance()->MainColor(TSkinColors::kValueBoxFontIcons);
	TSkin::Instance()->StrokeOutline(port, AbsoluteRect(), color, {}, kOutlineOpacity);
}

TPopupListView::TPopupListView(TPopUpMenu& owner) : mOwner(&owner) {
	SetRowHeight(kRowHeight);
}

void TPopupListView::OnRowHovered(int row) {
	if (mHoveredRow == row)
		return;
	for (const int changed : {mHoveredRow, row})
		if (changed >= 0)
			InvalidateRow(changed);
	mHoveredRow = row;
}

void TPopupListView::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	OnRowHovered(-1);
}

void TPopupListView::DrawRowBackground(TSurface& /*port*/, const TRectT<int>& /*rect*/, int /*row*/) {}

void TPopupListView::DrawRow(TSurface& port, int y, int row, const TColor& /*color*/, int /*font*/) {
	const int entry = EntryOfRow(row);
	if (mOwner && entry < mOwner->NumberOfEntries())
		mOwner->DrawEntry(
		    port, {ListRect().mLeft, y, RowWidth(), RowHeight()}, entry, row == mHoveredRow, IsSelected(row),
		    IsFocused());
}

// No focus frame around what is a window of its own.
void TPopupListView::DrawOverlay(TSurface& /*port*/) {}

// A press alone does nothing.
bool TPopupListView::OnLeftMouseDown(int x, int y, int /*modifiers*/) {
	OnRowHovered(RowAt(x, y));
	return IsCapturing(this);
}

bool TPopupListView::OnLeftDoubleClick(int x, int y, int modifiers) {
	return OnLeftMouseDown(x, y, modifiers);
}

bool TPopupListView::OnMouseDrag(int x, int y, int /*modifiers*/) {
	OnRowHovered(RowAt(x, y));
	return true;
}

bool TPopupListView::OnLeftMouseUp(int x, int y, int modifiers) {
	return ReleaseAt(x, y, modifiers, 0);
}

bool TPopupListView::OnRightMouseUp(int x, int y, int modifiers) {
	return ReleaseAt(x, y, modifiers, 1);
}

bool TPopupListView::ReleaseAt(int x, int y, int modifiers, int mouseButton) {
	const int row = RowAt(x, y);
	if (!IsCapturing(this) || (modifiers & kMouseAutoRepeat) || row < 0)
		return false;
	ChooseRow(row, mouseButton);
	return true;
}

void TPopupListView::ChooseRow(int row, int mouseButton) {
	const TPtr<TPopupListView> keepAlive(this);
	Select(row);
	if (mOwner)
		mOwner->Choose(EntryOfRow(row), mouseButton);
}

bool TPopupListView::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	const bool isPress = !isRelease && !isRepeat;
	if (key.Code() == kKeyEscape) {
		if (isPress && mOwner)
			mOwner->CloseList();
		return true;
	}
	if (key.Code() == kKeyReturn || key.Code() == kKeyNumpadEnter) {
		if (isPress && FirstSelected() >= 0)
			ChooseRow(FirstSelected(), 0);
		return true;
	}
	return TListView::HandleKey(key, isRelease, isRepeat);
}
