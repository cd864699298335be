// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"

class TApplicationEvent;
class TApplicationEventListener;

/// The one road of events to whoever listens: the platform's callbacks post, the frame tick dispatches. Main thread.
class TApplicationEventQueue : public TSingleton<TApplicationEventQueue>, public TGlobalStorageAware {
public:
	/// Keeps it for the next DispatchPostedEvents.
	virtual void PostEvent(const TPtr<TApplicationEvent>& event) = 0;
	/// Dispatches it now. May be called while another event is being dispatched.
	virtual void SendEvent(const TPtr<TApplicationEvent>& event) = 0;
	/// Sends what was posted, in order. What the handlers post goes with the same call.
	virtual void DispatchPostedEvents() = 0;
	virtual void RegisterListener(TApplicationEventListener* listener) = 0;
	/// Also from within a dispatch: no listener is skipped or sees the event twice.
	virtual void UnregisterListener(TApplicationEventListener* listener) = 0;

	/// The object for the current storage; registers the class for further ones.
	static void CreateService();
};
