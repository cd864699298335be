// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"

#include <utility>

/// Gives up, on the receiving thread, a reference that the sender hands over. A command that is dropped unrun gives it
/// up as well.
class TDecRefCommand final : public TCommand {
public:
	explicit TDecRefCommand(TReferenceCountable* object) noexcept : mpObject(object) {}

	~TDecRefCommand() override { Execute(); }

	void Execute() override {
		if (TReferenceCountable* object = std::exchange(mpObject, nullptr))
			object->Release();
	}

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
