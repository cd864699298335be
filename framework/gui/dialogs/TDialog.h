// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TValue.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/dialogs/TDialogMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"

class TKeyboardKey;

/// A window with a drawn caption and border around one content view. Main thread.
class TDialog : public TViewWindow {
public:
	using TKeyHandler = TFunctionPtr<bool, const TKeyboardKey&, bool, bool>; // key, is-release, is-repeat

	/// A null parent: the modal window under the instance's main window, else that main window. captionButtons:
	/// TCaptionButtons.
	TDialog(TWindow* parent, int32_t kind, int32_t captionButtons, bool hasCaption);

	/// Opens the window, with the size for the view, and not shown yet. Throws TReadableException without a display.
	void SetContent(const TPtr<TView>& view, const TString& title);

	TView* Content() const { return Frame().Content(); }

	TDialogMainFrameView& Frame() const { return static_cast<TDialogMainFrameView&>(*MainFrame()); }

	/// Shows the dialog over its parent, and goes on with frames until it is closed, by whomever: the user, or a host
	/// that takes the window away which it belongs to.
	void RunModal();
	void SetActions(const TFunctionPtr<void>& ok, const TFunctionPtr<void>& cancel);
	/// Characters that act as Return and Escape, in either case; 0 for none.
	void SetHotKeys(char16_t accept, char16_t cancel);
	/// Instead of the dialog's own rule.
	void SetKeyHandler(const TKeyHandler& handler) { mKeyHandler = handler; }

	const TKeyHandler& KeyHandler() const noexcept { return mKeyHandler; }

	/// Told when the dialog closes, and before it is minimized or maximized. Each may be null.
	void BindValues(TValue<TPointT<int>>* position, TValue<TPointT<int>>* size, TValue<bool>* maximized);

	/// Escape and Return, Space and the hot keys.
	bool HandleDialogKey(const TKeyboardKey& key, bool isRelease, bool isRepeat);

	/// The client area around content of that size.
	TPointT<int> FrameSizeFor(TPointT<int> contentSize) const { return Frame().FrameSizeFor(contentSize); }

	void OnClosing() override;
	void OnBeforeMinimize() override;
	void OnBeforeMaximize() override;

private:
	static TWindow* ParentFor(TWindow* parent);
	void StoreRect();

	TFunctionPtr<void> mCancelAction;
	TFunctionPtr<void> mOkAction;
	char16_t mAcceptHotKey = 0;
	char16_t mCancelHotKey = 0;
	TKeyHandler mKeyHandler;
	TWeakPtr<TValue<TPointT<int>>> mPositionValue;
	TWeakPtr<TValue<TPointT<int>>> mSizeValue;
	TWeakPtr<TValue<bool>> mMaximizedValue;
};
