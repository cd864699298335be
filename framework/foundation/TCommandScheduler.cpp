// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandScheduler.h"

#include <algorithm>
#include <utility>

namespace {

struct TReleaseAtEnd {
	~TReleaseAtEnd() { mpCommand->Release(); }

	TCommand* mpCommand;
};

} // namespace

TCommandScheduler::~TCommandScheduler() {
	while (mpFirst)
		UnlinkFirst()->Release();
}

void TCommandScheduler::Schedule(TCommand* command, int32_t delay) {
	command->Retain();
	if (delay <= 0) {
		const TReleaseAtEnd releaseAtEnd{command};
		command->Execute();
		return;
	}
	command->mExecuteTime = mNow + delay;
	Insert(command);
	mNextDelay = mNextDelay >= 1 ? std::min(mNextDelay, delay) : delay;
}

/// Behind every command that is not later. The events of a block come in order, before a step that lies far ahead.
void TCommandScheduler::Insert(TCommand* command) noexcept {
	TCommand** place = &mpFirst;
	if (mpFirst && mpLast->mExecuteTime <= command->mExecuteTime)
		place = &mpLast->mpNext;
	else if (mpInserted && mpInserted->mExecuteTime <= command->mExecuteTime)
		place = &mpInserted->mpNext;
	while (*place && (*place)->mExecuteTime <= command->mExecuteTime)
		place = &(*place)->mpNext;
	command->mpNext = std::exchange(*place, command);
	if (!command->mpNext)
		mpLast = command;
	mpInserted = command;
}

void TCommandScheduler::RemoveMatching(const TCommandMatch& match) {
	TCommand* removed = nullptr;
	mpLast = mpInserted = nullptr;
	for (TCommand** place = &mpFirst; *place;) {
		if (!match.Matches(*place)) {
			mpLast = *place;
			place = &mpLast->mpNext;
			continue;
		}
		TCommand* command = std::exchange(*place, (*place)->mpNext);
		command->mpNext = std::exchange(removed, command);
	}
	if (!removed)
		return;
	RecomputeNextDelay();
	while (removed)
		std::exchange(removed, removed->mpNext)->Release();
}

int32_t TCommandScheduler::Advance(int32_t samples) {
	if (!mpFirst) {
		mNow += samples;
		return samples;
	}
	const int64_t start = mNow;
	int64_t end = NextStop(samples);
	while (mpFirst && mpFirst->mExecuteTime < end) {
		mNow = mpFirst->mExecuteTime;
		RunFirst();
		end = NextStop(samples); // the command may have scheduled others
	}
	mNow = end;
	RecomputeNextDelay();
	return static_cast<int32_t>(end - start);
}

int64_t TCommandScheduler::NextStop(int32_t samples) const noexcept {
	return mNow + (mNextDelay >= 1 ? std::min(samples, mNextDelay) : samples);
}

void TCommandScheduler::RunFirst() {
	const TReleaseAtEnd command{UnlinkFirst()};
	command.mpCommand->Execute();
}

TCommand* TCommandScheduler::UnlinkFirst() noexcept {
	TCommand* command = mpFirst;
	mpFirst = std::exchange(command->mpNext, nullptr);
	if (mpInserted == command)
		mpInserted = nullptr;
	return command;
}

void TCommandScheduler::RecomputeNextDelay() {
	mNextDelay = -1;
	for (const TCommand* command = mpFirst; command; command = command->mpNext) {
		mNextDelay = static_cast<int32_t>(command->mExecuteTime - mNow);
		if (mNextDelay > 0)
			return;
	}
}
