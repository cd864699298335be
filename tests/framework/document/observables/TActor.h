// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservable.h"

#include <functional>
#include <string>
#include <utility>

/// An observer that writes down what it is told, and may do something about it. The journal is shared by the actors of
/// a test: "a3" is actor a being told reason 3.
class TActor : public TObserver {
public:
	using TAct = std::function<void(TObservable* observable, int32_t reason)>;

	TActor(std::string name, std::string& journal, int32_t thread = kMainThread)
	    : TObserver(thread),
	      mName(std::move(name)),
	      mJournal(journal) {}

	~TActor() override {
		if (mpDeathMark)
			*mpDeathMark = true;
	}

	void Watch(TObservable& observable, int32_t mode = kDeliverOnObserverThread) {
		observable.AddObserver(Callback(), mode);
	}

	void Leave(TObservable& observable) { observable.RemoveObserver(Callback()); }

	TObserverCallback Callback() { return {this, &TActor::OnChange}; }

	/// What to do on kDidChange.
	TAct mAct;
	int32_t mSource = kNoNotification;
	bool* mpDeathMark = nullptr;

private:
	void OnChange(TObservable* observable, int32_t reason) {
		mJournal += mName + std::to_string(reason) + " ";
		mSource = NotificationSourceThread();
		if (const TAct act = mAct; act && reason == kDidChange)
			act(observable, reason); // a copy: it may take itself away
	}

	std::string mName;
	std::string& mJournal;
};
