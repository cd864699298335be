// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/menus/TContextMenu.h"
#include "framework/gui/menus/TContextMenuScrollableContentView.h"
#include "framework/gui/scrolling/TScrollerView.h"

#include <algorithm>

namespace {

constexpr int kScreenMargin = 4;           // of a menu that just fits
constexpr int kScrollingScreenMargin = 12; // of the rows of one that does not

} // namespace

TContextMenuMainFrameView::TContextMenuMainFrameView(const TContextMenu::TEntries& entries, bool hasChecks)
    : mRootEntries(entries),
      mHasChecks(hasChecks),
      mContent(MakePtr<TContextMenuScrollableContentView>(entries, hasChecks)),
      mScroller(MakePtr<TScrollerView>(TScrollerView::kNoBar, TScrollerView::kBar)) {
	mContent->OnLayout();
	mContent->SetFrame(this);
	mScroller->SetAutoHideBars(true);
	mScroller->SetContent(mContent);
	AddChild(mScroller);
}

TContextMenuMainFrameView::~TContextMenuMainFrameView() = default;

TPointT<int> TContextMenuMainFrameView::WantedSize(int workAreaHeight) const {
	const int rows = mContent->Height();
	const int width = mContent->Width() + 2 * kBorder;
	if (rows + 2 * kTopMargin <= workAreaHeight - kScreenMargin)
		return {width, rows + 2 * kTopMargin};
	const int visible =
	    std::max(workAreaHeight - kScrollingScreenMargin, TContextMenuScrollableContentView::kRowHeight);
	return {width + TScrollBar::kThickness + 2, visible + 2 * kTopMargin};
}

void TContextMenuMainFrameView::OnResized() {
	mScroller->SetRect({kBorder, kTopMargin, Width() - 2 * kBorder, Height() - 2 * kTopMargin});
}

void TContextMenuMainFrameView::Draw(TSurface& port) {
	TSkin::Instance()->DrawBackground(port, AbsoluteRect(), TSkin::kMenuBackground);
}

TContextMenu* TContextMenuMainFrameView::Menu() const {
	return static_cast<TContextMenu*>(ViewWindow());
}

// Sub menus

TContextMenu* TContextMenuMainFrameView::SubMenu() const {
	return mSubMenu && mSubMenu->IsOpen() ? mSubMenu.Get() : nullptr;
}

void TContextMenuMainFrameView::OpenSubMenu(int row) {
	if (SubMenuRow() == row)
		return;
	CloseSubMenu();
	TContextMenu* menu = Menu();
	if (!menu || !menu->IsOpen() || !mContent->CanChoose(row) || !mContent->Entry(row).HasSubEntries())
		return;
	TRectT<int> rect = mContent->RowRect(row);
	rect.mLeft += mContent->AbsolutePosition().mX;
	rect.mTop += mContent->AbsolutePosition().mY;
	try {
		mSubMenu = TContextMenu::OpenSubMenu(*menu, mContent->Entry(row), rect, mHasChecks);
		mSubMenuRow = row;
	} catch (const TReadableException& exception) {
		TSystemGlobals::Instance()->ShowMessage(
		    TString::Format("Failed to create a context menu window: '%s'.", exception.Message()), kErrorMessage);
	}
}

void TContextMenuMainFrameView::CloseSubMenu() {
	if (const TPtr<TContextMenu> menu = std::exchange(mSubMenu, nullptr))
		menu->Close();
}

void TContextMenuMainFrameView::ChooseRow(int row) {
	TContextMenu* menu = Menu();
	if (!menu || !mContent->CanChoose(row))
		return;
	if (mContent->Entry(row).HasSubEntries())
		OpenSubMenu(row);
	else
		menu->Choose(mContent->Entry(row));
}

// Keys

bool TContextMenuMainFrameView::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (TContextMenu* subMenu = SubMenu(); subMenu && subMenu->Frame().HandleKey(key, isRelease, isRepeat))
		return true;
	return !isRelease && HandleMenuKey(key, isRepeat);
}

bool TContextMenuMainFrameView::HandleMenuKey(const TKeyboardKey& key, bool isRepeat) {
	const TPtr<TContextMenu> menu(Menu());
	const int row = mContent->HighlightedRow();
	switch (key.Code()) {
	case kKeyUp:
	case kKeyDown:
		mContent->HighlightNext(key.Code() == kKeyDown);
		return true;
	case kKeyLeft:
		if (!menu || !dynamic_cast<TContextMenu*>(menu->Parent()))
			return false;
		menu->Close();
		return true;
	case kKeyRight:
		if (!mContent->CanChoose(row) || !mContent->Entry(row).HasSubEntries())
			return false;
		OpenSubMenu(row);
		if (TContextMenu* subMenu = SubMenu())
			subMenu->Frame().Content().HighlightNext(true);
		return true;
	case kKeyReturn:
	case kKeyNumpadEnter:
		if (!isRepeat)
			ChooseRow(row);
		return true;
	case kKeyEscape:
		if (menu && !isRepeat)
			menu->Close();
		return true;
	default:
		return false;
	}
}
