// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/events/TApplicationEventQueueImpl.h"

#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/events/TApplicationEvent.h"

#include <utility>

void TApplicationEventQueueImpl::PostEvent(const TPtr<TApplicationEvent>& event) {
	mPostedEvents.Append(event);
}

void TApplicationEventQueueImpl::SendEvent(const TPtr<TApplicationEvent>& event) {
	const TPtr<TApplicationEvent> kept = event; // the caller's may be in what a handler changes
	try {
		Dispatch(kept.Get());
	} catch (const TOutOfMemoryException& exception) {
		ShowUserMessage(exception.Message(), kErrorMessage);
	}
}

void TApplicationEventQueueImpl::Dispatch(TApplicationEvent* event) {
	for (TListWalks::TWalk walk(mWalks); walk.Index() < mListeners.Count(); walk.Next()) {
		TApplicationEventListener* listener = mListeners[walk.Index()].Get();
		// One that is being built or destroyed is still, or already, held by nobody.
		if (!listener || listener->ReferenceCount() < 1)
			continue;
		const TPtr<TApplicationEventListener> kept = listener;
		if (!kept->HandleEvent(event))
			return;
	}
}

void TApplicationEventQueueImpl::DispatchPostedEvents() {
	while (mNextPosted < mPostedEvents.Count())
		SendEvent(std::exchange(mPostedEvents[mNextPosted++], nullptr));
	mPostedEvents.Clear();
	mNextPosted = 0;
}

void TApplicationEventQueueImpl::RegisterListener(TApplicationEventListener* listener) {
	mListeners.Append(listener);
}

void TApplicationEventQueueImpl::UnregisterListener(TApplicationEventListener* listener) {
	for (int32_t index = mListeners.Count() - 1; index >= 0; --index)
		if (mListeners[index] == listener) {
			mListeners.RemoveAt(index);
			mWalks.OnRemoved(index);
			return;
		}
}

void TApplicationEventQueue::CreateService() {
	Create(
	    []() -> TApplicationEventQueue* { return new TApplicationEventQueueImpl; },
	    [](TApplicationEventQueue* queue) { delete queue; });
}
