// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/events/TApplicationEventQueue.h"
#include "framework/gui/events/ApplicationEvents.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "tests/support/TFrameworkFixture.h"

#include <functional>
#include <string>

namespace {

class TListener final : public TApplicationEventListener {
public:
	using THandler = std::function<bool(TApplicationEvent* event)>;

	explicit TListener(THandler handler) : mHandler(std::move(handler)) {}

	bool HandleEvent(TApplicationEvent* event) override { return mHandler(event); }

private:
	THandler mHandler;
};

class TApplicationEventQueueTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		TApplicationEventQueue::CreateService();
	}

	void TearDown() override {
		for (auto& listener : mListeners)
			listener = nullptr;
		TApplicationEventQueue::Destroy();
		TFrameworkFixture::TearDown();
	}

	static TApplicationEventQueue& Queue() { return *TApplicationEventQueue::Instance(); }

	/// Notes its letter, then does the work.
	void Listen(int index, std::function<void()> work = {}, bool passesOn = true) {
		mListeners[index] = MakePtr<TListener>([=, this](TApplicationEvent*) {
			mHeard += static_cast<char>('a' + index);
			if (work)
				work();
			return passesOn;
		});
	}

	TPtr<TListener> mListeners[4];
	std::string mHeard;
};

TEST_F(TApplicationEventQueueTest, ListenersGoingInsideADispatchSkipAndRepeatNobody) {
	Listen(0);
	Listen(1, [this] { mListeners[1] = mListeners[0] = nullptr; });
	Listen(2);
	Listen(3, {}, false);
	Queue().SendEvent(MakePtr<TGuiIdleEvent>());
	EXPECT_EQ(mHeard, "abcd");
	Listen(0);
	Queue().SendEvent(MakePtr<TGuiIdleEvent>());
	EXPECT_EQ(mHeard, "abcdcd") << "the last one lets nothing pass";
}

TEST_F(TApplicationEventQueueTest, ADispatchInsideADispatchIsWholeInItself) {
	int depth = 0;
	Listen(0, [&] {
		if (++depth == 1) {
			mListeners[1] = nullptr;
			Queue().SendEvent(MakePtr<TGuiIdleEvent>());
		}
	});
	Listen(1);
	Listen(2);
	Queue().SendEvent(MakePtr<TGuiIdleEvent>());
	EXPECT_EQ(mHeard, "aacc");
}

TEST_F(TApplicationEventQueueTest, PostedEventsGoOnceEachInOrderEvenWhenHandlersDispatch) {
	std::string order;
	const TPtr<TApplicationEvent> events[] = {
	    MakePtr<TGuiIdleEvent>().Get(), MakePtr<TEndOfFrameEvent>().Get(), MakePtr<TAppActivatedEvent>().Get()};
	bool hasPosted = false;
	mListeners[0] = MakePtr<TListener>([&](TApplicationEvent* event) {
		for (int index = 0; index < 3; ++index)
			if (events[index] == event)
				order += static_cast<char>('0' + index);
		if (!std::exchange(hasPosted, true)) {
			Queue().PostEvent(events[2]);
			Queue().DispatchPostedEvents(); // as a modal dialog does
		}
		return true;
	});
	Queue().PostEvent(events[0]);
	Queue().PostEvent(events[1]);
	Queue().DispatchPostedEvents();
	Queue().DispatchPostedEvents();
	EXPECT_EQ(order, "012");
	EXPECT_EQ(events[0]->ReferenceCount(), 1);
}

} // namespace
