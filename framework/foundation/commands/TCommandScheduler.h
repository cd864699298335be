// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"

#include <algorithm>
#include <cstdint>
#include <utility>

/// Sample-accurate schedule of commands. Belongs to the audio thread; not safe on any other at the same time.
/// Commands for the same sample run in the order in which they were scheduled. However many there are of one sample,
/// scheduling one more costs the same.
class TCommandScheduler final : public TReferenceCountable {
public:
	TCommandScheduler();
	~TCommandScheduler() override;

	/// Keeps a reference until the command has run. A delay (samples from now) of 0 or less runs the command inside
	/// this call.
	void Schedule(TCommand* command, int32_t delay) {
		command->RetainUnshared();
		if (delay > 0)
			Insert(*command, mNow + delay);
		else
			RunNow(command);
	}

	/// For a command that comes again by ScheduleAgain, from inside its Execute. Wherever it comes, it runs among the
	/// commands of that sample as if it had been scheduled there at first: before whatever was scheduled after it.
	void ScheduleFirst(TCommand* command, int32_t delay);
	void ScheduleAgain(TCommand* command, int32_t delay);

	/// Drops every pending command that matches.
	void RemoveMatching(const TCommandMatch& match);

	/// Runs what is due and moves time on by at most `samples`; returns the length of the stretch up to the next
	/// command, which the caller then processes before it calls again with what remains.
	int32_t Advance(int32_t samples) {
		if (samples <= 0) [[unlikely]]
			return 0;
		const int64_t now = mNow;
		while (mStart.mpNext->mExecuteTime <= now)
			Run(UnlinkFirst());
		const auto length = static_cast<int32_t>(std::min<int64_t>(mStart.mpNext->mExecuteTime - now, samples));
		mNow = now + length;
		return length;
	}

	bool HasPendingCommand() const { return mStart.mpNext != &mEnd; }

private:
	const TCommandLink& First() const noexcept { return *mStart.mpNext; }

	void RunNow(TCommand* command);

	static void Run(TCommand* command) {
		struct TDischargeAtEnd {
			~TDischargeAtEnd() { mpCommand->Discharge(); }

			TCommand* mpCommand;
		};

		const TDischargeAtEnd dischargeAtEnd{command};
		command->Execute();
	}

	/// Behind every command that is not later, from run to run. The events of a block come in order, before a step that
	/// lies far ahead.
	void Insert(TCommandLink& link, int64_t time) noexcept {
		TCommandLink* run = mpRun->mExecuteTime <= time ? mpRun : &mStart;
		TCommandLink* last = run->mpLastOfRun;
		while (last->mpNext->mExecuteTime <= time) {
			run = last->mpNext;
			last = run->mpLastOfRun;
		}
		link.mExecuteTime = time;
		link.mpNext = std::exchange(last->mpNext, &link);
		mpRun = run->mExecuteTime == time ? run : &link;
		mpRun->mpLastOfRun = &link;
	}

	TCommand* UnlinkFirst() noexcept {
		TCommandLink* link = std::exchange(mStart.mpNext, mStart.mpNext->mpNext);
		if (mpRun == link || link->mpLastOfRun != link)
			LeaveRun(*link);
		return link->Command();
	}

	void LeaveRun(TCommandLink& first) noexcept;
	void InsertByRank(TCommandLink& link, int64_t time) noexcept;
	void InsertIntoRun(TCommandLink& link, TCommandLink& run, TCommandLink& before) noexcept;
	void SetAgain(TCommandLink& link, TCommandLink& run) noexcept;

	static constexpr int64_t kNever = -1;
	static constexpr int32_t kEarlier = -1; // a rank

	int64_t mNow = 0;
	TCommandLink mStart; // before all commands, and in no run but its own
	TCommandLink mEnd;   // behind them, never due
	TCommandLink* mpRun; // the first of the run that took in the last command; mStart if it has gone
	// Of those that come again: when the last ones were scheduled, how many, and where one was put last.
	int64_t mFirstsTime = kNever;
	int32_t mLastRank = 0;
	int64_t mAgainTime = kNever;
	TCommandLink* mpAgain = nullptr; // while mAgainTime is to come
	TCommandLink* mpAgainRun = nullptr;
};
