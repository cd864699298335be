// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "framework/gui/keyboard/TKeyStateTable.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/windows/TKeyboardEvent.h"

class TMainFrameView;
class TViewWindow;

/// Stands between the key events of a window and its tree: knows which keys are down, repeats them, and finds out when
/// a release has been lost. Main thread.
class TKeyboardEventHandler final : public TApplicationEventListener {
public:
	explicit TKeyboardEventHandler(TMainFrameView* mainFrame);

	/// The frames' begin, on which held keys repeat, and a change of the keyboard's layout.
	bool HandleEvent(TApplicationEvent* event) override;

	/// What the window hands on. False when nobody has used the key.
	bool HandleKeyboardEvent(const TKeyboardEvent& event);

	void OnBecameKey();
	/// The window has lost the keyboard: no key stays down.
	void Reset();

	/// TKeyModifier, of the keys received so far.
	int Modifiers() const { return mKeyStates.Modifiers(); }

	const TKeyStateTable& KeyStates() const noexcept { return mKeyStates; }

private:
	class TRepeatEvents {
	public:
		void Post(TViewWindow& window, const TKeyboardKey& key, bool isRelease);

	private:
		static constexpr int32_t kMaximum = 16;

		TList<TPtr<TKeyboardEvent>> mEvents;
	};

	bool DispatchKey(const TKeyboardKey& key, bool isRelease, bool isRepeat, const TKeyboardEvent* event);
	/// Whether a repeat is due.
	bool UpdateRepeat(bool fromEvent);
	void CompareWithPlatform();
	void TakePlatformsStates(const TKeyFlags& held);
	void RepeatKeys();
	void PostRepeats(TViewWindow& window);

	TKeyStateTable mKeyStates;        // received
	TKeyStateTable mDispatchedStates; // handed on
	bool mRepeating = false;
	TKeyboardKey mKeyInFlight;
	TKeyState mKeyInFlightState = kKeyIsUp;
	TStopwatch mLastKeyStopwatch;
	TStopwatch mRepeatStopwatch;
	bool mStatesDiffer = false;
	int mDifferingTicks = 0;
	TRepeatEvents mRepeats;
	TWeakPtr<TMainFrameView> mMainFrame;
};
