// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandScheduler.h"

#include <limits>

TCommandScheduler::TCommandScheduler() {
	mEnd.mExecuteTime = std::numeric_limits<int64_t>::max();
}

TCommandScheduler::~TCommandScheduler() {
	while (HasPendingCommand())
		UnlinkFirst()->Discharge();
}

void TCommandScheduler::RunNow(TCommand* command) {
	Run(command);
}

void TCommandScheduler::RemoveMatching(const TCommandMatch& match) {
	TCommandLink* removed = nullptr;
	mpInserted = &mEnd;
	for (TCommandLink** place = &mpFirst; *place != &mEnd;) {
		if (!match.Matches((*place)->Command())) {
			place = &(*place)->mpNext;
			continue;
		}
		TCommandLink* link = std::exchange(*place, (*place)->mpNext);
		link->mpNext = std::exchange(removed, link);
	}
	while (removed)
		std::exchange(removed, removed->mpNext)->Command()->Discharge();
}
