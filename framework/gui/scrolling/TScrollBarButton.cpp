// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TScrollBarButton.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/scrolling/TScrollBar.h"
#include "framework/gui/windows/TCursor.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kPage = 1.0f;    // of the window, for a click beside the thumb
constexpr int kLargestGrip = 10; // at the ends of a thumb that zooms

int Rounded(double value) {
	return static_cast<int>(std::lround(value));
}

} // namespace

int TScrollBarButtonBase::MinimumLength() const {
	return TSkin::Instance() ? TSkin::Instance()->MinimumThumbLength() : kThumbMinimum;
}

void TScrollBarButtonBase::SetBar(TScrollBarBase* bar) {
	mBar = bar;
}

int TScrollBarButtonBase::TrackLength() const {
	return mBar && mBar->Orientation() == TScrollBarBase::kHorizontal ? Width() : Height();
}

int TScrollBarButtonBase::Along(int x, int y) const {
	const bool isHorizontal = mBar && mBar->Orientation() == TScrollBarBase::kHorizontal;
	return isHorizontal ? x - AbsolutePosition().mX : y - AbsolutePosition().mY;
}

// A range that is no larger than the window fills the track, and then there is nowhere to go.
TScrollBarButtonBase::TThumb TScrollBarButtonBase::Thumb() const {
	const int track = TrackLength();
	if (!mBar || !mBar->CanScroll() || mBar->Range() <= 0)
		return {0, track};
	const double range = mBar->Range();
	const double window = std::max(mBar->Window(), 0);
	const int length = std::clamp(Rounded(window / range * track), std::min(MinimumLength(), track), track);
	const int start = Rounded(mBar->Position() * (track - length) / (range - window));
	return {std::clamp(start, 0, track - length), length};
}

float TScrollBarButtonBase::UnitsPerPixel() const {
	const int track = TrackLength();
	return mBar && track > 0 ? static_cast<float>(mBar->Range()) / static_cast<float>(track) : 0.0f;
}

void TScrollBarButtonBase::Draw(TSurface& port) {
	if (!mBar)
		return;
	const bool isVertical = mBar->Orientation() == TScrollBarBase::kVertical;
	const TThumb thumb = Thumb();
	TRectT<int> rect = AbsoluteRect();
	if (isVertical)
		rect = {rect.mLeft, rect.mTop + thumb.mStart, rect.mWidth, thumb.mLength};
	else
		rect = {rect.mLeft + thumb.mStart, rect.mTop, thumb.mLength, rect.mHeight};
	TSkin::Instance()->DrawScrollBarThumb(
	    port, rect, isVertical ? TSkin::kVertical : TSkin::kHorizontal, mHighlighted || mDragging, IsEnabled());
}

// Mouse

void TScrollBarButtonBase::SetHighlighted(bool highlighted) {
	if (mHighlighted == highlighted)
		return;
	mHighlighted = highlighted;
	Invalidate();
}

void TScrollBarButtonBase::OnMouseEnter(int x, int y, int modifiers) {
	OnMouseHover(x, y, modifiers);
}

void TScrollBarButtonBase::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	SetHighlighted(false);
}

bool TScrollBarButtonBase::OnMouseHover(int x, int y, int /*modifiers*/) {
	SetHighlighted(!HasMouseCapture() && Thumb().Contains(Along(x, y)));
	return false;
}

bool TScrollBarButtonBase::OnLeftMouseDown(int x, int y, int /*modifiers*/) {
	if (!IsEnabled() || !IsCapturing(this))
		return false;
	const int along = Along(x, y);
	const TThumb thumb = Thumb();
	mDragging = thumb.Contains(along);
	mGrabOffset = along - thumb.mStart;
	mGrabEndOffset = thumb.mStart + thumb.mLength - along;
	Invalidate();
	return true;
}

