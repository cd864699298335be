// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TReferenceCountable.h"

#include <cstdint>
#include <functional>
#include <utility>

/// A unit of work that travels through the queues of TThreadCommunicator or waits in a TCommandScheduler.
/// new and delete use the command pools, so commands can be made on the audio thread; a command dies where its last
/// reference goes.
class TCommand : public TReferenceCountable {
public:
	/// Runs on the receiving thread. What it throws is swallowed there.
	virtual void Execute() = 0;

	bool IsDeletedOnMainThread() const override { return false; }

	static void* operator new(std::size_t size);
	static void operator delete(void* memory) noexcept;

private:
	friend class TCommandQueue;
	friend class TCommandScheduler;

	TCommand* mpNext = nullptr;
	int64_t mExecuteTime = 0; // samples, in the scheduler's time
};

/// Predicate over commands.
class TCommandMatch {
public:
	virtual ~TCommandMatch() = default;
	virtual bool Matches(const TCommand* command) const = 0;
};

/// Calls a function object. Functions that travel to or from the audio thread must not allocate when moved:
/// capture no more than two pointers.
class TInvokeFunctionCommand final : public TCommand {
public:
	explicit TInvokeFunctionCommand(std::function<void()> function) : mFunction(std::move(function)) {}

	void Execute() override { mFunction(); }

private:
	std::function<void()> mFunction;
};
