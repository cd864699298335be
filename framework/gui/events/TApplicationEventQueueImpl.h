// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/TListWalks.h"

/// The queue of every instance.
class TApplicationEventQueueImpl final : public TApplicationEventQueue {
public:
	void PostEvent(const TPtr<TApplicationEvent>& event) override;
	void SendEvent(const TPtr<TApplicationEvent>& event) override;
	void DispatchPostedEvents() override;
	void RegisterListener(TApplicationEventListener* listener) override;
	void UnregisterListener(TApplicationEventListener* listener) override;

private:
	void Dispatch(TApplicationEvent* event);

	TListWalks mWalks; // over the listeners
	TList<TWeakPtr<TApplicationEventListener>> mListeners;
	TList<TPtr<TApplicationEvent>> mPostedEvents;
	int32_t mNextPosted = 0; // shared by dispatches inside dispatches, so that each event goes once
};
