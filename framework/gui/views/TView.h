// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/gui/keyboard/TKeyCommand.h"
#include "framework/gui/views/TGuiEventTarget.h"
#include "framework/gui/views/TLinkedViewValueBase.h"
#include "framework/gui/views/TSizePolicy.h"

#include <cstdint>
#include <optional>

class TFocusRootView;
class TMainFrameView;
class TSurface;
class TWindow;

/// A rectangle of the interface: geometry, children, invalidation and drawing. Built in its constructor, laid out in
/// OnResized, painted in Draw when something asked for that with Invalidate. A parent holds its children; references
/// across the tree are weak. Drawing takes coordinates of the window: AbsolutePosition is the view's own corner.
/// Logical pixels. Main thread.
class TView : public TGuiEventTarget {
public:
	static constexpr int kInheritCursor = -1;

	TView();
	~TView() override;

	// Called on the view

	virtual void OnTimer() {}

	virtual bool IsMainFrame() const { return false; }

	virtual TFocusRootView* AsFocusRoot() noexcept { return nullptr; }

	/// Shown, with a size, and the point in its rectangle.
	virtual bool ContainsPoint(int x, int y) const;
	/// Whether nothing below shows through the rectangle; here, whether a child covers it.
	virtual bool IsRectCovered(const TRectT<int>& rect) const;

	virtual void Draw(TSurface& /*port*/) {}

	/// On top of the children.
	virtual void DrawOverlay(TSurface& /*port*/) {}

	/// Once per drawn frame, behind the poll of the linked values. The one here does nothing and says so: a view whose
	/// class leaves it as it is, is not asked again.
	virtual void OnFrame();

	virtual void OnAddedToParent() {}

	virtual void OnRemovedFromParent() {}

	virtual void OnMainFrameChanged() {}

	virtual void OnChildAdded(TView& /*child*/) {}

	virtual void OnChildRemoved(TView& /*child*/) {}

	virtual void OnChildChanged(TView& /*child*/) {}

	virtual void OnResized() {}

	virtual void OnChildResized(TView& /*child*/) {}

	virtual void OnSizePolicyChanged() {}

	virtual void OnChildSizePolicyChanged(TView& /*child*/) {}

	virtual void ApplyChildSizePolicy(TView& /*child*/) {}

	virtual bool IsChildSizeDynamic(const TSizePolicy& /*policy*/) const { return false; }

	virtual void OnMoved() {}

	virtual void OnChildMoved(TView& /*child*/) {}

	/// The visible rectangle has changed.
	virtual void OnAbsolutePositionChanged() {}

	/// Of this view or one above it.
	virtual void OnVisibilityChanged() {}

	virtual void OnChildVisibilityChanged(TView& /*child*/) {}

	/// Made when the tip is wanted, for a view without a fixed one.
	virtual TString MakeToolTip() { return {}; }

	virtual bool SuppressToolTip() const { return mWasClicked; }

	virtual void ApplyColors() {}

	/// Children first, then the view itself, which is then invalidated.
	virtual void OnUiScaleChanged() {}

	virtual void OnClipboardChanged() {}

	/// Either may be null. focused: the view's new state.
	virtual void OnFocusChanged(TView* /*lost*/, TView* /*gained*/, bool /*focused*/) {}

	// Geometry

	void SetPosition(int x, int y);
	void SetSize(int width, int height);

	/// Position and size in the parent.
	void SetRect(const TRectT<int>& rect) {
		SetPosition(rect.mLeft, rect.mTop);
		SetSize(rect.mWidth, rect.mHeight);
	}

	/// Without invalidating anything, which is then the caller's business.
	void MoveQuietly(TPointT<int> position);

	TPointT<int> Position() const noexcept { return mPosition; }

	TPointT<int> Size() const noexcept { return mSize; }

	int Width() const noexcept { return mSize.mX; }

	int Height() const noexcept { return mSize.mY; }

	TPointT<int> AbsolutePosition() const noexcept { return mAbsolutePosition; }

