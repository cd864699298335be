// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TBitmapView.h"

TBitmapView::TBitmapView(const TPtr<TBitmap>& bitmap) : mBitmap(bitmap) {
	if (bitmap) {
		const TPointT<int> size = bitmap->Size();
		SetSize(size.mX, size.mY);
	}
}

void TBitmapView::SetBitmap(const TPtr<TBitmap>& bitmap) {
	if (mBitmap == bitmap)
		return;
	mBitmap = bitmap;
	OnBitmapChanged();
	Invalidate();
}

void TBitmapView::SetOpacity(float opacity) {
	if (mOpacity == opacity)
		return;
	mOpacity = opacity;
	Invalidate();
}

void TBitmapView::SetHorizontalAlign(int align) {
	if (mHorizontalAlign == align)
		return;
	mHorizontalAlign = align;
	Invalidate();
}

void TBitmapView::Draw(TSurface& port) {
	TBitmap* bitmap = CurrentBitmap();
	if (!bitmap)
		return;
	const TPointT<int> free = Size() - bitmap->Size();
	const TPointT<int> corner = AbsolutePosition();
	const int x = mHorizontalAlign == kLeft ? 0 : mHorizontalAlign == kRight ? free.mX : free.mX / 2;
	bitmap->DrawAt(port, {corner.mX + x, corner.mY + free.mY / 2}, mOpacity);
}

void TBitmapView::OnEnabledChanged() {
	Invalidate();
}

bool TBitmapView::HasAction() const {
	return mLeft.IsAnything() || mRight.IsAnything() || mMiddle.IsAnything();
}

bool TBitmapView::WantsMouseCapture(int x, int y, int modifiers) {
	return HasAction() && TControl::WantsMouseCapture(x, y, modifiers);
}

// The action may take the view away.
bool TBitmapView::Act(const TMouseButtonActions& button, bool isRelease, int x, int y, int modifiers) {
	const bool isRepeat = (modifiers & kMouseAutoRepeat) != 0;
	if (!IsEnabled() || (isRepeat && !mRepeat) || !ContainsPoint(x, y) || (isRelease && !IsCapturing(this)))
		return false;
	const TPtr<TBitmapView> keepAlive(this);
	const auto run = [&](const TMouseButtonActions& actions) {
		const TFunctionPtr<void>& action = isRelease ? actions.mUp : actions.mDown;
		if (actions.mCommand)
			actions.mCommand(isRelease, isRepeat);
		else if (action)
			action();
		return actions.mCommand || action;
	};
	return run(button) || (&button != &mLeft && run(mLeft)) || IsCapturing(this);
}

bool TBitmapView::OnLeftMouseDown(int x, int y, int modifiers) {
	return Act(mLeft, false, x, y, modifiers);
}

bool TBitmapView::OnRightMouseDown(int x, int y, int modifiers) {
	return Act(mRight, false, x, y, modifiers);
}

bool TBitmapView::OnMiddleMouseDown(int x, int y, int modifiers) {
	return Act(mMiddle, false, x, y, modifiers);
}

bool TBitmapView::OnLeftMouseUp(int x, int y, int modifiers) {
	return Act(mLeft, true, x, y, modifiers);
}

bool TBitmapView::OnRightMouseUp(int x, int y, int modifiers) {
	return Act(mRight, true, x, y, modifiers);
}

bool TBitmapView::OnMiddleMouseUp(int x, int y, int modifiers) {
	return Act(mMiddle, true, x, y, modifiers);
}

// Colours

TRecolorableBitmapView::TRecolorableBitmapView(const TPtr<TRecolorableBitmap>& bitmap) : TBitmapView(bitmap) {}

TRecolorableBitmap* TRecolorableBitmapView::RecolorableBitmap() const {
	return dynamic_cast<TRecolorableBitmap*>(Bitmap().Get());
}

void TRecolorableBitmapView::Recolor(const TColor& fore, const TColor& back) {
	if (mIsTinted && mFore == fore && mBack == back)
		return;
	mIsTinted = true;
	mFore = fore;
	mBack = back;
	Tint();
}

void TRecolorableBitmapView::Tint() {
	TRecolorableBitmap* bitmap = RecolorableBitmap();
	if (bitmap && mIsTinted)
		bitmap->SetColors(mFore, mBack);
	else if (bitmap)
		bitmap->ClearColors();
	if (mHighlightBitmap && mIsTinted)
		mHighlightBitmap->SetColors(mFore * mHighlightStrength, mBack);
	Invalidate();
}

void TRecolorableBitmapView::SetBitmapMode(int mode, const TPair<TColor, TColor>& colors) {
	if (mode != 0)
		return Recolor(colors.mFirst, colors.mSecond);
	mIsTinted = false;
	Tint();
}

void TRecolorableBitmapView::OnBitmapChanged() {
	Tint();
}

void TRecolorableBitmapView::SetHighlightBitmap(const TPtr<TRecolorableBitmap>& bitmap, float strength) {
	mHighlightBitmap = bitmap;
	mHighlightStrength = strength;
	Tint();
}

void TRecolorableBitmapView::ClearHighlightBitmap() {
	SetHighlightBitmap(nullptr);
}

TBitmap* TRecolorableBitmapView::CurrentBitmap() const {
	return mHighlighted && mHighlightBitmap && IsEnabled() ? mHighlightBitmap.Get() : TBitmapView::CurrentBitmap();
}

void TRecolorableBitmapView::SetHighlighted(bool highlighted) {
	if (mHighlighted == highlighted)
		return;
	mHighlighted = highlighted;
	Invalidate();
}

void TRecolorableBitmapView::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (IsEnabled())
		SetHighlighted(true);
}

void TRecolorableBitmapView::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	SetHighlighted(false);
}

void TRecolorableBitmapView::OnMouseCaptureTaken(int /*x*/, int /*y*/, int /*modifiers*/) {
	SetHighlighted(true);
}

void TRecolorableBitmapView::OnMouseCaptureReleased(int x, int y, int /*modifiers*/) {
	SetHighlighted(IsEnabled() && ContainsPoint(x, y));
}
