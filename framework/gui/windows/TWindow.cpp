// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TWindow.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"

#include <algorithm>
#include <atomic>

namespace {

constexpr int kFramesToRetry = 60;

std::atomic<int32_t> sLastId{0};

TPointT<int> AtLeast(TPointT<int> size, TPointT<int> minimum) {
	return {std::max(size.mX, minimum.mX), std::max(size.mY, minimum.mY)};
}

} // namespace

TWindow::TWindow(TWindow* parent, int32_t kind)
    : mParent(parent),
      mKind(kind),
      mUiScale(CurrentScale()),
      mId(++sLastId),
      mCanBecomeKey(kind != kToolTipWindow) {
	ObserveScaleSettings();
}

TWindow::~TWindow() {
	if (mGlue)
		mGlue->Close();
	if (TDesktop* desktop = TDesktop::Instance())
		desktop->OnWindowClosed(*this);
}

// Opening and closing

TWindowGlue& TWindow::OpenedGlue() {
	if (mGlue)
		return *mGlue;
	TPlatform* platform = TPlatform::Instance();
	if (!platform)
		throw TReadableException("There is no display to open a window on.");
	TWindow* parent = Parent();
	mGlue = platform->CreateWindow(*this, mKind, parent ? parent->Glue() : nullptr);
	mState = TState::kOpen;
	if (TDesktop* desktop = TDesktop::Instance())
		desktop->OnWindowOpened(*this);
	if (parent)
		parent->AddChild(this);
	return *mGlue;
}

void TWindow::Close() {
	if (!IsOpen())
		return;
	const TKeptAlive kept(this);
	CloseAll();
	if (!IsOpen())
		return;
	OnClosing();
	if (!IsOpen())
		return;
	mState = TState::kClosed;
	mGlue->Close();
	mSurface = nullptr;
	if (TDesktop* desktop = TDesktop::Instance())
		desktop->OnWindowClosed(*this);
	if (TWindow* parent = Parent())
		parent->RemoveChild(this);
}

void TWindow::CloseAll() {
	while (!mChildren.IsEmpty()) {
		const TPtr<TWindow> child = mChildren[mChildren.Count() - 1];
		child->Close();
		if (mChildren.IndexOf(child) >= 0) // it was closed by somebody else, and is on its way
			RemoveChild(child.Get());
	}
}

void TWindow::RequestClose() {
	if (!IsOpen())
		return;
	const TKeptAlive kept(this);
	const TDesktop* desktop = TDesktop::Instance();
	if (HidesOnClose())
		Hide();
	else if (desktop && desktop->MainWindow() == this && desktop->QuitAction())
		desktop->QuitAction()();
	else if (CanClose(false) && ShouldClose(false))
		Close();
}

bool TWindow::CanClose(bool force) {
	return CanCloseChildren(force);
}

bool TWindow::CanCloseChildren(bool force) {
	const TKeptAlive kept(this);
	for (int32_t index = mChildren.Count() - 1; index >= 0; index = std::min(index, mChildren.Count()) - 1) {
		const TPtr<TWindow> child = mChildren[index];
		if (child->HidesOnClose())
			child->Hide();
		else if (child->CanClose(force) && child->ShouldClose(true))
			child->Close();
		else
			return false;
	}
	return true;
}

// The tree

TWindow* TWindow::Root() noexcept {
	TWindow* root = this;
	while (TWindow* parent = root->Parent())
		root = parent;
	return root;
}

bool TWindow::IsBelow(const TWindow* other) const noexcept {
	const TWindow* window = Parent();
	while (window && window != other)
		window = window->Parent();
	return window != nullptr;
}

void TWindow::AddChild(const TPtr<TWindow>& window) {
	if (mChildren.IndexOf(window) >= 0)
		return;
	mChildren.Append(window);
	OnChildAdded(*window);
}

void TWindow::RemoveChild(TWindow* window) {
	const TPtr<TWindow> kept = window;
	const int32_t index = mChildren.IndexOf(kept);
	if (index < 0)
		return;
	mChildren.RemoveAt(index);
	OnChildRemoved(*window);
}

TWindow* TWindow::FindVisible(int32_t kind) const {
	for (int32_t index = mChildren.Count() - 1; index >= 0; --index) {
		TWindow* child = mChildren[index].Get();
		if (TWindow* below = child->FindVisible(kind))
			return below;
		if (child->Kind() == kind && child->IsVisible())
			return child;
	}
	return nullptr;
}

