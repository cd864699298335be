// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"

/// Warns the user that the heap is exhausted and the emergency pool is in use. Posted to the main thread once in the
/// life of the process.
class TMemoryLowMemoryWarningCommand final : public TCommand {
public:
	/// To the main thread of the calling thread's instance. Any thread.
	static void Post();

	void Execute() override;
};
