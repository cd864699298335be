// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TDragTracker.h"

#include "framework/foundation/text/TString.h"
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TToolTipPresenter.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TCursor.h"
#include "framework/gui/windows/TDesktop.h"
#include "platform/TPlatform.h"

#include <algorithm>

namespace {

constexpr int kImageMargin = 4; // of an image that stays inside its target

int ModeByKeys(const TDragContent& content) {
	TPlatform* platform = TPlatform::Instance();
	const int modifiers = platform ? platform->Keyboard().Modifiers() : 0;
	if ((modifiers & kCommandModifier) != 0 && content.CanCopy())
		return (modifiers & kShiftModifier) != 0 && content.CanClone() ? kDropClone : kDropCopy;
	return (modifiers & kOptionModifier) != 0 && content.CanCreateAlias() ? kDropCreateAlias : kDropMove;
}

void ShowCursorFor(int mode, bool isAccepted) {
	TCursor* cursor = TCursor::Instance();
	if (cursor)
		cursor->SetCurrent(isAccepted ? kCanDropCursor + mode : int{kCanNotDropCursor});
}

/// The modes besides moving and the keys for them; empty if there are none.
TString KeysHint(const TDragContent& content) {
	TList<TString> modes;
	if (content.CanCopy())
		modes.Append(TString::Format("%s to copy", "Command"));
	if (content.CanClone())
		modes.Append(TString::Format("%s/%s to clone", "Command", "Shift"));
	if (content.CanCreateAlias())
		modes.Append(TString::Format("%s to create aliases", "Option"));
	return modes.IsEmpty() ? TString()
	                       : TString("Hold down modifiers: ") + TString::Join(modes, ", ") + ", instead of moving.";
}

TView* TargetAt(TMainFrameView& frame, TPointT<int> point, TDragContent& content, int mode) {
	TGuiEventTarget* source = content.Source();
	TView* start = content.StaysInSourceView() ? (source ? source->AsView() : nullptr) : &frame;
	return start ? start->DropTargetAt(point.mX, point.mY, content, mode) : nullptr;
}

int KeptInside(int position, int length, int room) {
	return std::max(std::min(position, room - length - kImageMargin), kImageMargin);
}

} // namespace

TDragTracker::TPlace
TDragTracker::FollowMouse(TMainFrameView& mouseFrame, TPointT<int> position, const TDragContent& content) {
	TMainFrameView* frame = &mouseFrame;
	TPointT<int> point = position;
	const TDesktop* desktop = TDesktop::Instance();
	TWindow* under = desktop && !content.StaysInSourceView() ? desktop->WindowUnderPointer() : nullptr;
	TViewWindow* window = under ? under->AsViewWindow() : nullptr;
	if (window && window->MainFrame() && mouseFrame.Window()) {
		frame = window->MainFrame();
		point = window->ScreenToClient(mouseFrame.Window()->ClientToScreen(position));
	}
	mDragFrame = frame;
	return {frame, point};
}

void TDragTracker::Update(TMainFrameView& mouseFrame, TPointT<int> position) {
	const TPtr<TDragContent> content = TGuiEventTarget::CurrentDragContent();
	if (!content)
		return;
	const TPlace place = FollowMouse(mouseFrame, position, *content);
	const TPtr<TMainFrameView> kept = place.mpFrame;
	const int mode = ModeByKeys(*content);
	const TPtr<TView> target = TargetAt(*place.mpFrame, place.mPoint, *content, mode);
	ShowCursorFor(mode, static_cast<bool>(target));
	TrackTarget(target.Get(), place.mPoint, *content);
	if (TGuiEventTarget::CurrentDragContent() != content.Get()) // a target has ended it
		return;
	MoveImages(place, *content);
	ShowHint(place, target.Get(), *content, mode);
}

void TDragTracker::TrackTarget(TView* target, TPointT<int> point, TDragContent& content) {
	const TPtr<TGuiEventTarget> old = content.CurrentTarget();
	if (old == target) {
		if (target)
			target->OnDragOver(point.mX, point.mY, content);
		return;
	}
	if (target)
		target->OnDragEnter(point.mX, point.mY, content);
	if (old)
		old->OnDragLeave(point.mX, point.mY, content);
	content.SetCurrentTarget(target);
}

void TDragTracker::MoveImages(const TPlace& place, TDragContent& content) {
	TRectT<int> dirty;
	const TList<TDragImage>& images = content.Images();
	for (const TDragImage& image : images) {
		TView& view = *image.mpView;
		if (view.Parent() != place.mpFrame)
			place.mpFrame->AddChild(image.mpView);
		TPointT<int> position = place.mPoint - image.mOffset;
		if (image.mStaysInsideTarget && images.Count() == 1)
			position = {
			    KeptInside(position.mX, view.Width(), place.mpFrame->Width()),
			    KeptInside(position.mY, view.Height(), place.mpFrame->Height())};
		dirty = dirty.United(view.VisibleRect());
		view.MoveQuietly(position);
		dirty = dirty.United(view.VisibleRect());
	}
	place.mpFrame->AddDirtyRect(dirty);
}

void TDragTracker::ShowHint(const TPlace& place, TView* target, TDragContent& content, int mode) {
	TToolTipPresenter* presenter = TToolTipPresenter::Instance();
	if (!presenter)
		return;
	TString hint = target ? target->DropHint(place.mPoint.mX, place.mPoint.mY, content, mode) : TString();
	if (hint.IsEmpty())
		hint = KeysHint(content);
	mShowsHint = !hint.IsEmpty();
	if (mShowsHint)
		presenter->Show(target ? *target : *place.mpFrame, hint);
	else
		presenter->Close();
}

void TDragTracker::Wheel(TMainFrameView& mouseFrame, TPointT<int> position, int type, int modifiers) {
	const TPtr<TDragContent> content = TGuiEventTarget::CurrentDragContent();
	if (!content)
		return;
	const TPlace place = FollowMouse(mouseFrame, position, *content);
	const TPtr<TMainFrameView> kept = place.mpFrame;
	place.mpFrame->HandleMouseEvent(place.mPoint.mX, place.mPoint.mY, type, modifiers);
	MoveImages(place, *content);
}

void TDragTracker::Finish(TMainFrameView& mouseFrame, TPointT<int> position) {
	const TPtr<TDragContent> content = TGuiEventTarget::CurrentDragContent();
	if (!content)
		return;
	const TPlace place = FollowMouse(mouseFrame, position, *content);
	const int mode = ModeByKeys(*content);
	if (TView* target = TargetAt(*place.mpFrame, place.mPoint, *content, mode))
		TGuiEventTarget::PerformDrop(*target, place.mPoint.mX, place.mPoint.mY, mode);
	else
		TGuiEventTarget::CancelDrag();
}

void TDragTracker::Forget() {
	mDragFrame = nullptr;
	if (mShowsHint && TToolTipPresenter::Instance())
		TToolTipPresenter::Instance()->Close();
	mShowsHint = false;
}
