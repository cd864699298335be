// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TStopwatch.h"

class TMainFrameView;
class TView;

/// Decides when a tool tip comes, changes and goes: the first after the pointer has rested for a while, the next ones
/// at once, as long as the pause between two is short. Main thread.
class TToolTipTracker {
public:
	/// After each event of the mouse, which is at the point.
	void OnMouseEvent(TMainFrameView& mainFrame, TPointT<int> point);
	/// At the begin of each frame while the window is shown.
	void OnFrame(TMainFrameView& mainFrame, TPointT<int> point);

private:
	void Update(TMainFrameView& mainFrame, TPointT<int> point, bool fromMouse);
	bool IsDue() const;
	void ShowIfDue(TView& view);

	bool mHasBeenSeen = false;
	TStopwatch mSinceActivity;
	TStopwatch mSinceSeen;
};