bool TScrollBarButtonBase::OnMouseDrag(int x, int y, int /*modifiers*/) {
	if (mDragging && mBar)
		mBar->SetPosition(Rounded(double{UnitsPerPixel()} * (Along(x, y) - mGrabOffset)));
	return true;
}

bool TScrollBarButtonBase::OnLeftMouseUp(int x, int y, int modifiers) {
	if (!IsCapturing(this))
		return false;
	if (!(modifiers & kMouseAutoRepeat) && !mDragging && ContainsPoint(x, y))
		PageTowards(Along(x, y));
	return true;
}

void TScrollBarButtonBase::PageTowards(int along) {
	const TThumb thumb = Thumb();
	if (!mBar || thumb.Contains(along))
		return;
	const int page = Rounded(static_cast<double>(kPage) * mBar->Window());
	mBar->Step(along < thumb.mStart ? -page : page);
}

void TScrollBarButtonBase::OnMouseCaptureReleased(int x, int y, int /*modifiers*/) {
	SetDragging(false);
	SetHighlighted(ContainsPoint(x, y) && Thumb().Contains(Along(x, y)));
}

void TScrollBarButtonBase::SetDragging(bool dragging) {
	if (mDragging == dragging)
		return;
	mDragging = dragging;
	Invalidate();
}

// Zoom

TZoomableScrollBar* TZoomableScrollBarButton::ZoomableBar() const {
	return static_cast<TZoomableScrollBar*>(Bar());
}

int TZoomableScrollBarButton::ModeAt(int along) const {
	const TThumb thumb = Thumb();
	if (!thumb.Contains(along))
		return kNoDrag;
	const int grip = std::min(thumb.mLength / 3, kLargestGrip);
	if (along < thumb.mStart + grip)
		return kMoveStart;
	return along >= thumb.mStart + thumb.mLength - grip ? kMoveEnd : kMoveThumb;
}

bool TZoomableScrollBarButton::OnMouseHover(int x, int y, int modifiers) {
	const int mode = ModeAt(Along(x, y));
	const bool isVertical = Bar() && Bar()->Orientation() == TScrollBarBase::kVertical;
	if (mode == kMoveStart || mode == kMoveEnd)
		SetCursor(isVertical ? kResizeVerticalCursor : kResizeHorizontalCursor);
	else
		SetCursor(kInheritCursor);
	return TScrollBarButtonBase::OnMouseHover(x, y, modifiers);
}

bool TZoomableScrollBarButton::OnLeftMouseDown(int x, int y, int modifiers) {
	mDragMode = ModeAt(Along(x, y));
	return TScrollBarButtonBase::OnLeftMouseDown(x, y, modifiers);
}

bool TZoomableScrollBarButton::OnLeftDoubleClick(int x, int y, int modifiers) {
	if (!ZoomableBar() || !Thumb().Contains(Along(x, y)))
		return OnLeftMouseDown(x, y, modifiers);
	ZoomableBar()->SetPositionAndWindow(0, ZoomableBar()->Range());
	return true;
}

bool TZoomableScrollBarButton::OnMouseDrag(int x, int y, int modifiers) {
	TZoomableScrollBar* bar = ZoomableBar();
	if (!bar || mDragMode == kNoDrag || mDragMode == kMoveThumb)
		return TScrollBarButtonBase::OnMouseDrag(x, y, modifiers);
	const int along = Along(x, y);
	const double units = UnitsPerPixel();
	if (mDragMode == kMoveEnd)
		bar->SetWindow(Rounded((along + mGrabEndOffset - Thumb().mStart) * units));
	else {
		const int end = bar->Position() + bar->Window();
		const int start = std::clamp(Rounded((along - GrabOffset()) * units), 0, std::max(end - 1, 0));
		bar->SetPositionAndWindow(start, end - start);
	}
	return true;
}

void TZoomableScrollBarButton::OnMouseCaptureReleased(int x, int y, int modifiers) {
	mDragMode = kNoDrag;
	TScrollBarButtonBase::OnMouseCaptureReleased(x, y, modifiers);
}
