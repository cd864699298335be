// SPDX-License-Identifier: GPL-3.0-or-later
// How events find their way through a tree of views, and what the mouse is over.

#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TView.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TWindow.h"

// Mouse

bool TView::ContainsPoint(int x, int y) const {
	return mVisibleRect.Contains({x, y}) && IsVisibleInTree();
}

bool TView::HitTest(int x, int y) {
	return mVisible && ContainsPoint(x, y);
}

bool TView::HandleMouseEvent(int x, int y, int type, int modifiers) {
	if (TGuiEventTarget* captured = CapturedTarget(); captured && !IsDragging()) {
		const TView* view = captured->AsView();
		if (view && view->mMainFrame == mMainFrame)
			return DispatchMouseEventOf(*captured, x, y, type, modifiers);
	}
	if (!HitTest(x, y))
		return false;
	const TKeptAlive kept(this);
	if (type >= kLeftPress && type <= kMiddleDoubleClick)
		mWasClicked = true;
	if (EventOrder() == kSelfFirst)
		return DispatchMouseEvent(x, y, type, modifiers) || RouteToChildren(x, y, type, modifiers) == TRouting::kUsed;
	const TRouting routing = RouteToChildren(x, y, type, modifiers);
	if (routing == TRouting::kUnused)
		return DispatchMouseEvent(x, y, type, modifiers);
	return routing == TRouting::kUsed;
}

TView::TRouting TView::RouteToChildren(int x, int y, int type, int modifiers) {
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index) {
		if (index >= mChildren.Count()) // handlers may take views away
			continue;
		const TPtr<TView> child = mChildren[index];
		if (!child->HitTest(x, y))
			continue;
		if (child->HandleMouseEvent(x, y, type, modifiers))
			return TRouting::kUsed;
		if (IsCapturing(child.Get()))
			return TRouting::kCaptured;
	}
	return TRouting::kUnused;
}

void TView::UpdateMouseInside(int x, int y, int modifiers) {
	if (!mVisible)
		return;
	const TKeptAlive kept(this);
	SetMouseInside(ContainsPoint(x, y) || IsCapturing(this), x, y, modifiers);
	ForEachChild([&](TView& child) { child.UpdateMouseInside(x, y, modifiers); });
}

void TView::SetMouseInside(bool inside, int x, int y, int modifiers) {
	if (inside == mMouseInside)
		return;
	mMouseInside = inside;
	mWasClicked = false;
	if (inside)
		OnMouseEnter(x, y, modifiers);
	else
		OnMouseLeave(x, y, modifiers);
}

void TView::LeaveMouse(int x, int y) {
	const TKeptAlive kept(this);
	SetMouseInside(false, x, y, 0);
	ForEachChild([&](TView& child) { child.LeaveMouse(x, y); });
}

void TView::WarpMouse(TPointT<int> point) {
	TCursor* cursor = TCursor::Instance();
	const TWindow* window = WindowOfTree();
	if (cursor && window)
		cursor->SetMousePosition(window->ClientToScreen(point));
}

TWindow* TView::WindowOfTree() const {
	return mMainFrame ? mMainFrame->Window() : nullptr;
}

std::optional<TPointT<int>> TView::MousePointInWindow() const {
	const TCursor* cursor = TCursor::Instance();
	const TWindow* window = WindowOfTree();
	if (!cursor || !window || !window->IsVisible())
		return std::nullopt;
	return window->ScreenToClient(cursor->MousePosition());
}

// Cursor

void TView::SetCursor(int id) {
	mCursor = id;
	TCursor* cursor = TCursor::Instance();
	if (!cursor)
		return;
	const bool leavesHidden = cursor->Current() == kEmptyCursor && id != kEmptyCursor;
	if (!leavesHidden && !IsUnderMouse())
		return;
	if (id != kInheritCursor)
		cursor->SetCurrent(id);
	else if (leavesHidden)
		cursor->SetCurrent(kDefaultCursor);
}

