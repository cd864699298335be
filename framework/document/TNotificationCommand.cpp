// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TNotificationCommand.h"

#include <utility>

namespace {

constinit thread_local int32_t sSourceThread = TObserver::kNoNotification;

class TSourceScope {
public:
	explicit TSourceScope(int32_t source) noexcept : mOuter(std::exchange(sSourceThread, source)) {}

	~TSourceScope() { sSourceThread = mOuter; }

	TSourceScope(const TSourceScope&) = delete;
	TSourceScope& operator=(const TSourceScope&) = delete;

private:
	int32_t mOuter;
};

} // namespace

int32_t TObserver::NotificationSourceThread() noexcept {
	return sSourceThread;
}

void CallObserver(const TObserverCallback& callback, TObservable* observable, int32_t reason, int32_t source) {
	const TSourceScope scope(source);
	callback(observable, reason);
}

TObservable::TNotificationCommand::TNotificationCommand(
    TObservable* observable, const TObserverCallback& callback, int32_t reason, int32_t source)
    : mpObservable(observable),
      mpKeepAlive(observable->Counted()),
      mpObserver(callback.Observer()),
      mCallback(callback),
      mReason(reason),
      mSource(source) {
	mpObserver->NotificationPosted();
}

void TObservable::TNotificationCommand::Execute() {
	if (!mpObserver->IsBeingDestroyed())
		CallObserver(mCallback, mpObservable, mReason, mSource);
	Finish();
}

void TObservable::TNotificationCommand::Finish() {
	mpKeepAlive = nullptr;
	if (TObserver* observer = std::exchange(mpObserver, nullptr))
		observer->NotificationFinished();
}
