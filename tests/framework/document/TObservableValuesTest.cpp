// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TObservableBaseType.h"
#include "framework/document/TObservableEnum.h"
#include "framework/document/TSerializableList.h"

#include <gtest/gtest.h>

namespace {

enum class TFlavour : int32_t { kSweet, kSour };

class TFlavourValue final : public TObservableEnum<TFlavour> {
public:
	using TObservableEnum::TObservableEnum;

	TList<TString> EnumerationNames() const override { return {"Sweet", "Sour"}; }
};

template <class T>
TString TextAfter(TSerializable& value, const T& text) {
	value.FromString(text);
	return value.ToString();
}

} // namespace

TEST(TObservableValuesTest, TextFormsComeBackAndBadTextChangesNothing) {
	TObservableBaseType<bool> flag{true};
	EXPECT_EQ(TextAfter(flag, "NO"), "false");
	EXPECT_EQ(TextAfter(flag, "perhaps"), "false");
	TObservableBaseType<int> number{7};
	EXPECT_EQ(TextAfter(number, "x"), "7");
	TObservableBaseType<TColor> color;
	EXPECT_EQ(TextAfter(color, "1,2,300"), "1,2,255");
	EXPECT_EQ(TextAfter(color, "1,2"), "1,2,255");
	TObservableBaseType<TPointT<int>> point;
	EXPECT_EQ(TextAfter(point, "-3,4"), "-3,4");
	TObservableBaseType<TString> text;
	EXPECT_EQ(TextAfter(text, "a <b>"), "a <b>");
	TObservableBaseType<TDirectory> folder;
	EXPECT_EQ(TextAfter(folder, "a//b/../c"), "a/c/");
	EXPECT_TRUE(color.IsPlainText());
	EXPECT_FALSE(text.IsPlainText());
	EXPECT_FALSE(folder.IsPlainText());
}

TEST(TObservableValuesTest, ConstantKeepsItsValue) {
	TObservableConstBaseType<int> constant{5};
	constant.Set(6);
	constant.ForceSet(6);
	EXPECT_EQ(TextAfter(constant, "6"), "5");
}

TEST(TObservableValuesTest, EnumGoesByNamesAndKeepsItsIndexForUnknownOnes) {
	TFlavourValue flavour;
	EXPECT_EQ(TextAfter(flavour, "Sour"), "Sour");
	EXPECT_EQ(flavour.Value(), TFlavour::kSour);
	EXPECT_EQ(TextAfter(flavour, "sweet"), "Sour");
	EXPECT_EQ(TextAfter(flavour, ""), "Sour");
	flavour.Set(-1);
	EXPECT_EQ(flavour.ToString(), "");
	flavour.Set(2);
	EXPECT_EQ(flavour.ToString(), "");
	EXPECT_FALSE(flavour.IsPlainText());
}

TEST(TSerializableListTest, TextIsOneLineAndReadsLeniently) {
	TSerializableList<float> list(2, 0.5f);
	EXPECT_EQ(list.ToString(), "0.5 0.5");
	EXPECT_EQ(TextAfter(list, "1.0 -0.25 1e-3 x  2,5"), "1.0 -0.25 0.00100000005 0.0 0.0 2.5");
	EXPECT_EQ(TextAfter(list, "0.100000001 3.40282347e+38 1.5q"), "0.100000001 3.40282347e+38 1.5");
	EXPECT_EQ(TextAfter(list, "1\\ 2 3"), "1.0 3");
	EXPECT_EQ(TextAfter(list, ""), "");
	EXPECT_EQ(list.Count(), 0);
	TSerializableList<int> numbers;
	EXPECT_EQ(TextAfter(numbers, "+4 -5 99999999999 6 "), "4 -5 0 6 0");
}

TEST(TSerializableListTest, ElementsAreStoredInPlace) {
	TSerializableList<int> list(3, 1);
	list.Store(1, 5);
	const int* before = list.begin();
	list.FromString("7 8");
	list.Resize(3, 9);
	EXPECT_EQ(list.begin(), before);
	EXPECT_EQ(list.ToString(), "7 8 9");
	EXPECT_EQ(list[2], 9);
}
