// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TViewWindow.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TFileDropTarget.h"
#include "framework/gui/views/TKeyboardEventHandler.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TMouseEventHandler.h"
#include "framework/gui/windows/TKeyboardEvent.h"
#include "framework/gui/windows/TMouseEvent.h"
#include "platform/TPlatform.h"

#include <algorithm>

namespace {

constexpr float kBlockedOpacity = 0.6f; // of what a modal window stands against

/// Ends the step of a gesture behind the event in which its window was lost.
class TViewWindowClosePendingManeuverCommand final : public TCommand {
public:
	explicit TViewWindowClosePendingManeuverCommand(TDocumentRoot* root) : mRoot(root) {}

	void Execute() override {
		if (mRoot && mRoot->IsActionOpen())
			mRoot->EndAction();
	}

private:
	TWeakPtr<TDocumentRoot> mRoot;
};

} // namespace

/// What is dropped comes while the platform hands out its events; loading it may open a dialog, which waits for more.
class TViewWindow::TTakeFilesCommand final : public TCommand {
public:
	TTakeFilesCommand(TViewWindow* window, const TList<TString>& paths) : mWindow(window), mPaths(paths) {}

	void Execute() override {
		if (const TPtr<TViewWindow> window = mWindow.Get())
			window->TakeFiles(mPaths);
	}

private:
	TWeakPtr<TViewWindow> mWindow;
	const TList<TString> mPaths;
};

TViewWindow::TViewWindow(TWindow* parent, int32_t kind) : TWindow(parent, kind) {}

TViewWindow::~TViewWindow() {
	SetMainFrame(nullptr);
}

// The tree

void TViewWindow::SetMainFrame(const TPtr<TMainFrameView>& view) {
	if (mMainFrame == view)
		return;
	if (const TPtr<TMainFrameView> old = mMainFrame) {
		mMouseHandler->Reset();
		old->DetachFromWindow();
	}
	mMouseHandler = nullptr;
	mKeyboardHandler = nullptr;
	mMainFrame = view;
	if (!mMainFrame)
		return;
	mMouseHandler = MakePtr<TMouseEventHandler>(mMainFrame.Get());
	mKeyboardHandler = MakePtr<TKeyboardEventHandler>(mMainFrame.Get());
	mMainFrame->AttachToWindow(this);
	if (!(ClientSize() == TPointT<int>{}))
		FitMainFrame();
	mMainFrame->SetVisible(IsVisible());
	Invalidate();
	if (IsKey())
		OnBecameKey(nullptr);
}

void TViewWindow::FitMainFrame() {
	const TPointT<int> size = ClientSize();
	const TPointT<int> minimum = MinimumSize();
	mMainFrame->SetSize(std::max(size.mX, minimum.mX), std::max(size.mY, minimum.mY));
}

void TViewWindow::OnResized() {
	if (!mMainFrame)
		return;
	const TViewInvalidationLock lock(mMainFrame.Get());
	mStripsAreDirty = true;
	FitMainFrame();
}

void TViewWindow::OnMoved() {
	if (mMouseHandler)
		mMouseHandler->OnWindowMoved();
}

void TViewWindow::OnVisibilityChanged() {
	const TKeptAlive kept(this);
	if (!IsVisible()) { // the release of a button that is held now will not come
		ClosePendingManeuver();
		if (mMouseHandler)
			mMouseHandler->Reset();
	}
	if (mMainFrame)
		mMainFrame->SetVisible(IsVisible());
	if (Kind() == kModalDialogWindow)
		InvalidateAllUnderRoot();
}

void TViewWindow::OnChildAdded(TWindow& child) {
	if (child.Kind() == kModalDialogWindow)
		InvalidateAllUnderRoot();
}

void TViewWindow::OnChildRemoved(TWindow& child) {
	if (child.Kind() == kModalDialogWindow)
		InvalidateAllUnderRoot();
}

/// What a modal window stands against is dimmed, so all change when one comes or goes.
void TViewWindow::InvalidateAllUnderRoot() {
	Root()->InvalidateTree();
}

void TViewWindow::Invalidate() {
	mStripsAreDirty = true;
	if (mMainFrame)
		mMainFrame->Invalidate();
}

void TViewWindow::OnUiScaleChanged() {
	if (mMainFrame)
		mMainFrame->NotifyUiScaleChanged();
}

void TViewWindow::OnClipboardChanged() {
	if (mMainFrame)
		mMainFrame->NotifyClipboardChanged();
}

void TViewWindow::OnHardwareChanged() {
	if (mMainFrame)
		mMainFrame->OnHardwareChanged();
}

void TViewWindow::OnCancelCommand() {
	if (mMainFrame)
		mMainFrame->HandleCancelCommand();
}

// The keyboard and the application

void TViewWindow::OnBecameKey(TWindow* previous) {
	const TKeptAlive kept(this);
	if (!mMainFrame)
		return;
	mKeyboardHandler->OnBecameKey();
	mMainFrame->OnBecameKeyWindow(previous);
}

