// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AudioUnitTypes.h"

/// What a unit asks of the process that it runs in. One for the process, set before the first unit is opened and alive
/// until the last is closed.
class AUSystem {
public:
	class TTimerTarget {
	public:
		virtual void OnTimer() = 0;

	protected:
		~TTimerTarget() = default;
	};

	static void Use(AUSystem* system) { sSystem = system; }

	/// Null: there are no timers, and nobody listens.
	static AUSystem* Current() { return sSystem; }

	/// Repeats on the main event loop until it is stopped, which the target may do from inside it. Main thread.
	virtual void StartTimer(TTimerTarget& target, int milliseconds) = 0;
	virtual void StopTimer(TTimerTarget& target) = 0;
	/// Tells everybody who watches this parameter. Main thread.
	virtual void NotifyListeners(const AudioUnitEvent& event) = 0;

protected:
	~AUSystem() = default;

private:
	static inline AUSystem* sSystem = nullptr;
};
