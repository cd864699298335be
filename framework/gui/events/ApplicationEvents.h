// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/events/TApplicationEvent.h"

#include <cstdint>

/// Which of the events without further content it is.
enum class TApplicationEventType : int32_t {
	kBeginOfNewFrame,
	kEndOfFrame,
	kGuiIdle,
	kAppActivated,
	kAppDeactivated,
	kClipboardContentChanged,
	kHardwareDevicesConnectedOrRemoved,
	kKeyboardLanguageChanged,
	kScreenResolutionChanged,
	kBeforeSwitchingWindowedMode,
	kAfterSwitchingWindowedMode
};

/// An event of kApplicationEvent: says what has happened by its type.
class TApplicationStateEvent : public TApplicationEvent {
public:
	TApplicationEventType Type() const noexcept { return mType; }

protected:
	explicit TApplicationStateEvent(TApplicationEventType type) noexcept
	    : TApplicationEvent(kApplicationEvent),
	      mType(type) {}

private:
	const TApplicationEventType mType;
};

template <TApplicationEventType kType>
class TTypedApplicationEvent final : public TApplicationStateEvent {
public:
	TTypedApplicationEvent() noexcept : TApplicationStateEvent(kType) {}
};

/// Before the posted events of a frame: repeats and timers run on it.
using TBeginOfNewFrameEvent = TTypedApplicationEvent<TApplicationEventType::kBeginOfNewFrame>;
using TEndOfFrameEvent = TTypedApplicationEvent<TApplicationEventType::kEndOfFrame>;
/// Behind every tenth frame.
using TGuiIdleEvent = TTypedApplicationEvent<TApplicationEventType::kGuiIdle>;
using TAppActivatedEvent = TTypedApplicationEvent<TApplicationEventType::kAppActivated>;
using TAppDeactivatedEvent = TTypedApplicationEvent<TApplicationEventType::kAppDeactivated>;
using TClipboardContentChangedEvent = TTypedApplicationEvent<TApplicationEventType::kClipboardContentChanged>;
using THardwareDevicesConnectedOrRemovedEvent =
    TTypedApplicationEvent<TApplicationEventType::kHardwareDevicesConnectedOrRemoved>;
using TKeyboardLanguageChangedEvent = TTypedApplicationEvent<TApplicationEventType::kKeyboardLanguageChanged>;
using TScreenResolutionChangedEvent = TTypedApplicationEvent<TApplicationEventType::kScreenResolutionChanged>;
using TAfterSwitchingWindowedModeEvent = TTypedApplicationEvent<TApplicationEventType::kAfterSwitchingWindowedMode>;

/// Before the display mode changes; a listener may forbid it.
class TBeforeSwitchingWindowedModeEvent final : public TApplicationStateEvent {
public:
	TBeforeSwitchingWindowedModeEvent() noexcept
	    : TApplicationStateEvent(TApplicationEventType::kBeforeSwitchingWindowedMode) {}

	void Veto() noexcept { mVeto = true; }

	bool IsVetoed() const noexcept { return mVeto; }

private:
	bool mVeto = false;
};

/// Null unless the event is of that type.
inline const TApplicationStateEvent* AsApplicationStateEvent(const TApplicationEvent* event) noexcept {
	return event->Kind() == kApplicationEvent ? static_cast<const TApplicationStateEvent*>(event) : nullptr;
}

inline bool IsApplicationEvent(const TApplicationEvent* event, TApplicationEventType type) noexcept {
	const TApplicationStateEvent* state = AsApplicationStateEvent(event);
	return state && state->Type() == type;
}
