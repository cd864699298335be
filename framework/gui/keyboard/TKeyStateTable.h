// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TStopwatch.h"
#include "platform/KeyCodes.h"

#include <array>
#include <span>

/// Which side is in force when a key is told down or up.
enum TKeyState : int { kKeyIsDown = 0, kKeyIsUp = 1 };

/// Whether the modifier keys at the right of the keyboard act like those at the left, or are keys like any other.
bool AreRightSideModifiersInUse();

/// A keyboard's keys and since when they are down. Main thread.
class TKeyStateTable {
public:
	/// Oldest press first; as long as mCount says.
	struct THeldKeys {
		std::array<int, kKeyCodeCount> mCodes;
		std::size_t mCount = 0;

		const int* begin() const noexcept { return mCodes.data(); }

		const int* end() const noexcept { return mCodes.data() + mCount; }
	};

	bool IsDown(int code) const noexcept { return IsCode(code) && mDown[Slot(code)]; }

	bool IsAnyDown() const noexcept { return mDown.any(); }

	/// Ignored for what is no key. A key that is down already keeps its time.
	void SetState(int code, TKeyState state);
	/// What goes down now is younger than all that was down.
	void SetStates(const TKeyFlags& down);

	const TKeyFlags& States() const noexcept { return mDown; }

	/// TKeyModifier.
	int Modifiers() const { return ModifiersOf(mDown, AreRightSideModifiersInUse()); }

	THeldKeys HeldKeys() const;

private:
	static bool IsCode(int code) noexcept { return code >= 0 && code < kKeyCodeCount; }

	static std::size_t Slot(int code) noexcept { return static_cast<std::size_t>(code); }

	TKeyFlags mDown;
	std::array<float, kKeyCodeCount> mPressTimes{}; // milliseconds; 0 when up
	TStopwatch mStopwatch;
};
