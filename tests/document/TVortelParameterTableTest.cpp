// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelParameterTable.h"

#include "tests/support/TFrameworkFixture.h"

#include <map>
#include <string>

using namespace TVortelParameterTable;

class TVortelParameterTableTest : public TFrameworkFixture {};

TEST_F(TVortelParameterTableTest, EveryIdIsDeclaredOnceAndUsedIdsAreThoseOfTheDevices) {
	std::map<int32_t, int> usedByDevice;
	for (int32_t id = 0; id < kNumberOfParameters; ++id) {
		EXPECT_EQ(Declaration(id).mId, id);
		const int32_t device = DeviceOfParameter(id);
		EXPECT_GE(id, Device(device).mFirstId);
		EXPECT_LE(id, Device(device).mLastId);
		if (std::string(Declaration(id).mName) != "Unused")
			++usedByDevice[device];
	}
	const std::map<int32_t, int> expected = {{0, 4},  {1, 14}, {2, 11}, {3, 12}, {4, 11}, {5, 14},
	                                         {6, 13}, {7, 12}, {8, 11}, {9, 14}, {10, 14}};
	EXPECT_EQ(usedByDevice, expected);
}

TEST_F(TVortelParameterTableTest, DefaultsLieOnTheirConverters) {
	for (int32_t id = 0; id < kNumberOfParameters; ++id) {
		const TVortelParameterDeclaration& declaration = Declaration(id);
		const auto converter = MakeConverter(declaration);
		const float normalized = Defaults()[static_cast<std::size_t>(id)];
		EXPECT_TRUE(normalized >= 0.0f && normalized <= 1.0f) << id;
		if (declaration.mDefaultIsReal) {
			EXPECT_NEAR(converter->RealFromNormalized(normalized), declaration.mDefault, 2e-3f) << id;
		}
		if (declaration.mConverterOf >= 0) {
			EXPECT_EQ(declaration.mMaximum, Declaration(declaration.mConverterOf).mMaximum) << id;
		}
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
		EXPECT_EQ(std::string(HostName(expected.mId).CString()), expected.mName);
		EXPECT_EQ(std::string(TString::ToString(value).CString()), expected.mDefault) << expected.mName;
		EXPECT_EQ(std::string(converter->TextFromNormalized(value).CString()), expected.mText) << expected.mName;
		EXPECT_EQ(std::string(converter->Unit().CString()), expected.mUnit) << expected.mName;
	}
	EXPECT_EQ(std::string(MakeConverter(Declaration(23))->Unit().CString()), "\xC2\xB0");
}
