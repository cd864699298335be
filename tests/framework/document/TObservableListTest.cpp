// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TObservableList.h"
#include "framework/document/TObservableBaseType.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"
#include "tests/framework/document/TActor.h"
#include "tests/support/TFrameworkFixture.h"

namespace {

using TNumber = TObservableBaseType<int>;
using TNumbers = TObservableList<TNumber>;

/// Writes each event of a list down: "+2@0:5" is kWillChange of an insertion at 0, the list holding 5.
class TListActor final : public TObserver {
public:
	void Watch(TObservableListBase& list) {
		list.Added().AddObserver({this, &TListActor::OnAdded});
		list.Removed().AddObserver({this, &TListActor::OnRemoved});
		list.Swapped().AddObserver({this, &TListActor::OnSwapped});
		list.Changed().AddObserver({this, &TListActor::OnChanged});
	}

	std::string Told() { return std::exchange(mJournal, {}); }

	std::function<void()> mOnRemoved;
	TObservable* mpChanged = nullptr;

private:
	void Write(char event, int32_t reason, int32_t index, const TObservableListBase* list) {
		mJournal +=
		    event + std::to_string(reason) + "@" + std::to_string(index) + ":" + std::to_string(list->Size()) + " ";
	}

	void OnAdded(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TObservableWasAddedObservable*>(observable);
		Write('+', reason, event->Index(), event->List());
	}

	void OnRemoved(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TObservableWasRemovedObservable*>(observable);
		Write('-', reason, event->Index(), event->List());
		if (reason == kDidChange && mOnRemoved)
			std::exchange(mOnRemoved, nullptr)();
	}

	void OnSwapped(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TObservablesSwappedObservable*>(observable);
		Write('x', reason, event->Index1() * 10 + event->Index2(), event->List());
	}

	void OnChanged(TObservable* observable, int32_t reason) {
		if (reason < kWillChange)
			return;
		const auto* event = static_cast<TObservableChangedObservable*>(observable);
		mpChanged = event->ChangedObservable();
		Write('c', reason, event->List()->IndexOf(event->Element()), event->List());
	}

	std::string mJournal;
};

class TObservableListTest : public TFrameworkFixture {
protected:
	std::string Numbers() const {
		std::string text;
		for (int32_t i = 0; i < mList.Size(); ++i)
			text += std::to_string(mList[i]->Get());
		return text;
	}

	void Fill(int count) {
		for (int i = 0; i < count; ++i)
			mList.Append()->Set(i);
		mActor.Told();
	}

	void SetUp() override {
		TFrameworkFixture::SetUp();
		mActor.Watch(mList);
	}

	TNumbers mList;
	TListActor mActor;
};

} // namespace

TEST_F(TObservableListTest, EachChangeIsToldBeforeAndAfter) {
	mList.Append();
	EXPECT_EQ(mActor.Told(), "+2@0:0 +3@0:1 ");
	mList.InsertNew(0);
	EXPECT_EQ(mActor.Told(), "+2@0:1 +3@0:2 ");
	mList[1]->Set(9);
	EXPECT_EQ(mActor.Told(), "c2@1:2 c3@1:2 ");
	mList.Swap(0, 1);
	EXPECT_EQ(mActor.Told(), "x2@1:2 x3@1:2 ");
	EXPECT_EQ(Numbers(), "90");
	mList.Remove(0);
	EXPECT_EQ(mActor.Told(), "-2@0:2 -3@0:1 ");
	mList.ResizeWithDefaults(2);
	EXPECT_EQ(mActor.Told(), "+2@1:1 +3@1:2 ");
	mList.Clear(8);
	EXPECT_EQ(mActor.Told(), "-2@1:2 -3@1:1 -2@0:1 -3@0:0 ");
}

TEST_F(TObservableListTest, MoveShiftsWhatLiesBetween) {
	Fill(5);
	mList.Move(1, 3);
	EXPECT_EQ(Numbers(), "02314");
	mList.Move(4, 0);
	EXPECT_EQ(Numbers(), "40231");
}

