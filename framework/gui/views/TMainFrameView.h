// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TFocusRootView.h"

class TApplicationEvent;
class TViewWindow;
class TWindow;

/// The root of a window's tree: collects what has to be repainted and knows who has the focus. Main thread.
class TMainFrameView : public TFocusRootView {
public:
	static const TTypeRecord kTypeRecord;

	TMainFrameView();

	virtual void OnAttachedToWindow() {}

	virtual void OnDetachedFromWindow() {}

	/// Takes the focus when the window becomes the key window and nobody had it before; null for nobody.
	virtual TFocusRootView* InitialFocus() { return nullptr; }

	/// Asked by the window's mouse and keyboard handlers before they dispatch.
	virtual bool IsInputBlocked(const TApplicationEvent* /*event*/) { return false; }

	virtual void OnLostKeyWindow(TWindow* next);
	virtual void OnBecameKeyWindow(TWindow* previous);

	virtual void OnHardwareChanged() {}

	virtual void OnCancelCommand() {}

	virtual void OnApplicationActivated() {}

	virtual void OnApplicationDeactivated() {}

	/// Null while it is in no window.
	TWindow* Window() const;
	TViewWindow* ViewWindow() const;
	/// For the window.
	void AttachToWindow(TViewWindow* window);
	void DetachFromWindow();

	/// Keeps the list free of what others in it hold.
	void AddDirtyRect(const TRectT<int>& rect);
	/// Moves what has to be drawn into `rects`, where none holds another; the list is empty then.
	void TakeDirtyRects(TList<TRectT<int>>& rects);

	const TList<TRectT<int>>& DirtyRects() const noexcept { return mDirtyRects; }

	TFocusRootView* FocusedView() const noexcept { return mFocusedView.Get(); }

	void SetFocusedView(TFocusRootView* view) { mFocusedView = view; }

	TFocusRootView* PreviousFocusedView() const noexcept { return mPreviousFocusedView.Get(); }

	void SetPreviousFocusedView(TFocusRootView* view) { mPreviousFocusedView = view; }

	/// The user wants out of what is open: closes what a click outside would, else ends a text edit.
	void HandleCancelCommand();
	/// The application lost its activity.
	void CloseChildWindows();

	const TTypeRecord& FocusTypeName() const override { return kTypeRecord; }

	bool IsMainFrame() const override { return true; }

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	/// First the focused view, with its key bindings; then those of the frame.
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;

protected:
	/// The two halves of HandleKey: the focused view with its key bindings, then the bindings of the frame.
	bool HandleFocusedKey(const TKeyboardKey& key, bool isRelease, bool isRepeat);
	bool HandleFrameKey(const TKeyboardKey& key, bool isRelease, bool isRepeat);

private:
	bool IsHeldByAnother(int32_t index) const;
	bool HasWindowsToClose() const;
	void CloseWindowsOnClickOutside();

	TList<TRectT<int>> mDirtyRects;
	TWeakPtr<TViewWindow> mWindow;
	TWeakPtr<TFocusRootView> mFocusedView;
	TWeakPtr<TFocusRootView> mPreviousFocusedView;
	TList<TWeakPtr<TWindow>> mPopupWindows; // those that the press which closes them has met
};
