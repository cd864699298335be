// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/keyboard/TTypeRecord.h"
#include "framework/gui/views/TView.h"

#include <cstdint>

/// Which mouse event gives a view the focus.
enum TFocusMode : int32_t { kFocusOnPress = 0, kFocusOnDoubleClick = 1, kFocusNever = 2 };

/// A view that can have the keyboard focus; at most one per main frame has it. Main thread.
class TFocusRootView : public TView {
public:
	static const TTypeRecord kTypeRecord;

	/// Where the focus frame is drawn, in coordinates of the window.
	virtual TRectT<int> FocusRect() const { return AbsoluteRect(); }

	/// By which key bindings find the view.
	virtual const TTypeRecord& FocusTypeName() const { return kTypeRecord; }

	virtual bool WantsFocusAt(int x, int y, int /*modifiers*/) { return ContainsPoint(x, y); }

	/// Whether the click that gives the focus does nothing else.
	virtual bool WantsMouseCaptureOnFocus(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	// What text fields answer, so that windows need not know them

	/// Typed characters go into a text here: shortcuts must not take them.
	virtual bool IsEditingText() const { return false; }

	/// Of the caret, for the platform's input method, in coordinates of the window.
	virtual TRectT<int> TextInputRect() const { return {}; }

	/// Text from the input method.
	virtual void InsertInputText(const TString& /*text*/) {}

	virtual void EndTextEditing() {}

	void SetFocus(bool focus);
	/// The view itself has it, not one above or below.
	bool HasFocus() const;
	void GrabFocus();
	/// Also passes it back to the view that had it before, if that is still shown.
	void ReleaseFocus();

	/// TFocusMode.
	void SetFocusMode(int mode) noexcept { mFocusMode = mode; }

	int FocusMode() const noexcept { return mFocusMode; }

	/// While it has the focus, a press elsewhere takes the focus away, wherever it goes.
	void SetClaimsFocusFirst(bool claims) noexcept { mClaimsFocusFirst = claims; }

	bool ClaimsFocusFirst() const noexcept { return mClaimsFocusFirst; }

	TFocusRootView* AsFocusRoot() noexcept final { return this; }

	void DrawOverlay(TSurface& port) override;
	void OnVisibilityChanged() override;
	bool HandleMouseEvent(int x, int y, int type, int modifiers) override;

private:
	void TakeFocus();
	void LoseFocus(TFocusRootView* gained);
	bool MovesFocus(int x, int y, int type, int modifiers);
	bool TakesFocusByMouse(TFocusRootView& view, int x, int y, int type, int modifiers);
	TFocusRootView* FocusRootAt(int x, int y);

	int mFocusMode = kFocusOnPress;
	bool mClaimsFocusFirst = false;
};
