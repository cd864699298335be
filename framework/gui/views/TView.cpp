// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TView.h"

#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/events/TTimerDispatcher.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/views/TMainFrameView.h"

#include <algorithm>
#include <utility>

TView::TView() : mSizePolicy(TSizePolicy::Manual()) {}

TView::~TView() {
	StopTimer();
	const TViewInvalidationLock lock(mMainFrame != this ? mMainFrame : nullptr);
	mParent = nullptr;
	for (const TPtr<TView>& child : mChildren) {
		child->mParent = nullptr;
		child->ForgetMainFrame();
	}
}

void TView::ForgetMainFrame() {
	mMainFrame = nullptr;
	for (const TPtr<TView>& child : mChildren)
		child->ForgetMainFrame();
}

// The tree

void TView::InsertChild(const TPtr<TView>& view, int index) {
	const TPtr<TView> child = view; // the caller's may be an entry of the old parent
	if (!child || IsInside(child.Get()))
		return;
	if (child->mParent)
		child->mParent->RemoveChild(child.Get());
	mChildren.Insert(child, std::clamp(index, 0, mChildren.Count()));
	child->SetParent(this);
	child->OnAddedToParent();
	OnChildAdded(*child);
	if (child->mParent != this)
		return;
	if (HasSize() && child->mSizePolicy->IsAnyDynamic())
		ApplyChildSizePolicy(*child);
	child->CopyFocused(mFocused);
	child->SetKeyModifiers(KeyModifiers());
	child->Invalidate();
}

void TView::RemoveChild(TView* view) {
	const int32_t index = IndexOfChild(view);
	if (index < 0)
		return;
	const TPtr<TView> child = view;
	child->Invalidate();
	child->LetGoOfInput();
	if (child->mParent != this) // a handler was quicker
		return;
	child->OnRemovedFromParent();
	if (const int32_t place = IndexOfChild(view); place >= 0)
		mChildren.RemoveAt(place);
	child->SetParent(nullptr);
	child->CopyFocused(false);
	OnChildRemoved(*child);
}

void TView::RemoveAllChildren() {
	while (!mChildren.IsEmpty())
		RemoveChild(mChildren[mChildren.Count() - 1].Get());
}

int TView::IndexOfChild(const TView* view) const noexcept {
	for (int32_t index = 0; index < mChildren.Count(); ++index)
		if (mChildren[index] == view)
			return index;
	return -1;
}

void TView::AddSpacer(int width, int height) {
	const TPtr<TView> spacer = MakePtr<TView>();
	spacer->SetSize(width, height);
	AddChild(spacer);
}

bool TView::IsInside(const TView* view) const noexcept {
	const TView* self = this;
	while (self && self != view)
		self = self->mParent;
	return self != nullptr;
}

TMainFrameView* TView::MainFrameView() const {
	const TView* top = this;
	while (top->mParent)
		top = top->mParent;
	return top->IsMainFrame() ? const_cast<TMainFrameView*>(static_cast<const TMainFrameView*>(top)) : nullptr;
}

void TView::SetParent(TView* parent) {
	if (mParent)
		mParent->ChangeFrameWorkers(-mFrameWorkers);
	mParent = parent;
	if (mParent)
		mParent->ChangeFrameWorkers(mFrameWorkers);
	UpdateAbsolutePosition();
	UpdateVisibleRect();
	UpdateMainFrame(MainFrameView());
}

void TView::UpdateMainFrame(TMainFrameView* mainFrame) {
	if (mMainFrame == mainFrame)
		return;
	const TKeptAlive kept(this);
	mMainFrame = mainFrame;
	OnMainFrameChanged();
	ForEachChild([mainFrame](TView& child) { child.UpdateMainFrame(mainFrame); });
}

