// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/events/TTimerDispatcher.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/gui/events/ApplicationEvents.h"

#include <cmath>
#include <utility>

void TTimerDispatcher::AddTimer(const TCallback& callback, int32_t milliseconds) {
	Add({true, callback, 0.0f, milliseconds});
}

void TTimerDispatcher::AddFrameTimer(const TCallback& callback, int32_t frames) {
	Add({false, callback, 0.0f, frames});
}

void TTimerDispatcher::Add(TTimerClient client) {
	if (IndexOf(client.mCallback) < 0)
		mClients.Append(std::move(client));
}

void TTimerDispatcher::RemoveTimer(const TCallback& callback) {
	const int32_t index = IndexOf(callback);
	if (index < 0)
		return;
	mClients.RemoveAt(index);
	mWalks.OnRemoved(index);
}

bool TTimerDispatcher::HasTimer(const TCallback& callback) const {
	return IndexOf(callback) >= 0;
}

int32_t TTimerDispatcher::IndexOf(const TCallback& callback) const {
	for (int32_t index = 0; index < mClients.Count(); ++index)
		if (mClients[index].mCallback == callback)
			return index;
	return -1;
}

bool TTimerDispatcher::HandleEvent(TApplicationEvent* event) {
	const TApplicationStateEvent* state = AsApplicationStateEvent(event);
	if (!state)
		return true;
	const bool isFrame = state->Type() == TApplicationEventType::kBeginOfNewFrame;
	if (!isFrame && state->Type() != TApplicationEventType::kGuiIdle)
		return true;
	// What holds the main thread's commands back holds its timers back, too.
	if (!TThreadCommunicator::Instance()->IsHeld(kMainThread, kMainThread))
		Advance(isFrame);
	return true;
}

void TTimerDispatcher::Advance(bool isFrame) {
	const float delta = mStopwatch.ElapsedMilliseconds();
	mStopwatch.Restart();
	for (TListWalks::TWalk walk(mWalks); walk.Index() < mClients.Count(); walk.Next()) {
		TTimerClient& client = mClients[walk.Index()];
		if (!client.mInMilliseconds && !isFrame)
			continue;
		client.mElapsed += client.mInMilliseconds ? delta : 1.0f;
		const auto interval = static_cast<float>(client.mInterval);
		if (client.mElapsed < interval)
			continue;
		const TCallback callback = client.mCallback; // the list may grow meanwhile
		callback();
		if (!walk.WasRemoval())
			mClients[walk.Index()].StartNextInterval();
	}
}

void TTimerDispatcher::TTimerClient::StartNextInterval() {
	const auto interval = static_cast<float>(mInterval);
	// Who keeps up keeps the phase; ticks that were missed as a whole are lost.
	if (mInMilliseconds && mElapsed < 2.0f * interval)
		mElapsed = std::fmod(mElapsed - interval, interval);
	else
		mElapsed = 0.0f;
}

void TTimerDispatcher::CreateService() {
	Create(
	    []() {
		    auto* dispatcher = new TTimerDispatcher;
		    dispatcher->Retain(); // events go only to listeners that somebody holds
		    return dispatcher;
	    },
	    [](TTimerDispatcher* dispatcher) { dispatcher->Release(); });
}
