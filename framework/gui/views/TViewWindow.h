// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/gui/windows/TWindow.h"
#include "platform/KeyCodes.h"

class TDocumentRoot;
class TFileDropTarget;
class TKeyboardEventHandler;
class TMainFrameView;
class TMouseEventHandler;

/// A window with a tree of views: turns what happens to the window into what happens to views, and makes each gesture
/// of the user one undo step of the document. Main thread.
class TViewWindow : public TWindow {
public:
	TViewWindow(TWindow* parent, int32_t kind);
	~TViewWindow() override;

	/// Null takes the tree out; it may live on.
	void SetMainFrame(const TPtr<TMainFrameView>& view);

	TMainFrameView* MainFrame() const noexcept { return mMainFrame.Get(); }

	/// Both exist as long as there is a main frame.
	TMouseEventHandler* MouseHandler() const noexcept { return mMouseHandler.Get(); }

	TKeyboardEventHandler* KeyboardHandler() const noexcept { return mKeyboardHandler.Get(); }

	/// The window's own, else that of the nearest window above that has one; null if there is none.
	TDocumentRoot* DocumentRoot() const;
	void SetDocument(TDocumentRoot* root);
	/// Closes; what that changes in the document is one undo step.
	void CloseWithUndoStep();
	/// TKeyModifier: those of the keys that came here, else, while the keyboard is somebody else's, those held now.
	int KeyModifiers() const;

	TViewWindow* AsViewWindow() noexcept final { return this; }

	void OnClosing() override;
	void OnMoved() override;
	void OnResized() override;
	void OnChildAdded(TWindow& child) override;
	void OnChildRemoved(TWindow& child) override;
	void OnVisibilityChanged() override;
	void OnBecameKey(TWindow* previous) override;
	void OnLostKey(TWindow* next) override;
	void OnApplicationActivated() override;
	void OnApplicationDeactivated() override;
	const TList<TRectT<int>>& DrawFrame() override;
	void Invalidate() override;
	void OnCancelCommand() override;
	void OnUiScaleChanged() override;
	void OnClipboardChanged() override;
	void OnHardwareChanged() override;
	bool AcceptsTextInput() const override;
	TRectT<int> TextInputRect() const override;
	void InsertText(const TString& text) override;
	/// To the main frame, if that is a TFileDropTarget and no modal window keeps input from it.
	bool OnGlueFilesDragged(TPointT<int> point, const TList<TString>& paths) override;
	void OnGlueFilesDropped(TPointT<int> point, const TList<TString>& paths) override;
	void HandleKeyboardEvent(const TKeyboardEvent& event) override;
	void HandleMouseEvent(const TMouseEvent& event) override;
	void HandleForeignMouseEvent(const TMouseEvent& event) override;

private:
	class TTakeFilesCommand;

	enum class TManeuverOpener : int32_t { kNone, kKeyboard, kMouse };

	void FitMainFrame();
	TFileDropTarget* DropTarget();
	void TakeFiles(const TList<TString>& paths);
	void BeginManeuver(TDocumentRoot* root, TManeuverOpener opener);
	void EndManeuver(TDocumentRoot* root);
	void ClosePendingManeuver();
	void PassToHost(const TKeyboardEvent& event);
	bool IsDocumentBusy() const;
	float Opacity();
	void Draw(TSurface& surface);
	void DrawRect(TSurface& surface, const TRectT<int>& rect, float opacity);
	void DrawStrips(TSurface& surface);
	void InvalidateAllUnderRoot();

	TManeuverOpener mManeuverOpener = TManeuverOpener::kNone;
	TPtr<TMainFrameView> mMainFrame;
	TPtr<TMouseEventHandler> mMouseHandler;
	TPtr<TKeyboardEventHandler> mKeyboardHandler;
	TWeakPtr<TDocumentRoot> mDocument;
	TList<TRectT<int>> mDrawnRects; // in the last frame
	bool mStripsAreDirty = false;
	TKeyFlags mKeysOfHost; // whose press nobody here has used
};