bool TWindow::ClosePopups() {
	const TKeptAlive kept(this);
	bool hasClosed = false;
	// The deepest first; each close changes the lists, so the search begins anew.
	while (TWindow* popup = PopupChild()) {
		popup->Close();
		hasClosed = true;
	}
	return hasClosed;
}

void TWindow::InvalidateTree() {
	Invalidate();
	for (const TPtr<TWindow>& child : mChildren)
		child->InvalidateTree();
}

TWindow* TWindow::ModalOrPopupChild() const {
	TWindow* modal = ModalChild();
	return modal ? modal : PopupChild();
}

TWindow* TWindow::BlockingWindow() {
	TWindow* modal = Root()->ModalChild();
	// What a modal window has opened for itself stands with it.
	for (TWindow* window = this; window; window = window->Parent()) {
		if (window == modal)
			return nullptr;
		if (window->Kind() == kModalDialogWindow)
			break;
	}
	return modal;
}

TWindow* TWindow::WithId(int32_t id) {
	const TDesktop* desktop = TDesktop::Instance();
	return desktop ? desktop->WindowWithId(id) : nullptr;
}

TWindow* TWindow::MainWindow() {
	const TDesktop* desktop = TDesktop::Instance();
	return desktop ? desktop->MainWindow() : nullptr;
}

void TWindow::SetKeyBindings(const TPtr<TKeyboardBindings>& bindings) {
	mKeyBindings = bindings;
}

// The system's window

bool TWindow::IsVisible() const {
	return IsOpen() && mGlue->IsVisible();
}

void TWindow::Hide() {
	if (IsOpen())
		mGlue->Hide();
}

void TWindow::Show(bool activate, bool front) {
	OpenedGlue().Show(activate && mCanBecomeKey, front);
}

TString TWindow::Title() const {
	return mGlue ? mGlue->Title() : TString();
}

void TWindow::SetTitle(const TString& title) {
	OpenedGlue().SetTitle(title);
}

TPointT<int> TWindow::Position() const {
	return mGlue ? mGlue->Position() : TPointT<int>{};
}

void TWindow::SetPosition(TPointT<int> position) {
	OpenedGlue().SetPosition(position);
}

TPointT<int> TWindow::ClientSize() const {
	return mGlue ? Unscaled(mGlue->ClientSize(), mUiScale) : TPointT<int>{};
}

void TWindow::SetClientSize(TPointT<int> size) {
	OpenedGlue().SetClientSize(Scaled(size, mUiScale));
}

void TWindow::SetClientRect(TPointT<int> position, TPointT<int> size) {
	OpenedGlue().SetClientRect(position, Scaled(size, mUiScale));
}

void TWindow::SetMinimumSize(TPointT<int> size) {
	mMinimumSize = size;
	OpenedGlue().SetMinimumSize(Scaled(size, mUiScale));
}

void TWindow::CenterInParent() {
	OpenedGlue().CenterInParent();
}

void TWindow::CenterOnScreen() {
	OpenedGlue().CenterOnScreen();
}

bool TWindow::IsResizable() const {
	return mGlue && mGlue->IsResizable();
}

void TWindow::SetResizable(bool resizable) {
	OpenedGlue().SetResizable(resizable);
}

bool TWindow::HasNativeDecorations() const {
	return mGlue && mGlue->HasNativeDecorations();
}

void TWindow::SetHasNativeDecorations(bool native) {
	OpenedGlue().SetHasNativeDecorations(native);
}

void TWindow::Minimize() {
	if (!IsOpen())
		return;
	OnBeforeMinimize();
	mGlue->Minimize();
}

void TWindow::Maximize() {
	if (!IsOpen())
		return;
	OnBeforeMaximize();
	mGlue->Maximize();
}

void TWindow::Restore() {
	if (IsOpen())
		mGlue->Restore();
}

bool TWindow::IsMinimized() const {
	return IsOpen() && mGlue->IsMinimized();
}

bool TWindow::IsMaximized() const {
	return IsOpen() && mGlue->IsMaximized();
}

bool TWindow::IsKey() const {
	return IsOpen() && mGlue->IsKey();
}

bool TWindow::IsActive() const {
	const TDesktop* desktop = TDesktop::Instance();
	return IsKey() ||
	       (desktop && desktop->IsApplicationActive() && const_cast<TWindow*>(this)->Root()->Kind() == kEmbeddedWindow);
}

