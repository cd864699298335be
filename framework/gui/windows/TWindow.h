// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "platform/TWindowGlue.h"

#include <cstdint>

class TApplicationStateEvent;
class TKeyboardBindings;
class TKeyboardEvent;
class TMouseEvent;
class TViewWindow;

/// A window of the toolkit: a node in the tree of owners, with a surface to draw on, a scale and a glue that stands for
/// the system's window. Built, then opened by its first place or Show, then visible or hidden, then closed for good.
///
/// Sizes, and points inside the window, are logical pixels; places on the screen are the screen's own pixels.
/// Anything that a handler does may close the window: who goes on afterwards holds it, and asks IsOpen. Main thread.
class TWindow : public TApplicationEventListener, private TWindowGlueClient {
public:
	/// kind: TWindowKind. From opening to closing, the parent holds the window.
	TWindow(TWindow* parent, int32_t kind);
	~TWindow() override;

	bool HandleEvent(TApplicationEvent* event) override;

	/// Asks the children first, and closes those that agree.
	virtual bool CanClose(bool force);

	virtual bool ShouldClose(bool /*force*/) { return true; }

	/// Whether the user's wish to close it only hides it.
	virtual bool HidesOnClose() const { return false; }

	virtual void OnClosing() {}

	virtual void OnBeforeMinimize() {}

	virtual void OnBeforeMaximize() {}

	virtual void OnMoved() {}

	virtual void OnResized() {}

	virtual void OnShown();

	virtual void OnChildAdded(TWindow& /*child*/) {}

	virtual void OnChildRemoved(TWindow& /*child*/) {}

	virtual void OnVisibilityChanged() {}

	/// previous: the window that had the keyboard, null if none of this instance.
	virtual void OnBecameKey(TWindow* /*previous*/) {}

	virtual void OnLostKey(TWindow* /*next*/) {}

	virtual void OnApplicationActivated() {}

	virtual void OnApplicationDeactivated() {}

	/// Draws what is to be drawn into the surface, and returns the rectangles.
	virtual const TList<TRectT<int>>& DrawFrame();

	/// As a whole.
	virtual void Invalidate() {}

	virtual void OnCancelCommand() {}

	virtual void OnUiScaleChanged() {}

	virtual void OnClipboardChanged() {}

	virtual void OnHardwareChanged() {}

	/// Whether the window keeps its logical size when the scale changes.
	virtual bool FollowsUiScale() const;

	/// False while keys are typed into a text.
	virtual bool AcceptsTextInput() const { return true; }

	/// Of the caret.
	virtual TRectT<int> TextInputRect() const { return {}; }

	virtual void InsertText(const TString& /*text*/) {}

	virtual void HandleKeyboardEvent(const TKeyboardEvent& /*event*/) {}

	virtual void HandleMouseEvent(const TMouseEvent& /*event*/) {}

	/// A press that was used up by closing popups: where the mouse is, and nothing more.
	virtual void HandleForeignMouseEvent(const TMouseEvent& /*event*/) {}

	// The system's window. Setters open it; throws TReadableException where there is no display.

	bool IsOpen() const noexcept { return mState == TState::kOpen; }

	void Close();
	/// By the user: hides, asks, or closes.
	void RequestClose();
	bool IsVisible() const;
	void Hide();
	/// activate: with the keyboard; front: above its siblings.
	void Show(bool activate = true, bool front = true);
	TString Title() const;
	void SetTitle(const TString& title);
	/// Of the client area, on the screen.
	TPointT<int> Position() const;
	void SetPosition(TPointT<int> position);
	TPointT<int> ClientSize() const;
	void SetClientSize(TPointT<int> size);
	void SetClientRect(TPointT<int> position, TPointT<int> size);
	TPointT<int> MinimumSize() const noexcept { return mMinimumSize; }
	/// 0,0 for none.
	void SetMinimumSize(TPointT<int> size);
	void CenterInParent();
	void CenterOnScreen();
	bool IsResizable() const;
	void SetResizable(bool resizable);
	bool HasNativeDecorations() const;
	void SetHasNativeDecorations(bool native);
	void Minimize();
	void Maximize();
	void Restore();
	bool IsMinimized() const;
	bool IsMaximized() const;
	/// Has the keyboard.
	bool IsKey() const;
	/// The user works with it: it has the keyboard, or is the editor, or belongs to it, while a window of the host has.
	bool IsActive() const;
	/// As the system has it at this moment; the left button counts as the right one where its press did.
	bool IsButtonDown(TMouseButton button) const;
	TPointT<int> ScreenToClient(TPointT<int> point) const;
	TPointT<int> ClientToScreen(TPointT<int> point) const;
	/// Of the screen that the window's corner is on, on the screen.
	TRectT<int> WorkArea() const;

	// The tree of windows

	TWindow* Parent() const noexcept { return mParent.Get(); }

	TWindow* Root() noexcept;
	/// In the tree below the other.
	bool IsBelow(const TWindow* other) const noexcept;

	virtual TViewWindow* AsViewWindow() noexcept { return nullptr; }

	int32_t Kind() const noexcept { return mKind; }

	/// Of the process.
	int32_t Id() const noexcept { return mId; }