TEST_F(TObservableListTest, ElementRemovedInsideItsOwnNotification) {
	Fill(2);
	std::string journal;
	TActor actor("a", journal);
	actor.Watch(*mList[0]);
	actor.mAct = [&](auto*, int32_t) { mList.Remove(0); };
	mList[0]->Set(7);
	EXPECT_EQ(Numbers(), "1");
}

TEST_F(TObservableListTest, ListChangedInsideItsOwnEvent) {
	Fill(3);
	mActor.mOnRemoved = [&] { mList.Remove(0); };
	mList.Remove(0);
	EXPECT_EQ(mActor.Told(), "-2@0:3 -3@0:2 -2@0:2 -3@0:1 ");
	EXPECT_EQ(Numbers(), "2");
}

TEST_F(TObservableListTest, AnyChangeFiresAroundChangesOfElementsOnly) {
	std::string journal;
	TActor actor("a", journal);
	actor.Watch(mList.AnyChange());
	Fill(2);
	journal.clear();
	mList[0]->Set(5);
	mList.Remove(1);
	EXPECT_EQ(journal, "a2 a3 ");
}

TEST_F(TObservableListTest, RemovedElementLivesAsLongAsAnEventUnderWay) {
	class TPostedActor final : public TObserver {
	public:
		void OnRemoved(TObservable* observable, int32_t reason) {
			if (reason == kDidChange) {
				const auto* event = static_cast<TObservableWasRemovedObservable*>(observable);
				mSeen = static_cast<TNumber*>(event->Element())->Get();
			}
		}

		int mSeen = -1;
	} actor;

	Fill(1);
	mList[0]->Set(42);
	mList.Removed().AddObserver({&actor, &TPostedActor::OnRemoved}, kDeliverAlwaysPosted);
	mList.Remove(0);
	EXPECT_EQ(actor.mSeen, -1);
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(actor.mSeen, 42);
}

TEST_F(TObservableListTest, ChangeOnTheAudioThreadIsReportedOnTheMainThreadIfTheElementIsStillThere) {
	Fill(2);
	const auto setOnAudioThread = [](TNumber* number) {
		const TThreadManager::TScope none(kNoThread);
		const TThreadManager::TScope audio(kAudioThread);
		number->Set(8);
	};
	setOnAudioThread(mList[0]);
	EXPECT_EQ(mActor.Told(), "");
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(mActor.Told(), "c2@0:2 c3@0:2 ");
	setOnAudioThread(mList[1]);
	mList.Remove(1);
	mActor.Told();
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(mActor.Told(), "");
}

TEST_F(TObservableListTest, NestedListsHaveNamesPathsAndPassTheirChangesUp) {
	TObservableList<TNumbers> lists;
	TListActor actor;
	lists.SetItemName("Rows");
	lists.Append();
	TNumbers* row = lists.Append();
	EXPECT_EQ(row->ItemName(), "Row");
	actor.Watch(lists);
	TNumber* number = row->Append();
	EXPECT_EQ(actor.Told(), "c2@1:2 c3@1:2 ");
	EXPECT_EQ(actor.mpChanged, row);
	number->Set(3);
	EXPECT_EQ(actor.Told(), "c2@1:2 c3@1:2 ");
	EXPECT_EQ(actor.mpChanged, number);

	EXPECT_EQ(lists.BuildPath(number), "[1][0]");
	EXPECT_EQ(lists.ElementAtPath("[1][0]"), number);
	EXPECT_EQ(lists.ElementAtPath("Table[1]"), row);
	for (const char* wrong : {"", "[2]", "[1][1]", "[1][0][0]", "[-1]", "[]", "[1", "[x]", "[99999999999]"})
		EXPECT_EQ(lists.ElementAtPath(wrong), nullptr) << wrong;
}