bool TWindow::IsButtonDown(TMouseButton button) const {
	const TCursor* cursor = TCursor::Instance();
	if (!cursor)
		return false;
	switch (button) {
	case TMouseButton::kLeft:
		return cursor->IsLeftButtonDown() && !mLeftIsRight;
	case TMouseButton::kRight:
		return cursor->IsRightButtonDown() || (cursor->IsLeftButtonDown() && mLeftIsRight);
	default:
		return cursor->IsMiddleButtonDown();
	}
}

TPointT<int> TWindow::ScreenToClient(TPointT<int> point) const {
	return LogicalPoint(point - Position());
}

TPointT<int> TWindow::ClientToScreen(TPointT<int> point) const {
	return Scaled(point, mUiScale) + Position();
}

TRectT<int> TWindow::WorkArea() const {
	const TDesktop* desktop = TDesktop::Instance();
	return desktop ? desktop->WorkAreaAt(Position()) : TRectT<int>{};
}

// Scale

void TWindow::ObserveScaleSettings() {
	TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	if (!prefs)
		return;
	const TObserverCallback callback(this, &TWindow::OnScaleSettingChanged);
	prefs->mEnableHiDPIDisplay.AddObserver(callback);
	prefs->mUIScaleFactor.AddObserver(callback);
	prefs->mDisplayChanged.AddObserver(callback);
}

void TWindow::OnScaleSettingChanged(TObservable* /*observable*/, int32_t reason) {
	if (reason == kWillChange)
		mSizeBeforeScaleChange = ClientSize();
	else if (reason == kDidChange && IsOpen())
		ApplyUiScale();
}

bool TWindow::FollowsUiScale() const {
	return mKind != kEmbeddedWindow && mKind != kPopupWindow && mKind != kToolTipWindow;
}

void TWindow::ApplyUiScale() {
	const TKeptAlive kept(this);
	mUiScale = CurrentScale();
	if (TCursor* cursor = TCursor::Instance())
		cursor->ReloadPictures();
	DropSurface();
	mGlue->SetMinimumSize(Scaled(mMinimumSize, mUiScale));
	Invalidate();
	OnUiScaleChanged();
	if (!FollowsUiScale() || !IsOpen() || IsMinimized() || IsMaximized())
		return;
	TPointT<int> size = mSizeBeforeScaleChange;
	if (IsResizable()) {
		const TRectT<int> area = WorkArea();
		const TPointT<int> largest = Unscaled(TPointT<int>{area.mWidth, area.mHeight}, mUiScale);
		size = AtLeast({std::min(size.mX, largest.mX), std::min(size.mY, largest.mY)}, mMinimumSize);
	}
	SetClientSize(size);
}

// Frames

void TWindow::OnShown() {
	OnVisibilityChanged();
	Invalidate();
}

const TList<TRectT<int>>& TWindow::DrawFrame() {
	static const TList<TRectT<int>> sNothing;
	return sNothing;
}

void TWindow::RunFrame() {
	if (!IsVisible())
		return;
	const TKeptAlive kept(this);
	const TList<TRectT<int>>& drawn = DrawFrame();
	if (!drawn.IsEmpty() && IsVisible() && mSurface)
		Present(drawn);
	// A handler of one of them may close others; whoever takes a place meanwhile is drawn in the next frame.
	for (int32_t index = 0; index < mChildren.Count(); ++index)
		mChildren[index]->RunFrame();
}

bool TWindow::EnsureSurface() {
	TGraphPort* port = TGraphPort::Instance();
	if (mSurface || !port || !IsVisible() || (mFramesToRetry > 0 && --mFramesToRetry > 0))
		return static_cast<bool>(mSurface);
	try {
		mSurface = port->CreateSurface(Scaled(ClientSize(), mUiScale), 0, {this, &TWindow::DropSurface});
		mSurface->SetScale(mUiScale);
		Invalidate();
	} catch (const TReadableException&) {
		OnDrawingFailed();
	}
	return static_cast<bool>(mSurface);
}

void TWindow::OnDrawingFailed() {
	mFramesToRetry = kFramesToRetry;
	mSurface = nullptr;
}

void TWindow::Present(const TList<TRectT<int>>& rects) {
	TGraphPort* port = TGraphPort::Instance();
	mPresentedRects.Clear();
	for (const TRectT<int>& rect : rects)
		mPresentedRects.Append(Scaled(rect, mUiScale));
	port->InvalidateRects(*mGlue, {mPresentedRects.begin(), mPresentedRects.size()});
	const TPointT<int> size = mSurface->Size();
	port->Present(*mGlue, {0, 0}, *mSurface, {0, 0, size.mX, size.mY});
}
