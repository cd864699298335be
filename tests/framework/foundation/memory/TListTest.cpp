// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

using testing::ElementsAre;

namespace {

/// Runs a function when it dies.
class TActor final : public TReferenceCountable {
public:
	explicit TActor(std::function<void()> lastWords) : mLastWords(std::move(lastWords)) {}

	~TActor() override { mLastWords(); }

	bool IsDeletedOnMainThread() const override { return false; }

private:
	std::function<void()> mLastWords;
};

} // namespace

TEST(TListTest, GrowsInSteps) {
	std::vector<int32_t> capacities;
	TList<char> list;
	for (int32_t index = 0; index < 30; ++index) {
		list.Append('x');
		if (capacities.empty() || capacities.back() != list.Capacity())
			capacities.push_back(list.Capacity());
	}
	EXPECT_THAT(capacities, ElementsAre(1, 3, 5, 7, 9, 11, 16, 24, 36));
	EXPECT_EQ(TListGrowth::CapacityAfter(99, 99), 148);
	EXPECT_EQ(TListGrowth::CapacityAfter(99, 100), 100);
	EXPECT_EQ(TListGrowth::CapacityAfter(103, 4), 128);
	EXPECT_EQ(TListGrowth::CapacityAfter(1001, 4), 1151);
	EXPECT_EQ(TListGrowth::CapacityAfter(10000, 4), 10500);
	list.Reserve(50);
	list.Reserve(10);
	list.Clear();
	EXPECT_EQ(list.Capacity(), 50);
}

TEST(TListTest, InsertAndRemoveKeepTheOrder) {
	TList<TString> list;
	list.Insert("c", 0);
	list.Insert("a", 0);
	list.Insert("b", 1);
	list.Insert("d", 3);
	EXPECT_THAT(list, ElementsAre("a", "b", "c", "d"));
	list.RemoveAt(3);
	list.RemoveAt(0);
	EXPECT_THAT(list, ElementsAre("b", "c"));
	EXPECT_EQ(list.IndexOf("c"), 1);
	EXPECT_EQ(list.IndexOf("x"), -1);
	for (int round = 0; round < 5; ++round)
		list.Append(list[0]); // moves away while it grows
	list.Insert(list[6], 0);
	EXPECT_THAT(list, ElementsAre("b", "b", "c", "b", "b", "b", "b", "b"));
}

TEST(TListTest, CopiesAreIndependent) {
	TList<TString> list{"a", "b"};
	TList<TString> copy = list;
	copy[0].Append("x");
	copy.Append("c");
	EXPECT_THAT(list, ElementsAre("a", "b"));
	const TList<TString>& same = list;
	list = same;
	list = std::move(copy);
	EXPECT_THAT(list, ElementsAre("ax", "b", "c"));
}

TEST(TListTest, ElementsAreHeldOnceAndReleasedOnce) {
	int deaths = 0;
	TPtr<TActor> actor = MakePtr<TActor>([&] { ++deaths; });
	{
		TList<TPtr<TActor>> list;
		for (int32_t index = 0; index < 20; ++index)
			list.Insert(actor, index / 2);
		EXPECT_EQ(actor->ReferenceCount(), 21);
		list.RemoveAt(7);
		EXPECT_EQ(actor->ReferenceCount(), 20);
		TList<TPtr<TActor>> copy = list;
		EXPECT_EQ(actor->ReferenceCount(), 39);
	}
	EXPECT_EQ(actor->ReferenceCount(), 1);
	actor = nullptr;
	EXPECT_EQ(deaths, 1);
}

TEST(TListTest, ElementThatGoesSeesAListInOrder) {
	TList<TPtr<TActor>> list;
	std::vector<int32_t> counts;
	for (int32_t index = 0; index < 4; ++index)
		list.Append(MakePtr<TActor>([&] { counts.push_back(list.Count()); }));
	list.RemoveAt(1);
	EXPECT_THAT(counts, ElementsAre(3));
	list.Clear();
	EXPECT_THAT(counts, ElementsAre(3, 2, 1, 0));
	list.Append(MakePtr<TActor>([&] { list.Append(nullptr); }));
	list.RemoveAt(0);
	EXPECT_EQ(list.Count(), 1);
}

TEST(TArrayTest, AnotherSizeMakesANewBlock) {
	TArray<int> array(3);
	EXPECT_THAT(array, ElementsAre(0, 0, 0));
	array[1] = 5;
	array.SetSize(3);
	EXPECT_THAT(array, ElementsAre(0, 5, 0));
	array.SetSize(2);
	EXPECT_THAT(array, ElementsAre(0, 0));
	array.SetSize(-1);
	EXPECT_EQ(array.Size(), 0);
}

TEST(TArrayTest, ElementsThatCannotBeMadeLeaveNothingBehind) {
	static int sAlive;

	struct TPicky {
		TPicky() {
			if (sAlive == 3)
				throw std::runtime_error("enough");
			++sAlive;
		}

		~TPicky() { --sAlive; }
	};

	TArray<TPicky> array(2);
	EXPECT_THROW(array.SetSize(5), std::runtime_error);
	EXPECT_EQ(array.Size(), 0);
	EXPECT_EQ(sAlive, 0);
}

TEST(TArrayTest, CopiesAreIndependent) {
	TArray<TString> array{"a", "b"};
	TArray<TString> copy = array;
	copy[0] = "x";
	EXPECT_THAT(array, ElementsAre("a", "b"));
	array = std::move(copy);
	EXPECT_THAT(array, ElementsAre("x", "b"));
	EXPECT_EQ(copy.Size(), 0);
}

TEST(TArrayTest, SamplesAreAlignedForVectorsAndZero) {
	for (int32_t size = 1; size < 100'000; size *= 7) {
		const TArray<float, TAlignedAllocator<float, 16>> samples(size);
		EXPECT_EQ(reinterpret_cast<std::uintptr_t>(samples.Items()) % 32, 0u);
		EXPECT_THAT(samples, testing::Each(0.0f));
	}
}