void TViewWindow::OnLostKey(TWindow* next) {
	const TKeptAlive kept(this);
	ClosePendingManeuver();
	if (!mMainFrame)
		return;
	mMainFrame->OnLostKeyWindow(next);
	if (!(next && next->Kind() == kPopupWindow && next->Root() == Root()))
		Root()->ClosePopups();
	if (!mMainFrame)
		return;
	mMouseHandler->Reset();
	mKeyboardHandler->Reset();
	mKeysOfHost.reset();
}

void TViewWindow::OnApplicationActivated() {
	if (mMainFrame)
		mMainFrame->OnApplicationActivated();
}

void TViewWindow::OnApplicationDeactivated() {
	const TKeptAlive kept(this);
	mManeuverOpener = TManeuverOpener::kNone;
	if (TDocumentRoot* root = DocumentRoot(); root && root->IsActionOpen())
		root->EndAction();
	ClosePopups();
	if (mMouseHandler)
		mMouseHandler->Reset();
	if (mMainFrame)
		mMainFrame->CloseChildWindows();
}

void TViewWindow::OnClosing() {
	ClosePendingManeuver();
	if (mMouseHandler)
		mMouseHandler->Reset();
}

bool TViewWindow::AcceptsTextInput() const {
	const TFocusRootView* focused = mMainFrame ? mMainFrame->FocusedView() : nullptr;
	return !focused || !focused->IsEditingText();
}

TRectT<int> TViewWindow::TextInputRect() const {
	const TFocusRootView* focused = mMainFrame ? mMainFrame->FocusedView() : nullptr;
	return focused ? focused->TextInputRect() : TRectT<int>{};
}

void TViewWindow::InsertText(const TString& text) {
	if (AcceptsTextInput() || BlockingWindow())
		return;
	const TPtr<TFocusRootView> focused = mMainFrame->FocusedView();
	const TDocumentRoot::TActionGuard action(DocumentRoot());
	focused->InsertInputText(text);
}

int TViewWindow::KeyModifiers() const {
	if (IsKey() && mKeyboardHandler)
		return mKeyboardHandler->Modifiers();
	TPlatform* platform = TPlatform::Instance();
	return platform ? platform->Keyboard().Modifiers() : 0;
}

// Gestures: each is one step of the document

TDocumentRoot* TViewWindow::DocumentRoot() const {
	if (mDocument)
		return mDocument.Get();
	TWindow* parent = Parent();
	const TViewWindow* views = parent ? parent->AsViewWindow() : nullptr;
	return views ? views->DocumentRoot() : nullptr;
}

void TViewWindow::SetDocument(TDocumentRoot* root) {
	mDocument = root;
}

// Files of other programs

TFileDropTarget* TViewWindow::DropTarget() {
	return IsOpen() && !BlockingWindow() ? dynamic_cast<TFileDropTarget*>(mMainFrame.Get()) : nullptr;
}

bool TViewWindow::OnGlueFilesDragged(TPointT<int> /*point*/, const TList<TString>& paths) {
	const TFileDropTarget* target = DropTarget();
	return target && target->AcceptsFiles(paths);
}

void TViewWindow::OnGlueFilesDropped(TPointT<int> /*point*/, const TList<TString>& paths) {
	const TPtr<TCommand> command(new TTakeFilesCommand(this, paths));
	TThreadCommunicator::Instance()->Post(kMainThread, command.Get());
}

/// Menus that stand open show what is about to go.
void TViewWindow::TakeFiles(const TList<TString>& paths) {
	const TKeptAlive kept(this);
	Root()->ClosePopups();
	const TDocumentRoot::TActionGuard action(DocumentRoot());
	if (TFileDropTarget* target = DropTarget())
		target->OnFilesDropped(paths);
}

void TViewWindow::CloseWithUndoStep() {
	const TDocumentRoot::TActionGuard action(DocumentRoot());
	Close();
}

void TViewWindow::BeginManeuver(TDocumentRoot* root, TManeuverOpener opener) {
	mManeuverOpener = opener;
	if (root)
		root->BeginAction();
}

void TViewWindow::EndManeuver(TDocumentRoot* root) {
	mManeuverOpener = TManeuverOpener::kNone;
	if (root && root->IsActionOpen())
		root->EndAction();
}

void TViewWindow::ClosePendingManeuver() {
	TDocumentRoot* root = DocumentRoot();
	if (mManeuverOpener == TManeuverOpener::kNone || !root)
		return;
	mManeuverOpener = TManeuverOpener::kNone;
	const TPtr<TCommand> command(new TViewWindowClosePendingManeuverCommand(root));
	TThreadCommunicator::Instance()->Post(kMainThread, command.Get());
}

