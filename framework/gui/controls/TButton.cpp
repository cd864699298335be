// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TButton.h"

#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TMouseEventHandler.h"
#include "framework/gui/views/TViewWindow.h"

#include <algorithm>

namespace {

constexpr int kSidesAroundContent = 4;

} // namespace

TButton::TButton(const TString& label, int style) : mStyle(style) {
	SetLabel(label);
}

// Looks

void TButton::SetStyle(int style) {
	if (mStyle == style)
		return;
	mStyle = style;
	OnResized();
	Invalidate();
}

void TButton::SetGroupPosition(TButtonLook::TGroupPosition position) {
	mGroupPosition = position;
	Invalidate();
}

void TButton::SetLabel(const TString& label) {
	if (!HasSize())
		SetSize(TextMetrics::Width(label, mFont) + kSidesAroundContent, kDefaultHeight);
	if (mLabel == label)
		return;
	mLabel = label;
	Invalidate();
}

void TButton::SetFont(int font) {
	if (mFont == font)
		return;
	mFont = font;
	Invalidate();
}

void TButton::SetTextAlign(TTextAlign alignment) {
	mTextAlign = alignment;
	Invalidate();
}

void TButton::SetTextOffset(int offset) {
	mTextOffset = offset;
	Invalidate();
}

void TButton::SetLabelGap(int gap) {
	mLabelGap = gap;
	Invalidate();
}

void TButton::SetBitmapIsRight(bool isRight) {
	mBitmapIsRight = isRight;
	Invalidate();
}

void TButton::SetTextColor(std::optional<TColor> color) {
	if (mTextColor == color)
		return;
	mTextColor = color;
	Invalidate();
}

void TButton::SetBackColor(std::optional<TColor> color) {
	if (mBackColor == color)
		return;
	mBackColor = color;
	Invalidate();
}

void TButton::SetBitmaps(const TPtr<TBitmap>& up, const TPtr<TBitmap>& down, bool clearLabel) {
	mUpBitmap = up;
	mDownBitmap = down;
	mLabelIsHidden = clearLabel;
	if (up && down && !HasSize())
		SetSize(std::max(up->Size().mX, down->Size().mX) + kSidesAroundContent, kDefaultHeight);
	Invalidate();
}

int TButton::PictureWidth() const {
	return std::max(mUpBitmap ? mUpBitmap->Size().mX : 0, mDownBitmap ? mDownBitmap->Size().mX : 0);
}

TBitmap* TButton::CurrentBitmap() const {
	const TPtr<TBitmap>& wanted = IsPressedState() ? mDownBitmap : mUpBitmap;
	const TPtr<TBitmap>& other = IsPressedState() ? mUpBitmap : mDownBitmap;
	return wanted ? wanted.Get() : other.Get();
}

TButtonLook TButton::Look() const {
	TButtonLook look;
	look.mState = static_cast<TButtonLook::TState>(mState);
	if (mGroupPosition)
		look.mGroupPosition = *mGroupPosition;
	else if (mStyle >= kToolButton && mStyle <= kBottomPieceButton)
		look.mGroupPosition = static_cast<TButtonLook::TGroupPosition>(mStyle - 1);
	look.mIsEnabled = IsEnabled();
	look.mIsHeld = IsCapturing(this) && IsPressedState();
	look.mLabel = mLabelIsHidden ? TString() : mLabel;
	look.mFont = mFont;
	look.mTextAlign = mTextAlign;
	look.mTextOffset = mTextOffset;
	look.mpBitmap = CurrentBitmap();
	look.mIconIsRight = mBitmapIsRight;
	look.mLabelGap = mLabelGap;
	look.mTextColor = mTextColor;
	return look;
}

void TButton::Draw(TSurface& port) {
	TSkin& skin = *TSkin::Instance();
	const TRectT<int> rect = AbsoluteRect();
	const TButtonLook look = Look();
	switch (mStyle) {
	case kRoundButton:
		return Width() == Height() ? skin.DrawRoundButton(port, rect, look) : skin.DrawButton(port, rect, look);
	case kBitmapButton:
		return skin.DrawBitmapButton(port, rect, look);
	case kListEntryButton:
		return skin.DrawListEntryButton(port, rect, look);
	case kMenuButton:
		return skin.DrawMenuButton(port, rect, look);
	case kScrollBarButton:
		return skin.DrawScrollBarButton(port, rect, look);
	default:
		return mBackColor ? skin.DrawColoredButton(port, rect, look, *mBackColor) : skin.DrawButton(port, rect, look);
	}
}

