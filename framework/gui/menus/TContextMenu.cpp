// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TContextMenu.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/menus/TContextMenuScrollableContentView.h"
#include "framework/gui/windows/TDesktop.h"

#include <algorithm>

namespace {

constexpr TPointT<int> kPointerOffset{8, 8};
constexpr int kScreenMargin = 2; // pixels of the screen
constexpr const char* kFocusHere = "(Set Keyboard Focus Here)";

TViewWindow* WindowOf(const TView& view) {
	return view.MainFrame() ? view.MainFrame()->ViewWindow() : nullptr;
}

TRectT<int> WorkAreaAt(TPointT<int> screenPoint) {
	const TRectT<int> area = TDesktop::Instance()->WorkAreaAt(screenPoint);
	return {area.mLeft, area.mTop, area.mWidth - kScreenMargin, area.mHeight - kScreenMargin};
}

/// Where keys do things, a menu can also say that they are to do them here.
TContextMenu::TEntries WithFocusEntry(TView& owner, const TContextMenu::TEntries& entries) {
	auto* focusRoot = dynamic_cast<TFocusRootView*>(&owner);
	const TViewWindow* window = WindowOf(owner);
	const TKeyboardBindings* bindings = window ? window->KeyBindings() : nullptr;
	if (!focusRoot || focusRoot->HasFocus() || !bindings || bindings->Categories().Size() == 0)
		return entries;
	TContextMenu::TEntries more = entries;
	const TPtr<TMenuEntry> entry =
	    MakePtr<TMenuEntry>(kFocusHere, TFunctionPtr<void>(focusRoot, &TFocusRootView::GrabFocus));
	entry->SetSeparator(TMenuEntry::kSeparatorAbove);
	more.Append(entry);
	return more;
}

} // namespace

TContextMenu::TContextMenu(TWindow* parent, TView& owner, const TResultAction& result)
    : TViewWindow(parent, kPopupWindow),
      mOwner(&owner),
      mResultAction(result) {
	SetClosesPopupsOnPress(false);
}

TPtr<TContextMenu> TContextMenu::Open(
    TView& owner, const TEntries& entries, TPointT<int> pointer, bool hasChecks, const TResultAction& result) {
	return OpenAt(owner, entries, pointer + kPointerOffset, hasChecks, result);
}

TPtr<TContextMenu>
TContextMenu::OpenBelow(TView& view, const TEntries& entries, bool hasChecks, const TResultAction& result) {
	const TRectT<int> rect = view.AbsoluteRect();
	return OpenAt(view, entries, {rect.mLeft, rect.Bottom()}, hasChecks, result);
}

TPtr<TContextMenu> TContextMenu::OpenAt(
    TView& owner, const TEntries& entries, TPointT<int> corner, bool hasChecks, const TResultAction& result) {
	TWindow* parent = WindowOf(owner);
	if (!parent || entries.IsEmpty())
		return nullptr;
	try {
		const TPtr<TContextMenu> menu(new TContextMenu(parent, owner, result));
		menu->SetMainFrame(MakePtr<TContextMenuMainFrameView>(WithFocusEntry(owner, entries), hasChecks));
		const TPointT<int> place = parent->ClientToScreen(corner);
		const TRectT<int> area = WorkAreaAt(place);
		menu->ShowIn(area, place, menu->FitFrame(area));
		return menu;
	} catch (const TReadableException& exception) {
		TSystemGlobals::Instance()->ShowMessage(
		    TString::Format("Failed to create a context menu window: '%s'.", exception.Message()), kErrorMessage);
		return nullptr;
	}
}

// To the right of the row, else to its left.
TPtr<TContextMenu>
TContextMenu::OpenSubMenu(TContextMenu& parent, TMenuEntry& entry, const TRectT<int>& row, bool hasChecks) {
	if (!parent.Owner())
		return nullptr;
	const TPtr<TContextMenu> menu(new TContextMenu(&parent, *parent.Owner(), nullptr));
	menu->SetMainFrame(MakePtr<TContextMenuMainFrameView>(entry.SubEntries(), hasChecks));
	TPointT<int> place = parent.ClientToScreen({row.Right() - 1, row.mTop - TContextMenuMainFrameView::kTopMargin});
	const TRectT<int> area = WorkAreaAt(parent.Position());
	const TPointT<int> size = menu->FitFrame(area);
	const int width = Scaled(size, menu->UiScale()).mX;
	if (place.mX + width > area.Right())
		place.mX = parent.ClientToScreen({row.mLeft + 1, 0}).mX - width;
	menu->ShowIn(area, place, size);
	return menu;
}

TPointT<int> TContextMenu::FitFrame(const TRectT<int>& workArea) {
	return Frame().WantedSize(workArea.mHeight * UiScale().mY / UiScale().mX);
}

void TContextMenu::ShowIn(const TRectT<int>& workArea, TPointT<int> corner, TPointT<int> size) {
	const TPointT<int> pixels = Scaled(size, UiScale());
	const TPointT<int> place{
	    std::max(std::min(corner.mX, workArea.Right() - pixels.mX), workArea.mLeft),
	    std::max(std::min(corner.mY, workArea.Bottom() - pixels.mY), workArea.mTop)};
	SetClientRect(place, size);
	Show();
}

TContextMenuMainFrameView& TContextMenu::Frame() const noexcept {
	return static_cast<TContextMenuMainFrameView&>(*MainFrame());
}

TContextMenu* TContextMenu::RootMenu() {
	TContextMenu* menu = this;
	while (auto* parent = dynamic_cast<TContextMenu*>(menu->Parent()))
		menu = parent;
	return menu;
}

// The action finds the menu gone.
void TContextMenu::Choose(TMenuEntry& entry) {
	const TPtr<TMenuEntry> chosen(&entry);
	const TPtr<TContextMenu> root(RootMenu());
	const TWeakPtr<TView> owner = mOwner;
	root->mHasResult = true;
	root->Close();
	if (!owner)
		return;
	const TViewWindow* window = WindowOf(*owner);
	const TDocumentRoot::TActionGuard step(window ? window->DocumentRoot() : nullptr);
	chosen->Run();
}

void TContextMenu::OnClosing() {
	TViewWindow::OnClosing();
	if (const TResultAction result = std::exchange(mResultAction, nullptr))
		result(mHasResult);
}
