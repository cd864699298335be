// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommandScheduler.h"

#include <algorithm>
#include <limits>

TCommandScheduler::TCommandScheduler() : mpRun(&mStart) {
	mStart.mExecuteTime = std::numeric_limits<int64_t>::min();
	mStart.mpNext = &mEnd;
	mStart.mpLastOfRun = &mStart;
	mEnd.mExecuteTime = std::numeric_limits<int64_t>::max();
}

TCommandScheduler::~TCommandScheduler() {
	while (HasPendingCommand())
		UnlinkFirst()->Discharge();
}

void TCommandScheduler::RunNow(TCommand* command) {
	Run(command);
}

/// The next of the run, if there is one, stands for it.
void TCommandScheduler::LeaveRun(TCommandLink& first) noexcept {
	TCommandLink* heir = &mStart;
	if (first.mpLastOfRun != &first) {
		heir = first.mpNext;
		heir->mpLastOfRun = first.mpLastOfRun;
	}
	if (mpRun == &first)
		mpRun = heir;
}

void TCommandScheduler::ScheduleFirst(TCommand* command, int32_t delay) {
	// What waits since earlier comes before all of these, wherever they go.
	if (mFirstsTime != mNow) {
		mFirstsTime = mNow;
		mLastRank = 0;
		for (TCommandLink* link = mStart.mpNext; link != &mEnd; link = link->mpNext)
			link->mRank = kEarlier;
	}
	TCommandLink* link = command;
	link->mRank = ++mLastRank;
	ScheduleAgain(command, delay);
}

void TCommandScheduler::ScheduleAgain(TCommand* command, int32_t delay) {
	command->Retain();
	InsertByRank(*command, mNow + std::max(delay, 1));
}

/// Many of them go from one sample to the next, one after the other, so each is looked for behind the one before.
void TCommandScheduler::InsertByRank(TCommandLink& link, int64_t time) noexcept {
	link.mExecuteTime = time;
	const bool isNearAgain = mAgainTime > mNow && mAgainTime <= time;
	if (isNearAgain && mAgainTime == time && mpAgain->mRank <= link.mRank) {
		InsertIntoRun(link, *mpAgainRun, *mpAgain);
		return;
	}
	TCommandLink* run = isNearAgain && mAgainTime < time ? mpAgainRun : &mStart;
	while (run->mpLastOfRun->mpNext->mExecuteTime < time)
		run = run->mpLastOfRun->mpNext;
	TCommandLink* last = run->mpLastOfRun;
	if (last->mpNext->mExecuteTime == time) {
		InsertIntoRun(link, *last->mpNext, *last);
		return;
	}
	link.mpNext = std::exchange(last->mpNext, &link);
	link.mpLastOfRun = &link;
	SetAgain(link, link);
}

/// Behind `before`, which is in the run or the last of the run before, and behind those that rank no higher.
void TCommandScheduler::InsertIntoRun(TCommandLink& link, TCommandLink& run, TCommandLink& before) noexcept {
	const auto goesFirst = [&link](const TCommandLink& other) { return other.mRank != 0 && other.mRank <= link.mRank; };
	TCommandLink* last = run.mpLastOfRun;
	TCommandLink* place = &before;
	while (place != last && goesFirst(*place->mpNext))
		place = place->mpNext;
	const bool isNewFirst = place->mpNext == &run;
	link.mpNext = std::exchange(place->mpNext, &link);
	if (isNewFirst) {
		link.mpLastOfRun = last;
		if (mpRun == &run)
			mpRun = &link;
	} else if (place == last) {
		run.mpLastOfRun = &link;
	}
	SetAgain(link, isNewFirst ? link : run);
}

void TCommandScheduler::SetAgain(TCommandLink& link, TCommandLink& run) noexcept {
	mpAgain = &link;
	mpAgainRun = &run;
	mAgainTime = link.mExecuteTime;
}

void TCommandScheduler::RemoveMatching(const TCommandMatch& match) {
	TCommandLink* removed = nullptr;
	TCommandLink* pending = std::exchange(mStart.mpNext, &mEnd);
	mpRun = &mStart;
	mAgainTime = kNever;
	while (pending != &mEnd) {
		TCommandLink* link = std::exchange(pending, pending->mpNext);
		if (match.Matches(link->Command()))
			link->mpNext = std::exchange(removed, link);
		else
			Insert(*link, link->mExecuteTime);
	}
	while (removed)
		std::exchange(removed, removed->mpNext)->Command()->Discharge();
}