// A content in a row of a list or a menu covers the lines above and below it.
void TButton::OnResized() {
	if (!ContentView())
		return;
	if (mStyle == kListEntryButton || mStyle == kMenuButton)
		ContentView()->SetRect({0, -1, Width(), Height() + 2});
	else
		TControl::OnResized();
}

// States

void TButton::SetState(int state) {
	if (mState == state)
		return;
	mState = state;
	Invalidate();
}

void TButton::SetRestState(int state) {
	mRestState = state;
	SetState(state);
}

void TButton::OnEnabledChanged() {
	SetState(mRestState);
}

bool TButton::ContainsPoint(int x, int y) const {
	const TRectT<int> rect = AbsoluteRect();
	return IsShown() && TRectT<int>{rect.mLeft - 1, rect.mTop - 1, rect.mWidth + 2, rect.mHeight + 2}.Contains({x, y});
}

void TButton::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (IsEnabled() && !HasMouseCapture())
		SetState(HoverState());
}

void TButton::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	SetState(mRestState);
}

// Comes also where the mouse was over the button before that could be seen: it has just been shown, or enabled.
bool TButton::OnMouseHover(int x, int y, int modifiers) {
	if (IsMouseInside())
		OnMouseEnter(x, y, modifiers);
	return false;
}

void TButton::OnMouseCaptureTaken(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (mRestState != kButtonPressed)
		SetState(kButtonPressed);
}

void TButton::OnMouseCaptureReleased(int x, int y, int /*modifiers*/) {
	if (MainFrame())
		SetState(IsEnabled() && ContainsPoint(x, y) ? HoverState() : mRestState);
}

bool TButton::OnMouseDrag(int x, int y, int /*modifiers*/) {
	if (mRestState != kButtonPressed)
		SetState(ContainsPoint(x, y) ? kButtonPressed : mRestState);
	return true;
}

// Actions

void TButton::SetClickAction(const TFunctionPtr<void>& action) {
	mClickAction = action;
}

void TButton::SetSecondaryAction(const TFunctionPtr<void>& action) {
	mSecondaryAction = action;
}

void TButton::SetClickCommand(const TKeyCommand& command) {
	mClickCommand = command;
	SetKeyCommand(command);
}

void TButton::SetSecondaryCommand(const TKeyCommand& command) {
	mSecondaryCommand = command;
}

void TButton::SetRepeat(bool repeat) {
	mRepeat = repeat;
}

void TButton::SetRepeatImmediately(bool immediately) {
	mImmediateRepeat = immediately;
}

bool TButton::OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (!IsEnabled() || !IsCapturing(this))
		return false;
	TViewWindow* window = mRepeat && mImmediateRepeat && MainFrame() ? MainFrame()->ViewWindow() : nullptr;
	if (window && window->MouseHandler())
		window->MouseHandler()->RepeatImmediately();
	return true;
}

bool TButton::ActsOn(int x, int y, int modifiers) const {
	if (!IsEnabled() || !IsCapturing(this))
		return false;
	return modifiers & kMouseAutoRepeat ? mRepeat : ContainsPoint(x, y);
}

// The action may take the button away.
bool TButton::OnLeftMouseUp(int x, int y, int modifiers) {
	if (!ActsOn(x, y, modifiers))
		return false;
	const TPtr<TButton> keepAlive(this);
	if (mClickCommand)
		mClickCommand(false, (modifiers & kMouseAutoRepeat) != 0);
	else if (mClickAction)
		mClickAction();
	return true;
}

bool TButton::OnRightMouseUp(int x, int y, int modifiers) {
	if (!mSecondaryCommand && !mSecondaryAction)
		return OnLeftMouseUp(x, y, modifiers);
	if (!ActsOn(x, y, modifiers))
		return false;
	const TPtr<TButton> keepAlive(this);
	if (mSecondaryCommand)
		mSecondaryCommand(false, (modifiers & kMouseAutoRepeat) != 0);
	else
		mSecondaryAction();
	return true;
}