	/// From logical to surface pixels.
	TUiScale UiScale() const noexcept { return mUiScale; }

	/// The open ones.
	const TList<TPtr<TWindow>>& Children() const noexcept { return mChildren; }

	void AddChild(const TPtr<TWindow>& window);
	void RemoveChild(TWindow* window);
	/// A visible window of that kind in the tree below, one that was opened by another before that; null if there is
	/// none.
	TWindow* ModalChild() const { return FindVisible(kModalDialogWindow); }

	TWindow* PopupChild() const { return FindVisible(kPopupWindow); }

	TWindow* ModalOrPopupChild() const;
	/// The modal window that keeps input from this one; null if there is none.
	TWindow* BlockingWindow();
	/// The children, and theirs.
	void CloseAll();
	/// Those below. False if there was none.
	bool ClosePopups();
	/// This window and all below it.
	void InvalidateTree();
	bool CanCloseChildren(bool force);

	bool IsSubWindow() const noexcept { return mIsSubWindow; }

	/// The parent handles its keys.
	void SetIsSubWindow(bool isSubWindow) noexcept { mIsSubWindow = isSubWindow; }

	bool ClosesOnClickOutside() const noexcept { return mClosesOnClickOutside; }

	void SetClosesOnClickOutside(bool closes) noexcept { mClosesOnClickOutside = closes; }

	/// Whether a press in this window closes popups and does nothing else.
	bool ClosesPopupsOnPress() const noexcept { return mClosesPopupsOnPress; }

	void SetClosesPopupsOnPress(bool closes) noexcept { mClosesPopupsOnPress = closes; }

	bool CanBecomeKey() const noexcept { return mCanBecomeKey; }

	/// Null until it is set.
	TKeyboardBindings* KeyBindings() const noexcept { return mKeyBindings.Get(); }

	void SetKeyBindings(const TPtr<TKeyboardBindings>& bindings);

	/// Null before the first frame.
	TSurface* Surface() const noexcept { return mSurface.Get(); }

	/// Null before the window is opened.
	TWindowGlue* Glue() const noexcept { return mGlue.Get(); }

	/// Draws and presents one frame of the window and of the windows that belong to it.
	void RunFrame();

	/// The open window with that id; null if there is none.
	static TWindow* WithId(int32_t id);
	/// Null while there is none.
	static TWindow* MainWindow();

protected:
	/// Makes the surface, if there is none. False if it cannot be made.
	bool EnsureSurface();
	/// After an exception: a later frame starts with a new surface.
	void OnDrawingFailed();

private:
	friend class TDesktop; // takes glue clients for what they are

	enum class TState { kBuilt, kOpen, kClosed };

	void OnGlueMouse(const TGlueMouseEvent& event) override;
	void OnGlueKey(const TGlueKeyEvent& event) override;
	void OnGlueText(const TString& text) override;
	bool IsGlueEditingText(TRectT<int>& caret) override;
	void OnGlueResized(TPointT<int> size) override;
	void OnGlueMoved(TPointT<int> position) override;
	void OnGlueVisibilityChanged(bool visible) override;
	void OnGlueBecameKey(TWindowGlueClient* previous) override;
	void OnGlueLostKey(TWindowGlueClient* next) override;
	void OnGlueCloseAsked() override;
	void OnGlueExposed(std::span<const TRectT<int>> rects) override;
	void OnGlueLost(const TString& reason) override;

	TWindowGlue& OpenedGlue();
	void DispatchMouse(const TMouseEvent& event);
	void DispatchKey(const TKeyboardEvent& event);
	void DispatchState(const TApplicationStateEvent& event);
	bool ClosePopupsForPress();
	void TellLastMouseWindow();
	bool TakesMouse(const TMouseEvent& event);
	void PostMouse(int32_t type, TPointT<int> position);
	int32_t TypeOfButton(const TGlueMouseEvent& event);
	void PostWheel(const TGlueMouseEvent& event);
	TWindow* FindVisible(int32_t kind) const;
	void OnScaleSettingChanged(TObservable* observable, int32_t reason);
	void ApplyUiScale();
	void ObserveScaleSettings();
	void DropSurface() { mSurface = nullptr; }
	void Present(const TList<TRectT<int>>& rects);
	TPointT<int> LogicalPoint(TPointT<int> pixels) const;

	TWeakPtr<TWindow> mParent;
	const int32_t mKind;
	TState mState = TState::kBuilt;
	TPointT<int> mSizeBeforeScaleChange;
	TPointT<int> mMinimumSize;
	TUiScale mUiScale;
	const int32_t mId;
	bool mIsSubWindow = false;
	bool mClosesOnClickOutside = false;
	bool mClosesPopupsOnPress = true;
	const bool mCanBecomeKey;
	bool mLeftIsRight = false; // the press of the left button that is held counts as one of the right
	int mFramesToRetry = 0;    // after a surface has failed
	TPtr<TSurface> mSurface;
	TList<TRectT<int>> mPresentedRects; // in surface pixels; kept for its room
	TList<TPtr<TWindow>> mChildren;
	TPtr<TKeyboardBindings> mKeyBindings;
	TPtr<TWindowGlue> mGlue;
};
