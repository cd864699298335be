// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TObservable.h"
#include "framework/foundation/TCommand.h"
#include "framework/foundation/TPtr.h"

#include <cstdint>

/// A notification on its way to the observer's thread. Keeps the observer alive, and the observable if that is counted.
/// Dropped unrun, it lets both go without calling.
class TObservable::TNotificationCommand final : public TCommand {
public:
	TNotificationCommand(TObservable* observable, const TObserverCallback& callback, int32_t reason, int32_t source);

	~TNotificationCommand() override { Finish(); }

	void Execute() override;

private:
	void Finish();

	TObservable* mpObservable;
	TPtr<TReferenceCountable> mpKeepAlive;
	TObserver* mpObserver; // null when finished
	TObserverCallback mCallback;
	int32_t mReason;
	int32_t mSource;
};

/// Calls the callback as one that is caused by the source thread.
void CallObserver(const TObserverCallback& callback, TObservable* observable, int32_t reason, int32_t source);