/// Nothing of what is being removed keeps the mouse, a drag or the keyboard.
void TView::LetGoOfInput() {
	const auto isInside = [this](const TGuiEventTarget* target) {
		const TView* view = target ? const_cast<TGuiEventTarget*>(target)->AsView() : nullptr;
		return view && view->IsInside(this);
	};
	if (const TDragContent* content = CurrentDragContent();
	    content && (!content->Source() || isInside(content->Source())))
		CancelDrag();
	if (isInside(CapturedTarget())) {
		const TPointT<int> point = CapturedTarget()->MousePoint();
		ReleaseMouseCapture(CapturedTarget(), point.mX, point.mY, 0);
	}
	if (!mMainFrame)
		return;
	if (TFocusRootView* previous = mMainFrame->PreviousFocusedView(); isInside(previous))
		mMainFrame->SetPreviousFocusedView(nullptr);
	if (TFocusRootView* focused = mMainFrame->FocusedView(); isInside(focused)) {
		focused->SetFocus(false);
		if (mMainFrame && isInside(mMainFrame->PreviousFocusedView()))
			mMainFrame->SetPreviousFocusedView(nullptr);
	}
}

void TView::CopyFocused(bool focused) {
	mFocused = focused;
	for (const TPtr<TView>& child : mChildren)
		child->CopyFocused(focused);
}

// Geometry

void TView::SetPosition(int x, int y) {
	if (mPosition == TPointT<int>{x, y})
		return;
	const TKeptAlive kept(this);
	Invalidate();
	MoveQuietly({x, y});
	Invalidate();
}

void TView::MoveQuietly(TPointT<int> position) {
	mPosition = position;
	UpdateAbsolutePosition();
	UpdateVisibleRect();
	OnMoved();
	if (mParent)
		mParent->OnChildMoved(*this);
}

void TView::SetSize(int width, int height) {
	if (mSize == TPointT<int>{width, height})
		return;
	const TKeptAlive kept(this);
	Invalidate();
	mSize = {width, height};
	UpdateVisibleRect();
	OnResized();
	ForEachChild([this](TView& child) {
		if (child.mSizePolicy->IsAnyDynamic())
			ApplyChildSizePolicy(child);
	});
	if (mParent)
		mParent->OnChildResized(*this);
	Invalidate();
}

void TView::UpdateAbsolutePosition() {
	mAbsolutePosition = mParent ? mParent->mAbsolutePosition + mPosition : mPosition;
	for (const TPtr<TView>& child : mChildren)
		child->UpdateAbsolutePosition();
}

void TView::UpdateVisibleRect() {
	const TRectT<int> rect = mParent ? AbsoluteRect().Intersected(mParent->mVisibleRect) : AbsoluteRect();
	const TKeptAlive kept(this);
	if (!(rect == mVisibleRect)) {
		mVisibleRect = rect;
		OnAbsolutePositionChanged();
	}
	ForEachChild([](TView& child) { child.UpdateVisibleRect(); });
}

void TView::SetSizePolicy(const TPtr<TSizePolicy>& policy) {
	if (mSizePolicy->Equals(*policy))
		return;
	mSizePolicy = policy;
	OnSizePolicyChanged();
	if (!mParent)
		return;
	if (mMainFrame && mSizePolicy->IsAnyRelative())
		mParent->ApplyChildSizePolicy(*this);
	if (mParent)
		mParent->OnChildSizePolicyChanged(*this);
}

void TView::SetSizePolicy(const TPtr<TLengthPolicy>& width, const TPtr<TLengthPolicy>& height) {
	SetSizePolicy(MakePtr<TSizePolicy>(width, height));
}

// Timer

void TView::StartTimer(int milliseconds) {
	StopTimer();
	mTimerIsOneShot = false;
	if (TTimerDispatcher* dispatcher = TTimerDispatcher::Instance())
		dispatcher->AddTimer({this, &TView::OnTimerFired}, milliseconds);
	mTimerRuns = true;
}

void TView::StartOneShotTimer(int milliseconds) {
	StartTimer(milliseconds);
	mTimerIsOneShot = true;
}

void TView::StopTimer() {
	if (!mTimerRuns)
		return;
	mTimerRuns = false;
	if (TTimerDispatcher* dispatcher = TTimerDispatcher::Instance())
		dispatcher->RemoveTimer({this, &TView::OnTimerFired});
}

void TView::OnTimerFired() {
	const TKeptAlive kept(this);
	if (mTimerIsOneShot)
		StopTimer();
	OnTimer();
}

