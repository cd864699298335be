// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TMainFrameView.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/views/TViewWindow.h"

constinit const TTypeRecord TMainFrameView::kTypeRecord{"TMainFrameView", &TFocusRootView::kTypeRecord};

TMainFrameView::TMainFrameView() {
	BecomeMainFrame();
}

// The window

TWindow* TMainFrameView::Window() const {
	return mWindow.Get();
}

TViewWindow* TMainFrameView::ViewWindow() const {
	return mWindow.Get();
}

void TMainFrameView::AttachToWindow(TViewWindow* window) {
	mWindow = window;
	OnAttachedToWindow();
}

void TMainFrameView::DetachFromWindow() {
	OnDetachedFromWindow();
	mWindow = nullptr;
	mPopupWindows.Clear();
}

// What is to be drawn

void TMainFrameView::AddDirtyRect(const TRectT<int>& rect) {
	if (rect.IsEmpty())
		return;
	TRectT<int>* held = nullptr;
	for (TRectT<int>& listed : mDirtyRects) {
		if (listed.ContainsRect(rect))
			return;
		if (!held && rect.ContainsRect(listed))
			held = &listed;
	}
	if (held)
		*held = rect;
	else
		mDirtyRects.Append(rect);
}

void TMainFrameView::TakeDirtyRects(TList<TRectT<int>>& rects) {
	rects.Clear();
	for (int32_t index = 0; index < mDirtyRects.Count(); ++index)
		if (!IsHeldByAnother(index))
			rects.Append(mDirtyRects[index]);
	mDirtyRects.Clear();
}

bool TMainFrameView::IsHeldByAnother(int32_t index) const {
	for (int32_t other = 0; other < mDirtyRects.Count(); ++other)
		if (other != index && mDirtyRects[other].ContainsRect(mDirtyRects[index]) &&
		    (other < index || !(mDirtyRects[other] == mDirtyRects[index])))
			return true;
	return false;
}

// The focus

void TMainFrameView::OnLostKeyWindow(TWindow* next) {
	const TPtr<TFocusRootView> focused = FocusedView();
	if (!focused)
		return;
	const TWindow* window = Window();
	if (!(next && window && next->Kind() == kPopupWindow && next->IsBelow(window)))
		focused->SetFocus(false);
	SetPreviousFocusedView(focused.Get());
}

void TMainFrameView::OnBecameKeyWindow(TWindow* /*previous*/) {
	if (FocusedView())
		return;
	TFocusRootView* view = PreviousFocusedView();
	if (!view || !view->IsVisibleInTree() || view->MainFrame() != this)
		view = InitialFocus();
	if (view)
		view->SetFocus(true);
}

// Keys

bool TMainFrameView::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	const TKeptAlive kept(this);
	return HandleFocusedKey(key, isRelease, isRepeat) || HandleFrameKey(key, isRelease, isRepeat);
}

bool TMainFrameView::HandleFocusedKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	const TPtr<TFocusRootView> focused = FocusedView();
	if (!focused || focused.Get() == this)
		return false;
	const TWindow* window = Window();
	const TPtr<TKeyboardBindings> bindings = window ? window->KeyBindings() : nullptr;
	return (bindings && bindings->Dispatch(focused->FocusTypeName(), key, isRelease, isRepeat)) ||
	       focused->HandleKeyboardEvent(key, isRelease, isRepeat);
}

bool TMainFrameView::HandleFrameKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	const TWindow* window = Window();
	if (!window)
		return false;
	const TPtr<TKeyboardBindings> bindings = window->KeyBindings();
	const bool isOfMain = window->Kind() == kTopLevelWindow || window->Kind() == kSecondTopLevelWindow;
	if (bindings || !isOfMain)
		return bindings && bindings->Dispatch(FocusTypeName(), key, isRelease, isRepeat);
	TWindow* main = TWindow::MainWindow();
	const TViewWindow* mainViews = main ? main->AsViewWindow() : nullptr;
	const TPtr<TKeyboardBindings> mainBindings = main ? main->KeyBindings() : nullptr;
	return mainBindings && mainViews && mainViews->MainFrame() &&
	       mainBindings->Dispatch(mainViews->MainFrame()->FocusTypeName(), key, isRelease, isRepeat);
}

// Child windows that a click outside closes

bool TMainFrameView::HasWindowsToClose() const {
	const TWindow* window = Window();
	if (window)
		for (const TPtr<TWindow>& child : window->Children())
			if (child->ClosesOnClickOutside() && child->IsOpen())
				return true;
	return false;
}

void TMainFrameView::CloseWindowsOnClickOutside() {
	const TPtr<TWindow> window = Window();
	// Closing shortens the list, so the same place is looked at again.
	for (int32_t index = 0; window && index < window->Children().Count();) {
		const TPtr<TWindow> child = window->Children()[index];
		if (child->ClosesOnClickOutside() && child->IsOpen())
			child->Close();
		else
			++index;
	}
}

bool TMainFrameView::WantsMouseCapture(int /*x*/, int /*y*/, int /*modifiers*/) {
	return HasWindowsToClose();
}

bool TMainFrameView::OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	mPopupWindows.Clear();
	if (const TWindow* window = Window())
		for (const TPtr<TWindow>& child : window->Children())
			if (child->ClosesOnClickOutside() && child->IsOpen())
				mPopupWindows.Append(TWeakPtr<TWindow>(child));
	return !mPopupWindows.IsEmpty();
}

bool TMainFrameView::OnLeftMouseUp(int /*x*/, int /*y*/, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) != 0 || mPopupWindows.IsEmpty())
		return false;
	TList<TWeakPtr<TWindow>> windows;
	windows.Swap(mPopupWindows);
	for (const TWeakPtr<TWindow>& window : windows)
		if (window)
			window->Close();
	return true;
}

void TMainFrameView::HandleCancelCommand() {
	const TKeptAlive kept(this);
	CloseWindowsOnClickOutside();
	const TPtr<TViewWindow> window = ViewWindow();
	if (window && window->ClosesOnClickOutside()) {
		window->Close();
		return;
	}
	if (const TPtr<TFocusRootView> focused = FocusedView(); focused && focused->IsEditingText()) {
		const TDocumentRoot::TActionGuard action(window ? window->DocumentRoot() : nullptr);
		focused->EndTextEditing();
	}
	OnCancelCommand();
}

void TMainFrameView::CloseChildWindows() {
	const TKeptAlive kept(this);
	CloseWindowsOnClickOutside();
	OnApplicationDeactivated();
}
