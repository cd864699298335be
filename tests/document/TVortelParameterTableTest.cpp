// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelParameterTable.h"

#include "tests/support/TFrameworkFixture.h"

#include <string>

using namespace TVortelParameterTable;

class TVortelParameterTableTest : public TFrameworkFixture {};

TEST_F(TVortelParameterTableTest, DefaultsLieOnTheirConverters) {
	for (int32_t id = 0; id < kNumberOfParameters; ++id) {
		const TVortelParameterDeclaration& declaration = Declaration(id);
		const float normalized = Defaults()[static_cast<std::size_t>(id)];
		EXPECT_TRUE(normalized >= 0.0f && normalized <= 1.0f) << id;
		const float real = MakeConverter(declaration)->RealFromNormalized(normalized);
		EXPECT_NEAR(declaration.mDefaultIsReal ? real : declaration.mDefault, declaration.mDefault, 2e-3f) << id;
	}
}

TEST_F(TVortelParameterTableTest, DefaultsAsHostsSeeThem) {
	struct TExpected {
		int32_t mId;
		const char* mName;
		const char* mDefault;
		const char* mText;
		const char* mUnit;
	};

	const TExpected kExpected[] = {
	    {0, "RND:Weight", "0.5", "50", "%"},
	    {2, "MST:Pan", "0.5", "Center", ""},
	    {3, "MST:Volume", "0.5", "100.0", "%"},
	    {9, "MST:Unused", "0.0", "0.0", "%"},
	    {15, "MOD:Freq", "0.5", "1836", "Hz"},
	    {23, "MOD:Spread", "0.5", "0.0", "\xC2\xB0"},
	    {38, "TAP:Speed Up", "0.142857149", "4 beats", ""},
	    {54, "RET:Type", "0.0", "Off", ""},
	    {58, "RET:Initial Speed", "0.666666687", "1 / 64th", ""},
	    {59, "RET:Final Speed", "0.333333343", "1 / 16th", ""},
	    {60, "RET:Transition", "0.5", "1 beat", ""},
	    {77, "REV:Time", "0.625", "1 / 32nd", ""},
	    {103, "STR:Jitter", "0.0", "+/- 0.0", "%"},
	    {118, "LFI:Bit Depth", "0.583333313", "8.00", "Bit"},
	    {139, "DIS:Tone", "0.5", "0.0", "%"},
	    {160, "GAT:Vol Steps", "0.428571433", "8", ""},
	    {178, "DLY:Mode", "0.333333343", "Even", ""},
	    {201, "SHF:Range", "0.142857149", "2", "beats"},
	};
	for (const TExpected& expected : kExpected) {
		const auto converter = MakeConverter(Declaration(expected.mId));
		const float value = Defaults()[static_cast<std::size_t>(expected.mId)];
		EXPECT_STREQ(HostName(expected.mId).CString(), expected.mName);
		EXPECT_STREQ(TString::ToString(value).CString(), expected.mDefault) << expected.mName;
		EXPECT_STREQ(converter->TextFromNormalized(value).CString(), expected.mText) << expected.mName;
		EXPECT_STREQ(converter->Unit().CString(), expected.mUnit) << expected.mName;
	}
}
