// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TReferenceCountable.h"

#include <cstddef>
#include <cstdint>
#include <utility>

/// A unit of work that travels through the queues of TThreadCommunicator or waits in a TCommandScheduler; never both.
/// new and delete use the command pools, so commands can be made on the audio thread; when a pool cannot grow, new
/// throws TOutOfMemoryException. A command dies where its last reference goes.
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

/// Calls a function object, which lies in the command itself: `new TInvokeFunctionCommand([=] { ... })`.
template <class TFunction>
class TInvokeFunctionCommand final : public TCommand {
public:
	explicit TInvokeFunctionCommand(TFunction function) : mFunction(std::move(function)) {}

	void Execute() override { mFunction(); }

private:
	TFunction mFunction;
};

/// Gives up, on the receiving thread, a reference that the sender hands over. A command that is dropped unrun gives it
/// up as well.
class TDecRefCommand final : public TCommand {
public:
	explicit TDecRefCommand(TReferenceCountable* object) noexcept : mpObject(object) {}

	~TDecRefCommand() override { Execute(); }

	void Execute() override;

private:
	TReferenceCountable* mpObject;
};

/// Deletes an object on the receiving thread. A command that is dropped unrun deletes it as well.
template <class T>
class TDeleteCommand final : public TCommand {
public:
	explicit TDeleteCommand(T* object) noexcept : mpObject(object) {}

	~TDeleteCommand() override { Execute(); }

	void Execute() override { delete std::exchange(mpObject, nullptr); }

private:
	T* mpObject;
};
