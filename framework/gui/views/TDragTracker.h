// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"

class TDragContent;
class TMainFrameView;
class TString;
class TView;

/// Follows the mouse while something is dragged: what would accept it, and by which mode; the cursor, the images and
/// the hint say so. Positions are those of the window that has the mouse. Main thread.
class TDragTracker {
public:
	/// Each call names the frame of the window that has the mouse.
	void Update(TMainFrameView& mouseFrame, TPointT<int> position);
	void Wheel(TMainFrameView& mouseFrame, TPointT<int> position, int type, int modifiers);
	/// Drops where the mouse is, or cancels.
	void Finish(TMainFrameView& mouseFrame, TPointT<int> position);
	/// When no drag runs any more.
	void Forget();

private:
	struct TPlace {
		TMainFrameView* mpFrame;
		TPointT<int> mPoint; // in the frame's window
	};

	TPlace FollowMouse(TMainFrameView& mouseFrame, TPointT<int> position, const TDragContent& content);
	void TrackTarget(TView* target, TPointT<int> point, TDragContent& content);
	void MoveImages(const TPlace& place, TDragContent& content);
	void ShowHint(const TPlace& place, TView* target, TDragContent& content, int mode);

	TWeakPtr<TMainFrameView> mDragFrame; // over which the drag shows now
	bool mShowsHint = false;
};
