// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TGuiEventTarget.h"

#include "framework/foundation/text/TString.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/windows/TCursor.h"

#include <cstdlib>
#include <utility>

namespace {

constexpr int kDragDistance = 5;     // logical pixels on either axis
constexpr float kDragDelay = 250.0f; // milliseconds of holding still

void ShowDefaultCursor() {
	if (TCursor* cursor = TCursor::Instance())
		cursor->SetCurrent(kDefaultCursor);
}

} // namespace

TWeakPtr<TGuiEventTarget> TGuiEventTarget::sCapturedTarget;
TPtr<TDragContent> TGuiEventTarget::sDragContent;

TString TGuiEventTarget::DropHint(int /*x*/, int /*y*/, TDragContent& /*content*/, int /*mode*/) {
	return {};
}

bool TGuiEventTarget::HandleMouseEvent(int x, int y, int type, int modifiers) {
	return DispatchMouseEvent(x, y, type, modifiers);
}

bool TGuiEventTarget::DispatchMouseEvent(int x, int y, int type, int modifiers) {
	const TKeptAlive kept(this);
	mMousePoint = {x, y};
	if (IsMousePress(type) || IsMouseDoubleClick(type)) {
		mLastButtonPoint = {x, y};
		if (!HasMouseCapture() && WantsMouseCapture(x, y, modifiers))
			TakeMouseCapture(this, x, y, modifiers);
	}
	const TPtr<TGuiEventTarget> captured = CapturedTarget();
	if (IsMouseWheel(type)) {
		if (captured && !IsDragging())
			return captured->CallWheelOperation(x, y, type, modifiers);
		return HitTest(x, y) && CallWheelOperation(x, y, type, modifiers);
	}
	if (IsDragging())
		return true;
	if (captured)
		return DispatchToCaptured(*captured, x, y, type, modifiers);
	return HitTest(x, y) && CallMouseOperation(x, y, type, modifiers);
}

bool TGuiEventTarget::DispatchToCaptured(TGuiEventTarget& captured, int x, int y, int type, int modifiers) {
	if (type == kMouseMove)
		captured.OnMouseDrag(x, y, modifiers);
	else
		captured.CallMouseOperation(x, y, type, modifiers);
	if (IsMouseRelease(type) && (modifiers & kMouseAutoRepeat) == 0)
		ReleaseMouseCapture(CapturedTarget(), x, y, modifiers);
	return true;
}

bool TGuiEventTarget::CallMouseOperation(int x, int y, int type, int modifiers) {
	switch (type) {
	case kMouseMove:
		return OnMouseHover(x, y, modifiers);
	case kLeftPress:
		return OnLeftMouseDown(x, y, modifiers);
	case kRightPress:
		return OnRightMouseDown(x, y, modifiers);
	case kMiddlePress:
		return OnMiddleMouseDown(x, y, modifiers);
	case kLeftRelease:
		return OnLeftMouseUp(x, y, modifiers);
	case kRightRelease:
		return OnRightMouseUp(x, y, modifiers);
	case kMiddleRelease:
		return OnMiddleMouseUp(x, y, modifiers);
	case kLeftDoubleClick:
		return OnLeftDoubleClick(x, y, modifiers);
	case kRightDoubleClick:
		return OnRightDoubleClick(x, y, modifiers);
	case kMiddleDoubleClick:
		return OnMiddleDoubleClick(x, y, modifiers);
	default:
		return false;
	}
}

bool TGuiEventTarget::CallWheelOperation(int x, int y, int type, int modifiers) {
	switch (type) {
	case kWheelUp:
		return OnWheelUp(x, y, modifiers);
	case kWheelDown:
		return OnWheelDown(x, y, modifiers);
	case kWheelLeft:
		return OnWheelLeft(x, y, modifiers);
	default:
		return OnWheelRight(x, y, modifiers);
	}
}

bool TGuiEventTarget::HandleKeyboardEvent(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	return HandleKey(key, isRelease, isRepeat);
}

void TGuiEventTarget::SetKeyModifiers(int modifiers) {
	if (mKeyModifiers == modifiers)
		return;
	mKeyModifiers = modifiers;
	OnKeyModifiersChanged(modifiers);
}

void TGuiEventTarget::TakeMouseCapture(TGuiEventTarget* target, int x, int y, int modifiers) {
	if (!target || IsCapturing(target))
		return;
	const TKeptAlive kept(target);
	ReleaseMouseCapture(CapturedTarget(), x, y, modifiers);
	sCapturedTarget = target;
	target->mMouseDownPoint = {x, y};
	target->mCaptureStopwatch.Restart();
	target->OnMouseCaptureTaken(x, y, modifiers);
}

void TGuiEventTarget::ReleaseMouseCapture(TGuiEventTarget* target, int x, int y, int modifiers) {
	if (!IsCapturing(target))
		return;
	const TKeptAlive kept(target);
	sCapturedTarget = nullptr;
	target->OnMouseCaptureReleased(x, y, modifiers);
}

bool TGuiEventTarget::ShouldBeginDrag(int x, int y) {
	const TGuiEventTarget* captured = CapturedTarget();
	if (!captured || IsDragging())
		return false;
	const TPointT<int> distance = TPointT<int>{x, y} - captured->mMouseDownPoint;
	return std::abs(distance.mX) >= kDragDistance || std::abs(distance.mY) >= kDragDistance ||
	       captured->mCaptureStopwatch.ElapsedMilliseconds() > kDragDelay;
}

void TGuiEventTarget::BeginDrag(const TPtr<TDragContent>& content) {
	if (IsDragging())
		CancelDrag();
	sDragContent = content;
}

void TGuiEventTarget::CancelDrag() {
	const TPtr<TDragContent> content = sDragContent;
	if (!content)
		return;
	TPointT<int> point;
	if (const TPtr<TGuiEventTarget> target = content->CurrentTarget()) {
		point = target->mMousePoint;
		target->OnDragLeave(point.mX, point.mY, *content);
	}
	if (const TPtr<TGuiEventTarget> source = content->Source()) {
		point = source->mMousePoint;
		source->OnDragCancelled(*content);
	}
	sDragContent = nullptr;
	ReleaseMouseCapture(CapturedTarget(), point.mX, point.mY, 0);
	ShowDefaultCursor();
}

void TGuiEventTarget::PerformDrop(TGuiEventTarget& target, int x, int y, int mode) {
	const TPtr<TDragContent> content = sDragContent;
	if (!content)
		return;
	const TKeptAlive kept(&target);
	target.mMousePoint = {x, y};
	target.OnDrop(x, y, *content, mode);
	sDragContent = nullptr;
	if (const TPtr<TGuiEventTarget> source = content->Source())
		source->OnDragFinished(*content, mode);
	ReleaseMouseCapture(CapturedTarget(), x, y, 0);
	ShowDefaultCursor();
}
