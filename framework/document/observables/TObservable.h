// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TLazyPart.h"
#include "framework/document/observables/TObserver.h"
#include "framework/document/observables/TWeakReferenceable.h"

#include <cstdint>

class TDocumentNode;

/// Why a callback is called.
enum TNotificationReason : int32_t {
	kObserverAdded = 0,   // once, to the new observer, at the end of its registration
	kObserverRemoved = 1, // once, to the observer, when it is removed or the observable dies
	kWillChange = 2,      // before the value changes
	kDidChange = 3        // after it has changed; the only one that a bang fires by itself
};

enum TDeliveryMode : int32_t {
	kDeliverOnObserverThread = 0, // called directly from the observer's own thread, posted from any other
	kDeliverAlwaysPosted = 1,     // posted to the observer's thread, even from that thread
	kDeliverDirectly = 2          // called in whichever thread notifies
};

/// The watched side of every value and event.
///
///     value.AddObserver({this, &TView::OnValue}); // void OnValue(TObservable* observable, int32_t reason)
///
/// Any thread may notify, several at once. With nobody registered that costs one read; otherwise the observers are
/// called, or posted to on their threads, in the order of registration. That takes no lock and no memory and waits for
/// nobody, whatever observers do meanwhile on other threads.
/// Observers may, while being called, add and remove observers (each remaining one is called exactly once, new ones
/// last), notify again (the inner round is complete in itself), and destroy the observable (the round ends).
/// Of each registration at most one notification is on its way to another thread. What happens before it arrives joins
/// it: a change that is over is told as kDidChange alone, and who is told reads the newest value. It keeps a counted
/// observable alive; of any other that dies meanwhile nobody is told.
/// Who ends a registration, or the observable, waits for the callbacks that other threads are in.
class TObservable : public TWeakReferenceable {
public:
	TObservable() noexcept;
	TObservable(const TObservable&) = delete;
	TObservable& operator=(const TObservable&) = delete;
	/// The observers see kObserverRemoved, the last one first.
	~TObservable() override;

	/// Registering twice means being called twice. Throws TOutOfMemoryException; nothing is registered then.
	void AddObserver(const TObserverCallback& callback, int32_t deliveryMode = kDeliverOnObserverThread);
	/// Ends the youngest registration of this callback. Ignored if there is none.
	void RemoveObserver(const TObserverCallback& callback);
	bool IsObservedBy(const TObserverCallback& callback) const;
	/// Ends all registrations of the observer without calling it.
	void RemoveObserverCompletely(TObserver* observer) noexcept;
	bool HasObservers() const noexcept;

	/// A callback's exception ends the round and travels on.
	void NotifyObservers(int32_t reason);

	/// Adds the other's audience to this one's, for an event that reports on the other's behalf. Nobody is told of that
	/// registration nor of its end.
	void CopyObserversFrom(const TObservable& other);
	/// Runs what was posted from this thread to the threads of the observers, so that no notification under way still
	/// refers to this object.
	void FlushObserverThreads();

	virtual bool IsObservableList() const { return false; }

	/// The node that has declared this value; null when it is no longer declared.
	virtual void SetOwnerNode(TDocumentNode* /*node*/) {}

protected:
	virtual void OnObserverAdded(TObserver* /*observer*/, int32_t /*deliveryMode*/) {}

	virtual void OnObserverRemoved(TObserver* /*observer*/) {}

	/// This object, if posted notifications can keep it alive.
	virtual TReferenceCountable* Counted() noexcept { return nullptr; }

private:
	friend class TObserver;

	class TAudience;

	// Exists from the first registration on.
	TLazyPart<TAudience> mAudience;
};
