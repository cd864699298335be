// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TFocusRootView.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/windows/TWindow.h"

constinit const TTypeRecord TFocusRootView::kTypeRecord{"TFocusRootView", nullptr};

void TFocusRootView::SetFocus(bool focus) {
	if (focus)
		TakeFocus();
	else if (HasFocus())
		LoseFocus(nullptr);
}

bool TFocusRootView::HasFocus() const {
	return MainFrame() && MainFrame()->FocusedView() == this;
}

void TFocusRootView::GrabFocus() {
	SetFocus(true);
}

void TFocusRootView::TakeFocus() {
	if (!MainFrame() || HasFocus())
		return;
	const TKeptAlive kept(this);
	TMainFrameView& mainFrame = *MainFrame();
	const TWeakPtr<TFocusRootView> previous = mainFrame.FocusedView();
	mainFrame.SetPreviousFocusedView(previous.Get());
	if (previous)
		previous->LoseFocus(this);
	// A handler may have taken this view out, or given the focus to somebody: that one counts.
	if (MainFrame() != &mainFrame || mainFrame.FocusedView())
		return;
	mainFrame.SetFocusedView(this);
	SetFocusedInTree(previous.Get(), this, true);
	const TWindow* window = mainFrame.Window();
	if (!(window && !window->IsOpen() && previous && previous->IsShown()))
		Invalidate();
}

void TFocusRootView::LoseFocus(TFocusRootView* gained) {
	const TKeptAlive kept(this);
	TMainFrameView& mainFrame = *MainFrame();
	mainFrame.SetFocusedView(nullptr);
	SetFocusedInTree(this, gained, false);
	if (TFocusRootView* previous = mainFrame.PreviousFocusedView(); previous && !previous->IsShown())
		mainFrame.SetPreviousFocusedView(nullptr);
	Invalidate();
}

void TFocusRootView::ReleaseFocus() {
	if (!HasFocus())
		return;
	const TKeptAlive kept(this);
	TMainFrameView& mainFrame = *MainFrame();
	const TWeakPtr<TFocusRootView> previous = mainFrame.PreviousFocusedView();
	LoseFocus(nullptr);
	if (previous && !(previous == this) && previous->IsShown() && !mainFrame.FocusedView())
		previous->SetFocus(true);
}

void TFocusRootView::OnVisibilityChanged() {
	if (HasFocus() && !IsVisibleInTree())
		ReleaseFocus();
}

void TFocusRootView::DrawOverlay(TSurface& port) {
	if (HasFocus() && !IsMainFrame() && TSkin::Instance())
		TSkin::Instance()->DrawFocusFrame(port, FocusRect(), 1.0f);
}

// By the mouse

bool TFocusRootView::HandleMouseEvent(int x, int y, int type, int modifiers) {
	const TKeptAlive kept(this);
	if (type != kMouseMove && !HasMouseCapture() && !IsDragging() && MovesFocus(x, y, type, modifiers))
		return true;
	return TView::HandleMouseEvent(x, y, type, modifiers);
}

bool TFocusRootView::MovesFocus(int x, int y, int type, int modifiers) {
	const TPtr<TFocusRootView> target = FocusRootAt(x, y);
	if (!target)
		return false;
	TWeakPtr<TFocusRootView> first;
	if (IsMainFrame() && IsMousePress(type) && MainFrame()->FocusedView() &&
	    MainFrame()->FocusedView()->ClaimsFocusFirst())
		first = MainFrame()->FocusedView();
	if (TakesFocusByMouse(*target, x, y, type, modifiers))
		return true;
	if (!first || first == target.Get() || !first->HasFocus())
		return false;
	first->ReleaseFocus();
	return TakesFocusByMouse(*target, x, y, type, modifiers);
}

TFocusRootView* TFocusRootView::FocusRootAt(int x, int y) {
	for (TView* view = TopViewAt(x, y); view; view = view->Parent())
		if (TFocusRootView* root = view->AsFocusRoot())
			return root;
	return nullptr;
}

/// True when the click is used up by it.
bool TFocusRootView::TakesFocusByMouse(TFocusRootView& view, int x, int y, int type, int modifiers) {
	const bool isRightEvent = view.mFocusMode == kFocusOnPress
	                              ? IsMousePress(type)
	                              : view.mFocusMode == kFocusOnDoubleClick && IsMouseDoubleClick(type);
	if (!isRightEvent || view.HasFocus() || !view.WantsFocusAt(x, y, modifiers))
		return false;
	view.SetFocus(true);
	if (!view.MainFrame() || !view.WantsMouseCaptureOnFocus(x, y, modifiers))
		return false;
	TakeMouseCapture(view.MainFrame(), x, y, modifiers);
	return true;
}
