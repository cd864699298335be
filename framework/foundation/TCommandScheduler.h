// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TCommand.h"

#include <cstdint>

/// Sample-accurate schedule of commands. Belongs to the audio thread; not safe on any other at the same time.
/// Commands for the same sample run in the order in which they were scheduled.
class TCommandScheduler final : public TReferenceCountable {
public:
	~TCommandScheduler() override;

	/// Keeps a reference until the command has run. A delay (samples from now) of 0 or less runs the command inside
	/// this call.
	void Schedule(TCommand* command, int32_t delay);
	/// Drops every pending command that matches.
	void RemoveMatching(const TCommandMatch& match);
	/// Runs what is due and moves time on by at most `samples`; returns the length of the stretch up to the next
	/// command, which the caller then processes before it calls again with what remains.
	int32_t Advance(int32_t samples);

	/// Whether a command waits for a future sample.
	bool HasPendingCommand() const { return mNextDelay >= 0; }

private:
	void Insert(TCommand* command) noexcept;
	TCommand* UnlinkFirst() noexcept;
	void RunFirst();
	int64_t NextStop(int32_t samples) const noexcept;
	void RecomputeNextDelay();

	int64_t mNow = 0;
	int32_t mNextDelay = -1;
	TCommand* mpFirst = nullptr;
	TCommand* mpLast = nullptr;
	TCommand* mpInserted = nullptr; // the one inserted last, while it waits
};
