// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TForwardingObserver.h"

#include <string>
#include <utility>
#include <vector>

/// Writes down what observables tell on the main thread.
class TJournal {
public:
	using TNote = std::function<std::string(TObservable* observable, int32_t reason)>;

	/// For kWillChange and kDidChange, with the reason in front: "2" or "3", the note, a blank.
	void Watch(TObservable& observable, const TNote& note) {
		mObservers.push_back(MakePtr<TForwardingStdObserver>(kMainThread, [this, note](auto* teller, int32_t reason) {
			if (reason >= kWillChange)
				mText += std::to_string(reason) + note(teller, reason) + " ";
		}));
		mObservers.back()->Observe(&observable);
	}

	/// What was written since the last call.
	std::string Told() { return std::exchange(mText, {}); }

private:
	std::string mText;
	std::vector<TPtr<TForwardingStdObserver>> mObservers;
};