	/// In the window, not clipped.
	TRectT<int> AbsoluteRect() const noexcept {
		return {mAbsolutePosition.mX, mAbsolutePosition.mY, mSize.mX, mSize.mY};
	}

	/// In the window, clipped to all views above; empty when nothing is left.
	const TRectT<int>& VisibleRect() const noexcept { return mVisibleRect; }

	bool HasSize() const noexcept { return mSize.mX > 0 && mSize.mY > 0; }

	void SetSizePolicy(const TPtr<TSizePolicy>& policy);
	void SetSizePolicy(const TPtr<TLengthPolicy>& width, const TPtr<TLengthPolicy>& height);

	const TSizePolicy& SizePolicy() const noexcept { return *mSizePolicy; }

	// The tree

	void AddChild(const TPtr<TView>& view) { InsertChild(view, mChildren.Count()); }

	void InsertChild(const TPtr<TView>& view, int index);
	/// Ignored for a view that is no child.
	void RemoveChild(TView* view);
	void RemoveAllChildren();

	/// In drawing order: the last one is on top.
	const TList<TPtr<TView>>& Children() const noexcept { return mChildren; }

	/// -1 for a view that is no child.
	int IndexOfChild(const TView* view) const noexcept;
	/// A plain view of that size, as a child.
	void AddSpacer(int width, int height);

	TView* Parent() const noexcept { return mParent; }

	/// This view or one above it.
	bool IsInside(const TView* view) const noexcept;
	/// The top of the parent chain if that is one.
	TMainFrameView* MainFrameView() const;

	/// The same, kept in step with the chain.
	TMainFrameView* MainFrame() const noexcept { return mMainFrame; }

	// State

	void SetVisible(bool visible);

	/// The view's own state, whatever holds above it.
	bool IsVisible() const noexcept { return mVisible; }

	/// Visible, and everything above it, too.
	bool IsVisibleInTree() const noexcept;

	/// In a tree, with a size, visible along the chain.
	bool IsShown() const noexcept { return mMainFrame && HasSize() && IsVisibleInTree(); }

	/// This view or one above it has the keyboard focus.
	bool IsFocused() const noexcept { return mFocused; }

	bool IsMouseInside() const noexcept { return mMouseInside; }

	/// A button was pressed over this view since the mouse last entered it.
	bool WasClicked() const noexcept { return mWasClicked; }

	// Drawing

	void Invalidate();
	/// In coordinates of the view.
	void Invalidate(const TRectT<int>& rect);

	int DrawOrder() const noexcept { return mDrawOrder; }

	/// TOrder.
	void SetDrawOrder(int order) noexcept { mDrawOrder = order; }

	/// Paints the view and everything in it that meets the port's clip.
	void DrawTree(TSurface& port);

	// Cursor and tool tip

	/// An id of the cursor table, or kInheritCursor.
	void SetCursor(int cursor);

	int Cursor() const noexcept { return mCursor; }

	void SetToolTip(const TString& text) { mToolTip = text; }

	void SetToolTipCommand(const TKeyCommand& command) { mToolTipCommand = command; }

	const TKeyCommand& ToolTipCommand() const noexcept { return mToolTipCommand; }

	/// What the tip of this view says now; empty for none.
	TString ToolTipText();
	/// Moves the pointer to a point of the window. Ignored outside a main frame.
	void WarpMouse(TPointT<int> point);

	// Timer: one for each view

	void StartTimer(int milliseconds);
	void StartOneShotTimer(int milliseconds);
	void StopTimer();
	bool IsTimerRunning() const noexcept { return mTimerRuns; }

	// Looking up

	/// The frontmost view under the point; null if there is none.
	TView* TopViewAt(int x, int y);
	/// The view whose cursor holds there.
	TView* CursorViewAt(int x, int y);
	TView* ToolTipViewAt(int x, int y);
	TView* DropTargetAt(int x, int y, TDragContent& content, int mode);

	// Linked values

	void RemoveLinkedValue(TLinkedViewValueBase* value);
	/// Polls the linked values of the view and of the visible views in it, and runs OnFrame on them. Passes over those
	/// with nothing of either in them.
	void RunFrameWalk();

