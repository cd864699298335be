// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TKeyboardEventHandler.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TMouseEventHandler.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TKeyboardEvent.h"
#include "platform/TPlatform.h"

namespace {

constexpr float kRepeatDelay = 250.0f; // milliseconds
constexpr int kTicksToRepair = 60;     // of a difference that stays

TKeyFlags PlatformsKeys() {
	TPlatform* platform = TPlatform::Instance();
	return platform ? platform->Keyboard().HeldKeys() : TKeyFlags{};
}

} // namespace

TKeyboardEventHandler::TKeyboardEventHandler(TMainFrameView* mainFrame) : mMainFrame(mainFrame) {}

bool TKeyboardEventHandler::HandleKeyboardEvent(const TKeyboardEvent& event) {
	const TKeptAlive kept(this);
	const TKeyboardKey& key = event.Key();
	const TKeyState state = event.IsRelease() ? kKeyIsUp : kKeyIsDown;
	mKeyStates.SetState(key.Code(), state);
	const bool wasDragging = TGuiEventTarget::IsDragging();
	bool isUsed = true;
	if (wasDragging && key.Code() == kKeyEscape) {
		if (event.IsRelease())
			TGuiEventTarget::CancelDrag();
	} else
		isUsed = DispatchKey(key, event.IsRelease(), event.IsRepeat(), &event);
	mDispatchedStates.SetState(key.Code(), state);
	const TViewWindow* window = mMainFrame ? mMainFrame->ViewWindow() : nullptr;
	if (wasDragging && window && (key.IsModifierKey() || !TGuiEventTarget::IsDragging()))
		window->MouseHandler()->UpdateDrag();
	return isUsed;
}

bool TKeyboardEventHandler::DispatchKey(
    const TKeyboardKey& key, bool isRelease, bool isRepeat, const TKeyboardEvent* event) {
	const TPtr<TMainFrameView> mainFrame = mMainFrame.Get();
	TViewWindow* window = mainFrame ? mainFrame->ViewWindow() : nullptr;
	if (!window)
		return false;
	const TDocumentRoot::TActionGuard action(window->DocumentRoot());
	mKeyInFlight = key;
	mKeyInFlightState = isRelease ? kKeyIsUp : kKeyIsDown;
	if (!isRepeat)
		UpdateRepeat(true);
	if (key.IsModifierKey() && !isRepeat)
		mainFrame->SetKeyModifiers(key.Modifiers());
	const bool isUsed = !window->BlockingWindow() && !mainFrame->IsInputBlocked(event) &&
	                    mainFrame->HandleKeyboardEvent(key, isRelease, isRepeat);
	mKeyInFlight = TKeyboardKey();
	return isUsed;
}

bool TKeyboardEventHandler::UpdateRepeat(bool fromEvent) {
	const bool isHeld = mKeyStates.IsAnyDown();
	if (fromEvent)
		mLastKeyStopwatch.Restart();
	mRepeating = isHeld && mLastKeyStopwatch.ElapsedMilliseconds() > kRepeatDelay;
	if (fromEvent)
		mDifferingTicks = 0;
	else
		CompareWithPlatform();
	if (!isHeld && !fromEvent) {
		mLastKeyStopwatch.Restart();
		mRepeatStopwatch.Restart();
		return false;
	}
	const auto interval = static_cast<float>(TBaseViewsPrefs::Instance()->KeyRepeatInterval().Get());
	if (!mRepeating || mRepeatStopwatch.ElapsedMilliseconds() <= interval)
		return fromEvent;
	mRepeatStopwatch.Restart();
	return true;
}

