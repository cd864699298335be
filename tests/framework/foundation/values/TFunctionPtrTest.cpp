// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/values/TFunctionPtr.h"

#include "framework/foundation/values/TRectT.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using TCallback = TFunctionPtr<int, int>;

struct TFirst {
	virtual ~TFirst() = default;

	int First(int value) { return mFirst += value; }

	virtual int Virtual(int value) { return value; }

	int mFirst = 10;
};

struct TSecond {
	virtual ~TSecond() = default;

	int Second(int value) { return mSecond += value; }

	virtual int Other(int value) { return -value; }

	int Const(int value) const { return mSecond + value; }

	int mSecond = 20;
};

struct TBoth : TFirst, TSecond {
	int Other(int value) override { return value * 2; }
};

int Plain(int value) {
	return value + 1;
}

int PlainWithTarget(TBoth* target, int value) {
	return target->mSecond + value;
}

} // namespace

TEST(TFunctionPtrTest, CallsMethodsOfEveryBaseOnTheRightPart) {
	TBoth both;
	EXPECT_EQ(TCallback(&both, &TBoth::First)(1), 11);
	EXPECT_EQ(TCallback(&both, &TBoth::Second)(1), 21);
	EXPECT_EQ(TCallback(&both, &TSecond::Other)(4), 8);
	EXPECT_EQ(TCallback(&both, &TBoth::Virtual)(4), 4);
	EXPECT_EQ(TCallback(&both, &TBoth::Const)(1), 22);
	EXPECT_EQ(TCallback(&both, &PlainWithTarget)(1), 22);
	EXPECT_EQ(TCallback(&Plain)(1), 2);
}

TEST(TFunctionPtrTest, EqualWhenTargetAndFunctionAreEqual) {
	TBoth a;
	TBoth b;
	EXPECT_NE(TCallback(&a, &TBoth::First), TCallback(&b, &TBoth::First));
	EXPECT_NE(TCallback(&a, &TBoth::First), TCallback(&a, &TFirst::Virtual));
	EXPECT_NE(TCallback(&a, &TFirst::Virtual), TCallback(&a, &TSecond::Other));
	EXPECT_EQ(TCallback(&a, &TSecond::Second), TCallback(static_cast<TSecond*>(&a), &TSecond::Second));
	EXPECT_NE(TCallback(&Plain), TCallback(&a, &PlainWithTarget));
	EXPECT_EQ(TCallback(), TCallback(static_cast<int (*)(int)>(nullptr)));
	EXPECT_FALSE(TCallback());
}

TEST(TFunctionPtrTest, PassesReferencesAndWhatOnlyMoves) {
	int sum = 0;
	const TFunctionPtr<void, int&, std::unique_ptr<int>> callback(
	    +[](int& target, std::unique_ptr<int> value) { target += *value; });
	callback(sum, std::make_unique<int>(5));
	EXPECT_EQ(sum, 5);
}

TEST(TRectTTest, HoldsItsLeftAndTopEdgeOnly) {
	constexpr TRectT<int> rect{10, 20, 5, 6};
	EXPECT_TRUE(rect.Contains({10, 20}) && rect.Contains({14, 25}));
	EXPECT_FALSE(rect.Contains({15, 20}) || rect.Contains({10, 26}) || rect.Contains({9, 20}));
	EXPECT_EQ(rect.Intersected({12, 24, 10, 10}), (TRectT<int>{12, 24, 3, 2}));
	EXPECT_EQ(rect.Intersected({15, 20, 5, 5}), (TRectT<int>{}));
	EXPECT_EQ(rect.Intersected({12, 22, 0, 3}), (TRectT<int>{}));
}
