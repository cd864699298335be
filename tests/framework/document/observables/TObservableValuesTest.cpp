// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TObservableEnum.h"
#include "framework/document/observables/TSerializableList.h"

#include <gtest/gtest.h>

namespace {

class TFlavourValue final : public TObservableEnumBase {
public:
	TList<TString> EnumerationNames() const override { return {"Sweet", "Sour"}; }
};

TString TextAfter(TSerializable&& value, const TString& text) {
	value.FromString(text);
	return value.ToString();
}

} // namespace

TEST(TObservableValuesTest, TextFormsComeBackAndBadTextChangesNothing) {
	EXPECT_EQ(TextAfter(TObservableBaseType<bool>(true), "NO"), "false");
	EXPECT_EQ(TextAfter(TObservableBaseType<bool>(true), "perhaps"), "true");
	EXPECT_EQ(TextAfter(TObservableBaseType<int>(7), "x"), "7");
	EXPECT_EQ(TextAfter(TObservableConstBaseType<int>(5), "6"), "5");
	EXPECT_EQ(TextAfter(TObservableBaseType<TColor>(), "1,2,300"), "1,2,255");
	EXPECT_EQ(TextAfter(TObservableBaseType<TColor>(TColor{1, 2, 3}), "1,2"), "1,2,3");
	EXPECT_EQ(TextAfter(TObservableBaseType<TPointT<int>>(), "-3,4"), "-3,4");
	EXPECT_EQ(TextAfter(TObservableBaseType<TString>(), "a <b>"), "a <b>");
	EXPECT_EQ(TextAfter(TObservableBaseType<TDirectory>(), "a//b/../c"), "a/c/");
}

TEST(TObservableValuesTest, EnumGoesByNamesAndKeepsItsIndexForUnknownOnes) {
	TFlavourValue flavour;
	for (const char* text : {"Sour", "sweet", ""}) {
		flavour.FromString(text);
		EXPECT_EQ(flavour.ToString(), "Sour");
	}
	for (const int index : {-1, 2}) {
		flavour.Set(index);
		EXPECT_EQ(flavour.ToString(), "");
	}
}

TEST(TSerializableListTest, TextIsOneLineAndReadsLeniently) {
	using TFloats = TSerializableList<float>;
	EXPECT_EQ(TFloats(2, 0.5f).ToString(), "0.5 0.5");
	EXPECT_EQ(TextAfter(TFloats(), "1.0 -0.25 1e-3 x  2,5"), "1.0 -0.25 0.00100000005 0.0 0.0 2.5");
	EXPECT_EQ(TextAfter(TFloats(), "0.100000001 3.40282347e+38 1.5q"), "0.100000001 3.40282347e+38 1.5");
	EXPECT_EQ(TextAfter(TFloats(), "1\\ 2 3"), "1.0 3");
	EXPECT_EQ(TextAfter(TFloats(2, 0.5f), ""), "");
	EXPECT_EQ(TextAfter(TSerializableList<int>(), "+4 -5 99999999999 6 "), "4 -5 0 6 0");
}

TEST(TSerializableListTest, ElementsAreStoredInPlace) {
	TSerializableList<int> list(3, 1);
	list.Store(1, 5);
	const int* before = list.begin();
	list.FromString("7 8");
	list.Resize(3, 9);
	EXPECT_EQ(list.begin(), before) << "as other threads read them";
	EXPECT_EQ(list.ToString(), "7 8 9");
}
