// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TControl.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/views/TFocusRootView.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"

#include <array>

namespace {

constexpr int kHintFont = 0;
constexpr int kPicturesGap = 2; // between the pictures of the modifiers and the key

struct TModifierPicture {
	int mModifier;
	const char* mFileName;
};

/// In the order in which they are shown.
constexpr std::array<TModifierPicture, 4> kModifierPictures{
    {{kCommandModifier, "Icons/KeyCommand_Apple.bmp"},
     {kShiftModifier, "Icons/KeyShift_Apple.bmp"},
     {kOptionModifier, "Icons/KeyAlt_Apple.bmp"},
     {kControlModifier, "Icons/KeyMeta_Apple.bmp"}}};

/// The pictures are shared by all controls and live as long as there is one.
struct TSharedPictures {
	int mUsers = 0;
	std::array<TPtr<TRecolorableBitmap>, kModifierPictures.size()> mPictures;

	TRecolorableBitmap& At(std::size_t index) {
		if (!mPictures[index])
			mPictures[index] = MakePtr<TRecolorableBitmap>(kModifierPictures[index].mFileName);
		return *mPictures[index];
	}
};

TSharedPictures& SharedPictures() {
	static TSharedPictures pictures;
	return pictures;
}

TKeyboardBindings* BindingsFor(const TView& view) {
	TMainFrameView* frame = view.MainFrame();
	TWindow* window = frame ? frame->Window() : nullptr;
	if (window && window->KeyBindings())
		return window->KeyBindings();
	return TWindow::MainWindow() ? TWindow::MainWindow()->KeyBindings() : nullptr;
}

} // namespace

TControl::TControl() {
	++SharedPictures().mUsers;
}

TControl::~TControl() {
	TSharedPictures& pictures = SharedPictures();
	if (--pictures.mUsers == 0)
		pictures.mPictures = {};
}

// Enabled or not

bool TControl::IsEnabled() const {
	return mEnabledGetter ? mEnabledGetter() : mEnabled;
}

void TControl::SetEnabled(bool enabled) {
	if (mEnabled == enabled)
		return;
	mEnabled = enabled;
	if (!mEnabledGetter)
		EnabledChanged();
}

void TControl::SetEnabledGetter(const TFunctionPtr<bool>& getter) {
	const bool wasEnabled = IsEnabled();
	if (mEnabledLink)
		RemoveLinkedValue(mEnabledLink.Get());
	mEnabledGetter = getter;
	if (getter) {
		mEnabledLink = new TConstLinkedViewValue<bool>(this, getter);
		mEnabledLink->AddObserver({this, &TControl::OnEnabledLinkChanged});
	}
	if (IsEnabled() != wasEnabled)
		EnabledChanged();
}

void TControl::OnEnabledLinkChanged(TObservable* /*link*/, int32_t reason) {
	if (reason == kDidChange)
		EnabledChanged();
}

void TControl::EnabledChanged() {
	Invalidate();
	OnEnabledChanged();
}

// Content

void TControl::SetContentView(const TPtr<TView>& view) {
	if (mContentView == view)
		return;
	if (mContentView)
		RemoveChild(mContentView.Get());
	mContentView = view;
	if (view) {
		AddChild(view);
		view->SetRect({0, 0, Width(), Height()});
	}
	OnContentViewChanged();
}

bool TControl::HasShownContentView() const {
	return mContentView && mContentView->IsVisible();
}

void TControl::OnResized() {
	if (mContentView)
		mContentView->SetRect({0, 0, Width(), Height()});
}

bool TControl::HitTest(int x, int y) {
	return (IsEnabled() || HasShownContentView()) && TView::HitTest(x, y);
}

bool TControl::WantsMouseCapture(int x, int y, int modifiers) {
	if (!IsEnabled() || (mContentView && mContentView->ContainsPoint(x, y)))
		return false;
	for (const TPtr<TView>& child : Children())
		if (child->ContainsPoint(x, y) &&
		    (dynamic_cast<TControl*>(child.Get()) || dynamic_cast<TFocusRootView*>(child.Get()) ||
		     child->WantsMouseCapture(x, y, modifiers)))
			return false;
	return ContainsPoint(x, y);
}

// The key in the tool tip

void TControl::SetKeyCommand(const TKeyCommand& command) {
	mKeyCommand = command;
}

void TControl::SetKey(const TKeyboardKey& key) {
	mKey = key;
}

TKeyboardKey TControl::ToolTipKey() const {
	const TKeyboardBindings* bindings = mKeyCommand ? BindingsFor(*this) : nullptr;
	return bindings ? bindings->KeyOfAction(mKeyCommand) : mKey;
}

TString TControl::ToolTipKeySuffix() const {
	const TKeyboardBindings* bindings = mKeyCommand ? BindingsFor(*this) : nullptr;
	const TString category = bindings ? bindings->CategoryOfAction(mKeyCommand) : TString();
	if (category.IsEmpty() || category == "Global")
		return TString();
	return TString::Format("- when '%s' is focused", category);
}

int TControl::ToolTipKeyWidth() const {
	const TKeyboardKey key = ToolTipKey();
	int width = 0;
	for (std::size_t i = 0; i < kModifierPictures.size(); ++i)
		if (key.Modifiers() & kModifierPictures[i].mModifier)
			width += SharedPictures().At(i).Size().mX;
	if (width > 0)
		width += kPicturesGap;
	return width + TextMetrics::Width(key.ToDisplayString(false), kHintFont);
}

int TControl::DrawToolTipKey(TSurface& port, const TRectT<int>& rect, const TColor& color) const {
	const TKeyboardKey key = ToolTipKey();
	int x = rect.mLeft;
	for (std::size_t i = 0; i < kModifierPictures.size(); ++i) {
		if (!(key.Modifiers() & kModifierPictures[i].mModifier))
			continue;
		TRecolorableBitmap& picture = SharedPictures().At(i);
		picture.SetColors(color, TColor{});
		picture.DrawAt(port, {x, rect.mTop + (rect.mHeight - picture.Size().mY) / 2}, 1.0f);
		x += picture.Size().mX;
	}
	if (x != rect.mLeft)
		x += kPicturesGap;
	const TString name = key.ToDisplayString(false);
	const int y = rect.mTop + (rect.mHeight - TextMetrics::Height(name, kHintFont)) / 2;
	return port.DrawText({x, y}, name, color, kHintFont).mX;
}