/// A release that nobody has told us of is made up for once the difference has stayed long enough.
void TKeyboardEventHandler::CompareWithPlatform() {
	const TKeyFlags held = PlatformsKeys();
	mStatesDiffer = (mRepeating || mKeyStates.Modifiers() != ModifiersOf(held, AreRightSideModifiersInUse())) &&
	                held != mKeyStates.States();
	mDifferingTicks = mStatesDiffer ? mDifferingTicks + 1 : 0;
	if (mDifferingTicks < kTicksToRepair)
		return;
	mDifferingTicks = 0;
	mStatesDiffer = false;
	const TKeptAlive kept(this);
	for (const int code : mKeyStates.HeldKeys())
		if (!held[static_cast<std::size_t>(code)]) {
			mKeyStates.SetState(code, kKeyIsUp);
			DispatchKey(TKeyboardKey(code, mKeyStates.Modifiers()), true, false, nullptr);
		}
	TakePlatformsStates(held);
}

void TKeyboardEventHandler::TakePlatformsStates(const TKeyFlags& held) {
	mKeyStates.SetStates(held);
	mDispatchedStates.SetStates(held);
}

// Frames

bool TKeyboardEventHandler::HandleEvent(TApplicationEvent* event) {
	if (IsApplicationEvent(event, TApplicationEventType::kBeginOfNewFrame))
		RepeatKeys();
	else if (IsApplicationEvent(event, TApplicationEventType::kKeyboardLanguageChanged) && mMainFrame)
		mMainFrame->Invalidate();
	return true;
}

void TKeyboardEventHandler::RepeatKeys() {
	const TPtr<TViewWindow> window = mMainFrame ? mMainFrame->ViewWindow() : nullptr;
	if (!window)
		return;
	if (!window->IsKey() || !window->CanBecomeKey() || window->BlockingWindow()) {
		mRepeating = false;
		return;
	}
	if (!UpdateRepeat(false))
		return;
	if (TDocumentRoot* root = window->DocumentRoot(); root && !root->IsActionOpen())
		root->BeginAction();
	PostRepeats(*window);
}

void TKeyboardEventHandler::PostRepeats(TViewWindow& window) {
	const TKeyFlags held = PlatformsKeys();
	for (const int code : mKeyStates.HeldKeys()) {
		if (!held[static_cast<std::size_t>(code)])
			continue;
		const TKeyboardKey key(code, mKeyStates.Modifiers());
		if (mRepeating) {
			if (!key.IsModifierKey()) {
				mRepeats.Post(window, key, true);
				mRepeats.Post(window, key, false);
			}
		} else if (!mDispatchedStates.IsDown(code))
			mRepeats.Post(window, key, false);
	}
}

/// Those that were posted before and have gone by serve again, so that holding a key allocates nothing.
void TKeyboardEventHandler::TRepeatEvents::Post(TViewWindow& window, const TKeyboardKey& key, bool isRelease) {
	TApplicationEventQueue& queue = *TApplicationEventQueue::Instance();
	for (const TPtr<TKeyboardEvent>& event : mEvents)
		if (event->ReferenceCount() == 1 && event->Window() == &window && event->Key() == key &&
		    event->IsRelease() == isRelease)
			return queue.PostEvent(event);
	if (mEvents.Count() >= kMaximum)
		mEvents.Clear();
	mEvents.Append(MakePtr<TKeyboardEvent>(&window, key, isRelease, true));
	queue.PostEvent(mEvents[mEvents.Count() - 1]);
}

// The keyboard comes and goes

void TKeyboardEventHandler::OnBecameKey() {
	TakePlatformsStates(PlatformsKeys());
	mRepeating = false;
	mLastKeyStopwatch.Restart();
	if (mKeyInFlight.IsKey())
		mDispatchedStates.SetState(mKeyInFlight.Code(), mKeyInFlightState);
}

void TKeyboardEventHandler::Reset() {
	bool wasModifierHeld = false;
	for (const int code : mKeyStates.HeldKeys())
		wasModifierHeld = wasModifierHeld || TKeyboardKey(code, 0).IsModifierKey();
	TakePlatformsStates({});
	mRepeating = false;
	mDifferingTicks = 0;
	if (wasModifierHeld && mMainFrame)
		mMainFrame->SetKeyModifiers(mKeyStates.Modifiers());
}
