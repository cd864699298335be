// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TCommand.h"

#include <algorithm>
#include <cstdint>
#include <utility>

/// Sample-accurate schedule of commands. Belongs to the audio thread; not safe on any other at the same time.
/// Commands for the same sample run in the order in which they were scheduled.
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

	/// Drops every pending command that matches.
	void RemoveMatching(const TCommandMatch& match);

	/// Runs what is due and moves time on by at most `samples`; returns the length of the stretch up to the next
	/// command, which the caller then processes before it calls again with what remains.
	int32_t Advance(int32_t samples) {
		while (mpFirst->mExecuteTime <= mNow && samples > 0)
			Run(UnlinkFirst());
		const int64_t length = std::min<int64_t>(mpFirst->mExecuteTime - mNow, samples);
		mNow += length;
		return static_cast<int32_t>(length);
	}

	bool HasPendingCommand() const { return mpFirst != &mEnd; }

private:
	void RunNow(TCommand* command);

	static void Run(TCommand* command) {
		struct TDischargeAtEnd {
			~TDischargeAtEnd() { mpCommand->Discharge(); }

			TCommand* mpCommand;
		};

		const TDischargeAtEnd dischargeAtEnd{command};
		command->Execute();
	}

	/// Behind every command that is not later. The events of a block come in order, before a step that lies far ahead.
	void Insert(TCommandLink& link, int64_t time) noexcept {
		link.mExecuteTime = time;
		TCommandLink** place = mpInserted->mExecuteTime <= time ? &mpInserted->mpNext : &mpFirst;
		while ((*place)->mExecuteTime <= time)
			place = &(*place)->mpNext;
		link.mpNext = std::exchange(*place, &link);
		mpInserted = &link;
	}

	TCommand* UnlinkFirst() noexcept {
		TCommandLink* link = std::exchange(mpFirst, mpFirst->mpNext);
		if (mpInserted == link)
			mpInserted = &mEnd;
		return link->Command();
	}

	int64_t mNow = 0;
	TCommandLink mEnd;                // the last of the list, never due
	TCommandLink* mpFirst = &mEnd;    // by time; none is due before mNow
	TCommandLink* mpInserted = &mEnd; // the one inserted last, while it waits
};
