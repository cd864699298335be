// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/ParameterText.h"

#include "tools/vortel2/documents/TInstance.h"

#include <gtest/gtest.h>

namespace {

class TParameterTextTest : public testing::Test {
protected:
	float Read(const std::string& name, const std::string& text) const {
		return mInstance.WithDocument([&](TVortelDocument& document) {
			return ReadParameter(document, {"--param", name}, {"--param", text}).mValue;
		});
	}

	TInstance mInstance;
};

TEST_F(TParameterTextTest, WhatAParameterShowsItTakes) {
	mInstance.WithDocument([](TVortelDocument& document) {
		for (int32_t mode = 0; mode < 2; ++mode) {
			for (const int32_t id : {39, 57, 78, 159, 178, 197})
				document.SetParameterValue(id, static_cast<float>(mode) / 3.0f);
			for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id) {
				for (int32_t i = 0; i <= 37 && !IsUnusedParameter(id); ++i) {
					const std::string text = document.ParameterValueText(id, static_cast<float>(i) / 37.0f).CString();
					float parsed = -1.0f;
					EXPECT_TRUE(ParseParameterText(document, id, text, parsed)) << id << " " << text;
					EXPECT_EQ(ReadParameterText(document, {id}, {"--param", text}).mValue, parsed) << id << " " << text;
				}
			}
		}
	});
}

TEST_F(TParameterTextTest, UnitsAndCases) {
	EXPECT_EQ(Read("MOD:Frequency", "440 Hz"), Read("mod:frequ", "+440hz"));
	EXPECT_EQ(Read("RET:Decay", "30%"), 0.3f);
	EXPECT_EQ(Read("ret:init", "1/16"), Read("RET:Initial Speed", " 1 / 16TH "));
	EXPECT_EQ(Read("RET:Initial Speed", "16"), Read("RET:Initial Speed", "1 / 16"));
	EXPECT_EQ(Read("RET:Initial Speed", "1 beat"), 0.0f);
	EXPECT_EQ(Read("RET:Pan", "center"), 0.5f);
	EXPECT_EQ(Read("RET:Pan", "25 R"), Read("RET:Pan", "25 right"));
	EXPECT_EQ(Read("LFI:Bit", "4 bits"), Read("LFI:Bit Depth", "4"));
	EXPECT_EQ(Read("STR:Jitter", "+/- 20 %"), 0.2f);
	EXPECT_EQ(Read("SHF:Range", "1 beat"), 0.0f);
	EXPECT_EQ(Read("58", "0.25"), 0.25f);
	// Two parameters have this name.
	EXPECT_EQ(Read("LFI:Type", "Unsigned"), 1.0f);
	EXPECT_EQ(Read("LFI:Type", "Highpass"), 1.0f);
}

} // namespace
