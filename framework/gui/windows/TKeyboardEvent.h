// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/gui/events/TApplicationEvent.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "platform/TWindowGlueClient.h"

#include <optional>

class TWindow;

/// A key that goes down or up while a window has the keyboard, or text that an input method has made of keys. Both
/// take the same road, so that they arrive in the order of typing. Main thread.
class TKeyboardEvent final : public TApplicationEvent {
public:
	TKeyboardEvent(TWindow* window, const TKeyboardKey& key, bool isRelease, bool isRepeat = false);
	/// As the platform tells it.
	TKeyboardEvent(TWindow* window, const TGlueKeyEvent& event);
	TKeyboardEvent(TWindow* window, const TString& text);

	/// No key for a text.
	const TKeyboardKey& Key() const noexcept { return mKey; }

	bool IsRelease() const noexcept { return mIsRelease; }

	bool IsRepeat() const noexcept { return mIsRepeat; }

	/// Null unless it comes from the platform.
	const TGlueKeyEvent* GlueEvent() const noexcept { return mGlueEvent ? &*mGlueEvent : nullptr; }

	/// Empty for a key.
	const TString& Text() const noexcept { return mText; }

	/// Null once it is gone.
	TWindow* Window() const noexcept { return mWindow.Get(); }

private:
	const TKeyboardKey mKey;
	const bool mIsRelease;
	const bool mIsRepeat;
	const std::optional<TGlueKeyEvent> mGlueEvent;
	const TString mText;
	TWeakPtr<TWindow> mWindow;
};