bool TView::IsUnderMouse() {
	if (!IsShown())
		return false;
	if (HasMouseCapture())
		return IsCapturing(this);
	const std::optional<TPointT<int>> point = MousePointInWindow();
	return point && HitTest(point->mX, point->mY);
}

// Looking up

TView* TView::TopViewAt(int x, int y) {
	if (!HitTest(x, y))
		return nullptr;
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index)
		if (TView* view = mChildren[index]->TopViewAt(x, y))
			return view;
	return this;
}

TView* TView::CursorViewAt(int x, int y) {
	const TView* captured = CapturedTarget() && !IsDragging() ? CapturedTarget()->AsView() : nullptr;
	if (!captured || captured->mMainFrame != mMainFrame)
		return CursorViewBelow(x, y);
	const TView* view = captured->IsShown() ? captured : nullptr;
	while (view && view->mCursor == kInheritCursor)
		view = view->mParent;
	return const_cast<TView*>(view);
}

TView* TView::CursorViewBelow(int x, int y) {
	if (!HitTest(x, y))
		return nullptr;
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index)
		if (TView* view = mChildren[index]->CursorViewBelow(x, y))
			return view;
	return mCursor != kInheritCursor ? this : nullptr;
}

TView* TView::ToolTipViewAt(int x, int y) {
	if (!ContainsPoint(x, y))
		return nullptr;
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index)
		if (TView* view = mChildren[index]->ToolTipViewAt(x, y))
			return view;
	return ToolTipText().IsEmpty() ? nullptr : this;
}

TView* TView::DropTargetAt(int x, int y, TDragContent& content, int mode) {
	const bool isFixedSource = content.StaysInSourceView() && content.Source() == this;
	if (!isFixedSource && !ContainsPoint(x, y))
		return nullptr;
	if (CanAcceptDrop(x, y, content, mode))
		return this;
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index)
		if (TView* view = mChildren[index]->DropTargetAt(x, y, content, mode))
			return view;
	return nullptr;
}

TString TView::ToolTipText() {
	if (mToolTipCommand) {
		const TWindow* window = TWindow::MainWindow();
		const TKeyboardBindings* bindings = window ? window->KeyBindings() : nullptr;
		return bindings ? bindings->NameOfAction(mToolTipCommand) : TString();
	}
	return mToolTip.IsEmpty() ? MakeToolTip() : mToolTip;
}

// Keys

bool TView::HandleKeyboardEvent(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (!mFocused && !IsMainFrame())
		return false;
	const TKeptAlive kept(this);
	if (EventOrder() == kSelfFirst)
		return HandleKey(key, isRelease, isRepeat) || RouteKeyToChildren(key, isRelease, isRepeat);
	return RouteKeyToChildren(key, isRelease, isRepeat) || HandleKey(key, isRelease, isRepeat);
}

bool TView::RouteKeyToChildren(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	// A main frame has asked the focused view before.
	const TView* asked = IsMainFrame() && mMainFrame ? mMainFrame->FocusedView() : nullptr;
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index) {
		if (index >= mChildren.Count())
			continue;
		const TPtr<TView> child = mChildren[index];
		if (child->mVisible && child.Get() != asked && child->HandleKeyboardEvent(key, isRelease, isRepeat))
			return true;
	}
	return false;
}

void TView::SetKeyModifiers(int modifiers) {
	if (!mVisible)
		return;
	const TKeptAlive kept(this);
	TGuiEventTarget::SetKeyModifiers(modifiers);
	ForEachChild([modifiers](TView& child) { child.SetKeyModifiers(modifiers); });
}

void TView::SetFocusedInTree(TView* lost, TView* gained, bool focused) {
	const TKeptAlive kept(this);
	const bool isChange = mFocused != focused;
	mFocused = focused;
	if (isChange || this == lost || this == gained)
		OnFocusChanged(lost, gained, focused);
	ForEachChild([=](TView& child) { child.SetFocusedInTree(lost, gained, focused); });
}
