// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TToolTipTracker.h"

#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TToolTipPresenter.h"
#include "framework/gui/windows/TDesktop.h"
#include "framework/gui/windows/TWindow.h"

namespace {

constexpr float kRest = 750.0f;  // milliseconds before the first tip
constexpr float kPause = 250.0f; // between two tips, for the second to come at once

bool AreToolTipsWanted() {
	return TBaseViewsPrefs::Instance()->ShowTooltips().Get() && !TGuiEventTarget::IsDragging();
}

/// Whether the pointer is over the window, or over a tip of it, and the window is one that the user works with.
bool IsPointedAt(const TWindow& window) {
	const TDesktop* desktop = TDesktop::Instance();
	const TWindow* under = desktop ? desktop->WindowUnderPointer() : nullptr;
	if (under && under->Kind() == kToolTipWindow)
		under = under->Parent();
	if (under != &window)
		return false;
	const TWindow* worked = window.Kind() == kPopupWindow && window.Parent() ? window.Parent() : &window;
	return window.IsActive() || worked->IsActive();
}

} // namespace

void TToolTipTracker::OnMouseEvent(TMainFrameView& mainFrame, TPointT<int> point) {
	mSinceActivity.Restart();
	Update(mainFrame, point, true);
}

void TToolTipTracker::OnFrame(TMainFrameView& mainFrame, TPointT<int> point) {
	// While nothing is open and nothing due, there is nothing to decide.
	const TToolTipPresenter* presenter = TToolTipPresenter::Instance();
	if (presenter && (presenter->IsOpen() || IsDue()))
		Update(mainFrame, point, false);
}

bool TToolTipTracker::IsDue() const {
	return mSinceActivity.ElapsedMilliseconds() > kRest || (mHasBeenSeen && mSinceSeen.ElapsedMilliseconds() < kPause);
}

void TToolTipTracker::Update(TMainFrameView& mainFrame, TPointT<int> point, bool fromMouse) {
	TToolTipPresenter* presenter = TToolTipPresenter::Instance();
	if (!presenter)
		return;
	if (!AreToolTipsWanted()) {
		if (fromMouse && presenter->IsOpen() && !TGuiEventTarget::IsDragging())
			presenter->Close();
		return;
	}
	const TWindow* window = mainFrame.Window();
	if (!window || !IsPointedAt(*window))
		return;
	const bool isOpen = presenter->IsOpen();
	const TPtr<TView> view = mainFrame.ToolTipViewAt(point.mX, point.mY);
	if (!fromMouse && view && (!isOpen || !(view->ToolTipText() == presenter->Text())))
		ShowIfDue(*view);
	else if (isOpen && (fromMouse || !view) && !(view && view == presenter->Target() && !view->SuppressToolTip()))
		presenter->Close();
	if (!presenter->IsOpen())
		return;
	mSinceSeen.Restart();
	mHasBeenSeen = true;
}

void TToolTipTracker::ShowIfDue(TView& view) {
	if (IsDue() && !view.SuppressToolTip())
		TToolTipPresenter::Instance()->Show(view, view.ToolTipText());
}
