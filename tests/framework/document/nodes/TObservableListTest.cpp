// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "tests/framework/document/observables/TActor.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TJournal.h"

namespace {

using TNumber = TObservableBaseType<int>;
using TNumbers = TObservableList<TNumber>;

/// Notes each event of the list: "2+0:5" is kWillChange of an insertion at 0, the list holding 5.
void WatchList(TJournal& journal, TObservableListBase& list) {
	const auto note = [&list](const char* event, int32_t index) {
		return event + std::to_string(index) + ":" + std::to_string(list.Size());
	};
	journal.Watch(list.Added(), [=](auto* event, int32_t) {
		return note("+", dynamic_cast<TObservableWasAddedObservable*>(event)->Index());
	});
	journal.Watch(list.Removed(), [=](auto* event, int32_t) {
		return note("-", dynamic_cast<TObservableWasRemovedObservable*>(event)->Index());
	});
	journal.Watch(list.Swapped(), [=](auto* observable, int32_t) {
		const auto* event = dynamic_cast<TObservablesSwappedObservable*>(observable);
		return note("x", event->Index1() * 10 + event->Index2());
	});
	journal.Watch(list.Changed(), [=, &list](auto* observable, int32_t) {
		const auto* event = dynamic_cast<TObservableChangedObservable*>(observable);
		return note(event->ChangedObservable() == event->Element() ? "c" : "i", list.IndexOf(event->Element()));
	});
}

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
		mJournal.Told();
	}

	void SetUp() override {
		TFrameworkFixture::SetUp();
		WatchList(mJournal, mList);
	}

	TNumbers mList;
	TJournal mJournal;
};

} // namespace

TEST_F(TObservableListTest, EachChangeIsToldBeforeAndAfter) {
	mList.Append();
	EXPECT_EQ(mJournal.Told(), "2+0:0 3+0:1 ");
	mList.InsertNew(0);
	EXPECT_EQ(mJournal.Told(), "2+0:1 3+0:2 ");
	TJournal anyChange;
	anyChange.Watch(mList.AnyChange(), [](auto*, int32_t) { return ""; });
	mList[1]->Set(9);
	EXPECT_EQ(mJournal.Told(), "2c1:2 3c1:2 ");
	mList.Swap(0, 1);
	EXPECT_EQ(mJournal.Told(), "2x1:2 3x1:2 ");
	EXPECT_EQ(Numbers(), "90");
	mList.Remove(0);
	EXPECT_EQ(mJournal.Told(), "2-0:2 3-0:1 ");
	mList.ResizeWithDefaults(2);
	EXPECT_EQ(mJournal.Told(), "2+1:1 3+1:2 ");
	mList.Clear(8);
	EXPECT_EQ(mJournal.Told(), "2-1:2 3-1:1 2-0:1 3-0:0 ");
	EXPECT_EQ(anyChange.Told(), "2 3 ") << "of elements only";
}

TEST_F(TObservableListTest, MoveShiftsWhatLiesBetween) {
	Fill(5);
	mList.Move(1, 3);
	EXPECT_EQ(Numbers(), "02314");
	mList.Move(4, 0);
	EXPECT_EQ(Numbers(), "40231");
}

TEST_F(TObservableListTest, ElementsRemovedInsideTheirOwnNotifications) {
	Fill(4);
	std::string journal;
	TActor actor("a", journal);
	actor.Watch(*mList[0]);
	actor.mAct = [&](auto*, int32_t) { mList.Remove(0); };
	mList[0]->Set(7);
	EXPECT_EQ(Numbers(), "123");
	mJournal.Told();
	actor.Watch(mList.Removed());
	actor.mAct = [&](auto*, int32_t) {
		actor.mAct = nullptr;
		mList.Remove(0);
	};
	mList.Remove(0);
	EXPECT_EQ(mJournal.Told(), "2-0:3 3-0:2 2-0:2 3-0:1 ");
	EXPECT_EQ(Numbers(), "3");
}

TEST_F(TObservableListTest, RemovedElementLivesAsLongAsAnEventUnderWay) {
	std::string journal;
	TActor actor("a", journal);
	int seen = -1;
	actor.mAct = [&seen](TObservable* event, int32_t) {
		seen = static_cast<TNumber*>(dynamic_cast<TObservableWasRemovedObservable*>(event)->Element())->Get();
	};
	Fill(1);
	mList[0]->Set(42);
	actor.Watch(mList.Removed(), kDeliverAlwaysPosted);
	mList.Remove(0);
	EXPECT_EQ(seen, -1);
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(seen, 42);
}

TEST_F(TObservableListTest, ChangeOnTheAudioThreadIsReportedOnTheMainThreadIfTheElementIsStillThere) {
	Fill(2);
	const auto setOnAudioThread = [](TNumber* number) {
		const TThreadManager::TScope none(kNoThread);
		const TThreadManager::TScope audio(kAudioThread);
		number->Set(8);
	};
	setOnAudioThread(mList[0]);
	EXPECT_EQ(mJournal.Told(), "");
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(mJournal.Told(), "3c0:2 ");
	setOnAudioThread(mList[1]);
	mList.Remove(1);
	mJournal.Told();
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(mJournal.Told(), "");
}

TEST_F(TObservableListTest, NestedListsHaveNamesPathsAndPassTheirChangesUp) {
	TObservableList<TNumbers> lists;
	TJournal journal;
	lists.SetItemName("Rows");
	lists.Append();
	TNumbers* row = lists.Append();
	EXPECT_EQ(row->ItemName(), "Row");
	WatchList(journal, lists);
	TNumber* number = row->Append();
	EXPECT_EQ(journal.Told(), "2c1:2 3c1:2 ");
	number->Set(3);
	EXPECT_EQ(journal.Told(), "2i1:2 3i1:2 ") << "inside it";

	EXPECT_EQ(lists.BuildPath(number), "[1][0]");
	EXPECT_EQ(lists.ElementAtPath("[1][0]"), number);
	EXPECT_EQ(lists.ElementAtPath("Table[1]"), row);
	for (const char* wrong : {"", "[2]", "[1][1]", "[1][0][0]", "[-1]", "[]", "[1", "[x]", "[99999999999]"})
		EXPECT_EQ(lists.ElementAtPath(wrong), nullptr) << wrong;
}
