// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/events/TGuiObject.h"
#include "framework/gui/windows/TMouseEvent.h"

#include <cstdint>

class TDragContent;
class TKeyboardKey;
class TString;
class TView;

/// Whether a view handles an event before its children or after them; the same for drawing.
enum TOrder : int32_t { kChildrenFirst = 0, kSelfFirst = 1 };

/// The part of a view that receives events. Positions are in logical pixels of the window, modifiers are those of
/// TMouseModifiers; an operation that returns true has used the event up. Main thread.
class TGuiEventTarget : public TGuiObject {
public:
	virtual TView* AsView() noexcept { return nullptr; }

	// Routing

	/// type: TMouseEventType.
	virtual bool HandleMouseEvent(int x, int y, int type, int modifiers);

	virtual void UpdateMouseInside(int /*x*/, int /*y*/, int /*modifiers*/) {}

	virtual bool HandleKeyboardEvent(const TKeyboardKey& key, bool isRelease, bool isRepeat);
	/// TKeyModifiers.
	virtual void SetKeyModifiers(int modifiers);

	virtual bool HitTest(int /*x*/, int /*y*/) { return true; }

	virtual bool WantsMouseCapture(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual void OnMouseCaptureReleased(int /*x*/, int /*y*/, int /*modifiers*/) {}

	virtual void OnMouseCaptureTaken(int /*x*/, int /*y*/, int /*modifiers*/) {}

	// Drag and drop; mode: TDropMode

	virtual bool CanAcceptDrop(int /*x*/, int /*y*/, TDragContent& /*content*/, int /*mode*/) { return false; }

	/// Shown while the content is over this target; empty for the hint that names the keys.
	virtual TString DropHint(int x, int y, TDragContent& content, int mode);

	virtual void OnDrop(int /*x*/, int /*y*/, TDragContent& /*content*/, int /*mode*/) {}

	virtual void OnDragEnter(int /*x*/, int /*y*/, TDragContent& /*content*/) {}

	virtual void OnDragLeave(int /*x*/, int /*y*/, TDragContent& /*content*/) {}

	virtual void OnDragOver(int /*x*/, int /*y*/, TDragContent& /*content*/) {}

	/// On the source.
	virtual void OnDragFinished(TDragContent& /*content*/, int /*mode*/) {}

	virtual void OnDragCancelled(TDragContent& /*content*/) {}

	// Mouse

	virtual bool OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnRightMouseDown(int x, int y, int modifiers) { return OnLeftMouseDown(x, y, modifiers); }

	virtual bool OnMiddleMouseDown(int x, int y, int modifiers) { return OnLeftMouseDown(x, y, modifiers); }

	virtual bool OnLeftMouseUp(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnRightMouseUp(int x, int y, int modifiers) { return OnLeftMouseUp(x, y, modifiers); }

	virtual bool OnMiddleMouseUp(int x, int y, int modifiers) { return OnLeftMouseUp(x, y, modifiers); }

	virtual bool OnLeftDoubleClick(int x, int y, int modifiers) { return OnLeftMouseDown(x, y, modifiers); }

	virtual bool OnRightDoubleClick(int x, int y, int modifiers) { return OnRightMouseDown(x, y, modifiers); }

	virtual bool OnMiddleDoubleClick(int x, int y, int modifiers) { return OnMiddleMouseDown(x, y, modifiers); }

	/// The target that has the capture, instead of OnMouseHover.
	virtual bool OnMouseDrag(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnMouseHover(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual void OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {}

	virtual void OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {}

	virtual bool OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnWheelLeft(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	virtual bool OnWheelRight(int /*x*/, int /*y*/, int /*modifiers*/) { return false; }

	// Keys

	virtual bool HandleKey(const TKeyboardKey& /*key*/, bool /*isRelease*/, bool /*isRepeat*/) { return false; }

	/// TKeyModifiers.
	virtual void OnKeyModifiersChanged(int /*modifiers*/) {}

	// The capture: at most one in the process

	static bool HasMouseCapture() noexcept { return CapturedTarget() != nullptr; }

	static bool IsCapturing(const TGuiEventTarget* target) noexcept { return target && CapturedTarget() == target; }

	static TGuiEventTarget* CapturedTarget() noexcept { return sCapturedTarget.Get(); }

	static void TakeMouseCapture(TGuiEventTarget* target, int x, int y, int modifiers);
	/// Ignored unless the target has it. The operation called last may take it again.
	static void ReleaseMouseCapture(TGuiEventTarget* target, int x, int y, int modifiers);

	// The drag: at most one in the process

	/// For who has the capture, from OnMouseDrag: whether the mouse has gone far enough, or been held long enough.
	static bool ShouldBeginDrag(int x, int y);
	static void BeginDrag(const TPtr<TDragContent>& content);

	static bool IsDragging() noexcept { return static_cast<bool>(sDragContent); }

	static TDragContent* CurrentDragContent() noexcept { return sDragContent.Get(); }

	static void CancelDrag();
	/// Gives the content to the target and ends the drag.
	static void PerformDrop(TGuiEventTarget& target, int x, int y, int mode);

	int KeyModifiers() const noexcept { return mKeyModifiers; }

	TPointT<int> MouseDownPoint() const noexcept { return mMouseDownPoint; }

	TPointT<int> MousePoint() const noexcept { return mMousePoint; }

	TPointT<int> LastButtonPoint() const noexcept { return mLastButtonPoint; }

	int EventOrder() const noexcept { return mEventOrder; }

	/// TOrder.
	void SetEventOrder(int order) noexcept { mEventOrder = order; }

protected:
	/// What this target itself does with a mouse event; children are the business of TView.
	bool DispatchMouseEvent(int x, int y, int type, int modifiers);

	static bool DispatchMouseEventOf(TGuiEventTarget& target, int x, int y, int type, int modifiers) {
		return target.DispatchMouseEvent(x, y, type, modifiers);
	}

private:
	bool DispatchToCaptured(TGuiEventTarget& captured, int x, int y, int type, int modifiers);
	bool CallMouseOperation(int x, int y, int type, int modifiers);
	bool CallWheelOperation(int x, int y, int type, int modifiers);

	static TWeakPtr<TGuiEventTarget> sCapturedTarget;
	static TPtr<TDragContent> sDragContent;

	int mKeyModifiers = 0;
	TPointT<int> mMouseDownPoint;  // where the capture was taken
	TPointT<int> mMousePoint;      // of the last event routed here
	TPointT<int> mLastButtonPoint; // of the last press or double click routed here
	TStopwatch mCaptureStopwatch;
	int mEventOrder = kSelfFirst;
};
