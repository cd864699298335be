// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/menus/TMenuEntry.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"

class TContextMenuMainFrameView;
class TContextMenuScrollableContentView;
class TScrollerView;

/// A menu in a window of its own that goes away after a choice. Held by the window that it was opened from. Main
/// thread.
class TContextMenu final : public TViewWindow {
public:
	using TEntries = TList<TPtr<TMenuEntry>>;
	/// Called with whether an entry was chosen, when the menu has gone.
	using TResultAction = TFunctionPtr<void, bool>;

	/// Opens the menu beside the pointer, which is at that point of the owner's window. Null, with a message to the
	/// user, if that fails. hasChecks: room for check marks and icons.
	static TPtr<TContextMenu> Open(
	    TView& owner, const TEntries& entries, TPointT<int> pointer, bool hasChecks = false,
	    const TResultAction& result = nullptr);
	/// The same with the menu's corner at the view's lower left one, as buttons open theirs.
	static TPtr<TContextMenu>
	OpenBelow(TView& view, const TEntries& entries, bool hasChecks = false, const TResultAction& result = nullptr);

	/// Null once it is gone; its entries then do nothing.
	TView* Owner() const noexcept { return mOwner.Get(); }

	TContextMenuMainFrameView& Frame() const noexcept;

	/// Closes this menu and the menus that it was opened from, then runs the entry as one undo step.
	void Choose(TMenuEntry& entry);

	void OnClosing() override;

private:
	friend class TContextMenuMainFrameView;

	TContextMenu(TWindow* parent, TView& owner, const TResultAction& result);

	static TPtr<TContextMenu>
	OpenAt(TView& owner, const TEntries& entries, TPointT<int> corner, bool hasChecks, const TResultAction& result);
	static TPtr<TContextMenu>
	OpenSubMenu(TContextMenu& parent, TMenuEntry& entry, const TRectT<int>& row, bool hasChecks);
	void ShowIn(const TRectT<int>& workArea, TPointT<int> corner, TPointT<int> size);
	/// What the window has to measure. logical pixels.
	TPointT<int> FitFrame(const TRectT<int>& workArea);
	TContextMenu* RootMenu();

	TWeakPtr<TView> mOwner;
	TResultAction mResultAction;
	bool mHasResult = false;
};

/// The frame of a menu: scrolls the entries where the screen is too low for them, and has the keys. Main thread.
class TContextMenuMainFrameView final : public TMainFrameView {
public:
	static constexpr int kBorder = 2;
	static constexpr int kTopMargin = 4;

	TContextMenuMainFrameView(const TContextMenu::TEntries& entries, bool hasChecks);
	~TContextMenuMainFrameView() override;

	TContextMenuScrollableContentView& Content() const noexcept { return *mContent; }

	/// The size for a screen of that height. In logical pixels.
	TPointT<int> WantedSize(int workAreaHeight) const;
	/// Null before the window has the frame.
	TContextMenu* Menu() const;

	void OpenSubMenu(int row);
	void CloseSubMenu();

	/// Null while none is open.
	TContextMenu* SubMenu() const;

	/// Of the open sub menu; -1 for none.
	int SubMenuRow() const { return SubMenu() ? mSubMenuRow : -1; }

	/// As a click on the row.
	void ChooseRow(int row);

	void Draw(TSurface& port) override;
	void OnResized() override;
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;

private:
	bool HandleMenuKey(const TKeyboardKey& key, bool isRepeat);

	const TContextMenu::TEntries mRootEntries;
	const bool mHasChecks;
	TPtr<TContextMenuScrollableContentView> mContent;
	TPtr<TScrollerView> mScroller;
	TPtr<TContextMenu> mSubMenu;
	int mSubMenuRow = -1;
};