void TViewWindow::HandleMouseEvent(const TMouseEvent& event) {
	if (!mMouseHandler)
		return;
	const TKeptAlive kept(this);
	const TWeakPtr<TDocumentRoot> root = DocumentRoot();
	const TPtr<TMouseEventHandler> handler = mMouseHandler;
	const bool wasHeld = handler->IsAnyButtonHeld();
	const bool isWheel = IsMouseWheel(event.Type());
	if (root && ((event.IsFreshPress() && !root->IsActionOpen()) || (isWheel && !wasHeld)))
		BeginManeuver(root.Get(), TManeuverOpener::kMouse);
	handler->HandleMouseEvent(event);
	if (!root || !IsOpen() || mManeuverOpener == TManeuverOpener::kKeyboard)
		return;
	const bool isLastRelease = IsMouseRelease(event.Type()) && !event.IsRepeat() && !handler->IsAnyButtonHeld();
	if (isLastRelease || (isWheel && !handler->IsAnyButtonHeld()))
		EndManeuver(root.Get());
}

void TViewWindow::HandleForeignMouseEvent(const TMouseEvent& event) {
	if (mMouseHandler)
		mMouseHandler->HandleForeignMouseEvent(event);
}

void TViewWindow::HandleKeyboardEvent(const TKeyboardEvent& event) {
	if (!mKeyboardHandler)
		return;
	const TKeptAlive kept(this);
	const TWeakPtr<TDocumentRoot> root = DocumentRoot();
	const TPtr<TKeyboardEventHandler> handler = mKeyboardHandler;
	if (root && !event.IsRelease() && !root->IsActionOpen())
		BeginManeuver(root.Get(), TManeuverOpener::kKeyboard);
	const bool isUsed = handler->HandleKeyboardEvent(event);
	if (!IsOpen())
		return;
	if (!isUsed)
		PassToHost(event);
	if (root && event.IsRelease() && !event.IsRepeat() && mManeuverOpener != TManeuverOpener::kMouse)
		EndManeuver(root.Get());
}

/// A release goes where the press went.
void TViewWindow::PassToHost(const TKeyboardEvent& event) {
	const auto code = static_cast<std::size_t>(std::max(event.Key().Code(), 0));
	if (!event.GlueEvent() || event.IsRepeat() || (event.IsRelease() && !mKeysOfHost[code]))
		return;
	mKeysOfHost[code] = !event.IsRelease();
	Glue()->PassKeyToHost(*event.GlueEvent());
}

// Frames

bool TViewWindow::IsDocumentBusy() const {
	const TDocumentRoot* root = DocumentRoot();
	return root && root->IsLoading();
}

float TViewWindow::Opacity() {
	const TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	return BlockingWindow() && (!prefs || prefs->mVisualEffects.Get()) ? kBlockedOpacity : 1.0f;
}

const TList<TRectT<int>>& TViewWindow::DrawFrame() {
	mDrawnRects.Clear();
	if (!mMainFrame || IsDocumentBusy() || !EnsureSurface())
		return mDrawnRects;
	const TPtr<TMainFrameView> mainFrame = mMainFrame;
	mainFrame->SetVisible(true);
	mainFrame->RunFrameWalk();
	if (mainFrame != mMainFrame || !Surface()) // a handler was there
		return mDrawnRects;
	mainFrame->TakeDirtyRects(mDrawnRects);
	const TPtr<TSurface> surface = Surface();
	try {
		Draw(*surface);
	} catch (const TReadableException&) {
		OnDrawingFailed();
		mDrawnRects.Clear();
	}
	return mDrawnRects;
}

void TViewWindow::Draw(TSurface& surface) {
	if (mDrawnRects.IsEmpty() && !mStripsAreDirty)
		return;
	const float opacity = Opacity();
	for (const TRectT<int>& rect : mDrawnRects)
		DrawRect(surface, rect, opacity);
	if (mStripsAreDirty)
		DrawStrips(surface);
	mStripsAreDirty = false;
}

void TViewWindow::DrawRect(TSurface& surface, const TRectT<int>& rect, float opacity) {
	const TClipGuard clip(surface, rect, TClipGuard::kReplace);
	mMainFrame->DrawTree(surface);
	if (opacity < 1.0f)
		surface.FillRect(rect, TColor{}, 1.0f - opacity);
}

/// What the window shows beside its main frame.
void TViewWindow::DrawStrips(TSurface& surface) {
	const TPointT<int> room = Unscaled(surface.Size(), surface.Scale());
	const TPointT<int> frame = mMainFrame->Size();
	const TSkinColors* colors = TSkinColors::Instance();
	const TColor back = colors ? colors->MainColor(TSkinColors::kMainBack) : TColor{};
	const TRectT<int> strips[] = {
	    {frame.mX, 0, room.mX - frame.mX, room.mY}, {0, frame.mY, std::min(frame.mX, room.mX), room.mY - frame.mY}};
	for (const TRectT<int>& strip : strips)
		if (!strip.IsEmpty()) {
			surface.FillRect(strip, back, 1.0f);
			mDrawnRects.Append(strip);
		}
}