// Walks

void TView::NotifyUiScaleChanged() {
	const TKeptAlive kept(this);
	ForEachChild([](TView& child) { child.NotifyUiScaleChanged(); });
	OnUiScaleChanged();
	Invalidate();
}

void TView::NotifyClipboardChanged() {
	const TKeptAlive kept(this);
	ForEachChild([](TView& child) { child.NotifyClipboardChanged(); });
	OnClipboardChanged();
}

void TView::ApplyColorsInTree() {
	const TKeptAlive kept(this);
	ForEachChild([](TView& child) { child.ApplyColorsInTree(); });
	ApplyColors();
	Invalidate();
}

void TView::NotifyVisibilityChanged() {
	const TKeptAlive kept(this);
	OnVisibilityChanged();
	ForEachChild([](TView& child) { child.NotifyVisibilityChanged(); });
}

// Linked values

void TView::AddLinkedValue(TLinkedViewValueBase* value) {
	mLinkedValues.Append(TOwnerPtr<TLinkedViewValueBase>(value));
	UpdateHasFrameWork();
}

void TView::RemoveLinkedValue(TLinkedViewValueBase* value) {
	for (int32_t index = 0; index < mLinkedValues.Count(); ++index)
		if (mLinkedValues[index].get() == value) {
			if (mIsPolling) // it may be the one that is being polled
				mRemovedLinkedValues.Append(std::move(mLinkedValues[index]));
			mLinkedValues.RemoveAt(index);
			UpdateHasFrameWork();
			return;
		}
}

void TView::PollLinkedValues() {
	const bool wasPolling = std::exchange(mIsPolling, true);
	for (int32_t index = 0; index < mLinkedValues.Count(); ++index)
		mLinkedValues[index]->Poll(index);
	mIsPolling = wasPolling;
	if (!mIsPolling)
		mRemovedLinkedValues.Clear();
}

void TView::OnFrame() {
	mIsAskedForFrames = false;
	UpdateHasFrameWork();
}

void TView::UpdateHasFrameWork() {
	const bool hasWork = mIsAskedForFrames || !mLinkedValues.IsEmpty();
	if (std::exchange(mHasFrameWork, hasWork) != hasWork)
		ChangeFrameWorkers(hasWork ? 1 : -1);
}

void TView::ChangeFrameWorkers(int difference) {
	for (TView* view = this; view; view = view->mParent)
		view->mFrameWorkers += difference;
}

void TView::RunFrameWalk() {
	if (!mLinkedValues.IsEmpty())
		PollLinkedValues();
	if (mIsAskedForFrames)
		OnFrame();
	if (mFrameWorkers == (mHasFrameWork ? 1 : 0))
		return;
	for (int32_t index = 0; index < mChildren.Count(); ++index)
		if (mChildren[index]->mVisible && mChildren[index]->mFrameWorkers > 0) {
			const TPtr<TView> child = mChildren[index];
			child->RunFrameWalk();
		}
}

// Invalidation

TViewInvalidationLock::TViewInvalidationLock(TView* mainFrame) : mMainFrame(mainFrame) {
	if (mainFrame)
		++mainFrame->mInvalidationLocks;
}

TViewInvalidationLock::~TViewInvalidationLock() {
	if (TView* mainFrame = mMainFrame.Get(); mainFrame && --mainFrame->mInvalidationLocks == 0)
		mainFrame->Invalidate();
}

bool TView::CanInvalidate() const noexcept {
	return mMainFrame && mInvalidationLocks == 0 && static_cast<const TView*>(mMainFrame)->mInvalidationLocks == 0 &&
	       IsShown();
}

void TView::Invalidate() {
	if (CanInvalidate())
		mMainFrame->AddDirtyRect(mVisibleRect);
}

void TView::Invalidate(const TRectT<int>& rect) {
	if (!CanInvalidate())
		return;
	const TRectT<int> moved{
	    rect.mLeft + mAbsolutePosition.mX, rect.mTop + mAbsolutePosition.mY, rect.mWidth, rect.mHeight};
	mMainFrame->AddDirtyRect(moved.Intersected(mVisibleRect));
}