	// Walks over the view and everything in it

	void NotifyUiScaleChanged();
	void NotifyClipboardChanged();
	void ApplyColorsInTree();

	bool HandleMouseEvent(int x, int y, int type, int modifiers) override;
	void UpdateMouseInside(int x, int y, int modifiers) override;
	bool HandleKeyboardEvent(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;
	void SetKeyModifiers(int modifiers) override;
	bool HitTest(int x, int y) override;

	TView* AsView() noexcept final { return this; }

protected:
	/// For the constructor of a class that is one.
	void BecomeMainFrame() { UpdateMainFrame(MainFrameView()); }

private:
	friend class TLinkedViewValueBase;
	friend class TFocusRootView;
	friend class TViewInvalidationLock;

	enum class TRouting { kUnused, kUsed, kCaptured };

	/// Children that go meanwhile are left out, new ones may be.
	template <class TFunction>
	void ForEachChild(const TFunction& function) {
		for (int32_t index = 0; index < mChildren.Count(); ++index) {
			const TPtr<TView> child = mChildren[index];
			function(*child);
		}
	}

	void SetParent(TView* parent);
	void UpdateAbsolutePosition();
	void UpdateVisibleRect();
	void UpdateMainFrame(TMainFrameView* mainFrame);
	void ForgetMainFrame();
	void LetGoOfInput();
	void CopyFocused(bool focused);
	TRouting RouteToChildren(int x, int y, int type, int modifiers);
	bool RouteKeyToChildren(const TKeyboardKey& key, bool isRelease, bool isRepeat);
	void SetMouseInside(bool inside, int x, int y, int modifiers);
	void LeaveMouse(int x, int y);
	bool IsUnderMouse();
	TView* CursorViewBelow(int x, int y);
	TWindow* WindowOfTree() const;
	std::optional<TPointT<int>> MousePointInWindow() const;
	void SetFocusedInTree(TView* lost, TView* gained, bool focused);
	void NotifyVisibilityChanged();
	void AddLinkedValue(TLinkedViewValueBase* value);
	void PollLinkedValues();
	void UpdateHasFrameWork();
	void ChangeFrameWorkers(int difference);
	void OnTimerFired();
	bool CanInvalidate() const noexcept;
	bool Covers(const TRectT<int>& rect) const;
	void DrawChildren(TSurface& port);

	TPointT<int> mAbsolutePosition;
	TPointT<int> mPosition;
	TPointT<int> mSize;
	TPtr<TSizePolicy> mSizePolicy;
	TRectT<int> mVisibleRect;
	bool mVisible = true;
	bool mFocused = false;
	bool mMouseInside = false;
	bool mWasClicked = false;
	bool mTimerRuns = false;
	bool mTimerIsOneShot = false;
	bool mIsPolling = false;
	bool mIsAskedForFrames = true; // until OnFrame turns out to be the one here
	bool mHasFrameWork = true;     // asked, or with linked values
	int mFrameWorkers = 1;         // views with work for frames, this one and those in it
	unsigned mInvalidationLocks = 0;
	int mDrawOrder = kSelfFirst;
	TMainFrameView* mMainFrame = nullptr;
	TView* mParent = nullptr;
	TList<TPtr<TView>> mChildren;
	TList<TOwnerPtr<TLinkedViewValueBase>> mLinkedValues;
	TList<TOwnerPtr<TLinkedViewValueBase>> mRemovedLinkedValues; // during a poll
	TString mToolTip;
	TKeyCommand mToolTipCommand;
	int mCursor = kInheritCursor;
};

/// Keeps a tree from being invalidated for the guard's life, and invalidates it as a whole once at the end. A null
/// main frame is allowed; one that dies meanwhile is forgotten.
class [[nodiscard]] TViewInvalidationLock {
public:
	explicit TViewInvalidationLock(TView* mainFrame);
	~TViewInvalidationLock();

	TViewInvalidationLock(const TViewInvalidationLock&) = delete;
	TViewInvalidationLock& operator=(const TViewInvalidationLock&) = delete;

private:
	TWeakPtr<TView> mMainFrame;
};
