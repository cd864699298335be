// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelValueConverter.h"

#include "tests/support/TFrameworkFixture.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

std::string TextOf(const TVortelValueConverter& converter, float real) {
	return converter.TextFromNormalized(converter.NormalizedFromReal(real)).CString();
}

/// The real value that a text stands for, NaN if it does not parse.
float RealOf(const TVortelValueConverter& converter, const char* text) {
	float normalized = -1.0f;
	if (converter.NormalizedFromText(&normalized, text))
		return converter.RealFromNormalized(normalized);
	EXPECT_EQ(normalized, -1.0f) << "a text that fails leaves the result alone";
	return kNan;
}

} // namespace

class TVortelValueConverterTest : public TFrameworkFixture {};

TEST_F(TVortelValueConverterTest, LinearStepsRoundHalvesUp) {
	TVortelValueConverter converter({2.0f, 16.0f}, "%.01f", "", "", true);
	EXPECT_EQ(converter.RealFromNormalized(0.25f), 6.0f); // 5.5
	EXPECT_EQ(converter.NormalizedFromReal(8.4f), converter.NormalizedFromReal(8.0f));
	EXPECT_EQ(TextOf(converter, 8.0f), "8");
	converter.SetStepped(false);
	EXPECT_EQ(converter.RealFromNormalized(0.25f), 5.5f);
	EXPECT_EQ(TextOf(converter, 5.5f), "5.5");
}

TEST_F(TVortelValueConverterTest, NoInputLeavesTheRange) {
	const TVortelValueConverter linear({-50.0f, 50.0f}, "%f");
	const TVortelBeatTimeValueConverter beatTime({4.0f, 256.0f}, "%f", "", "", true);
	const TVortelFrequencyValueConverter frequency({20.0f, 20000.0f}, "%f");
	const char* const names[] = {"a", "b", "c"};
	const TVortelEnumValueConverter enumeration(names);
	const TVortelEnumValueConverter empty(std::span<const char* const>{});
	for (const TVortelValueConverter* converter :
	     std::initializer_list<const TVortelValueConverter*>{&linear, &beatTime, &frequency, &enumeration, &empty}) {
		for (const float input : {-kInfinity, -1e30f, -0.0f, 1.5f, 1e30f, kInfinity, kNan}) {
			const float real = converter->RealFromNormalized(input);
			EXPECT_TRUE(real >= converter->Range().mFirst && real <= converter->Range().mSecond) << input;
			const float normalized = converter->NormalizedFromReal(input);
			EXPECT_TRUE(normalized >= 0.0f && normalized <= 1.0f) << input;
			converter->TextFromNormalized(input); // reads no name outside its list
		}
	}
}

TEST_F(TVortelValueConverterTest, PowerOfTwoStepsThroughExponents) {
	TVortelPowerOfTwoValueConverter converter({4.0f, 256.0f}, "%.01f", "", "", true);
	EXPECT_EQ(converter.RealFromNormalized(1.0f / 3.0f), 16.0f);
	for (int i = 0; i <= 100; ++i) {
		const float exponent = std::log2(converter.RealFromNormalized(static_cast<float>(i) / 100.0f));
		EXPECT_EQ(exponent, std::round(exponent));
	}
	EXPECT_EQ(TextOf(converter, 20.0f), "16");
	converter.SetStepped(false);
	EXPECT_EQ(TextOf(converter, 20.0f), "20.00");
}

TEST_F(TVortelValueConverterTest, BeatTimeReadsAsBeatsOrAsPartOfABar) {
	TVortelBeatTimeValueConverter converter({0.5f, 256.0f}, "%.01f", "", "", true);
	EXPECT_EQ(TextOf(converter, 0.5f), "8 beats");
	EXPECT_EQ(TextOf(converter, 4.0f), "1 beat");
	EXPECT_EQ(TextOf(converter, 8.0f), "1 / 8th");
	EXPECT_EQ(TextOf(converter, 32.0f), "1 / 32nd");
	converter.SetStepped(false);
	EXPECT_EQ(TextOf(converter, 22.0f), "1 / 22.00");
	EXPECT_EQ(TextOf(converter, 4.0f), "1.00 beat");
	EXPECT_EQ(TextOf(converter, 1.5f), "2.67 beats");
}

TEST_F(TVortelValueConverterTest, PowersOfTwoAreExactWithoutStepsToo) {
	for (const float minimum : {0.5f, 1.0f, 4.0f}) {
		const TVortelBeatTimeValueConverter converter({minimum, 256.0f}, "%f");
		for (float real = minimum; real <= 256.0f; real *= 2.0f)
			EXPECT_EQ(converter.RealFromNormalized(converter.NormalizedFromReal(real)), real);
	}
}

TEST_F(TVortelValueConverterTest, BeatTimeOrdinals) {
	// Ranges of one value: the text of whatever stands in a stepped converter.
	const auto text = [](float real) {
		const TVortelBeatTimeValueConverter converter({real, real + 0.001f}, "%f", "", "", true);
		return std::string(converter.TextFromNormalized(0.0f).CString());
	};
	const std::vector<std::pair<float, const char*>> expected = {
	    {12.0f, "1 / 12th"}, {13.0f, "1 / 13th"},   {21.0f, "1 / 21st"},  {22.0f, "1 / 22nd"},
	    {23.0f, "1 / 23rd"}, {112.0f, "1 / 112th"}, {101.0f, "1 / 101st"}};
	for (const auto& [real, ordinal] : expected)
		EXPECT_EQ(text(real), ordinal);
}

TEST_F(TVortelValueConverterTest, BeatTimeParsesEachOfItsForms) {
	const TVortelBeatTimeValueConverter converter({4.0f, 256.0f}, "%.01f", "", "", true);
	EXPECT_EQ(RealOf(converter, "1/16"), 16.0f);
	EXPECT_EQ(RealOf(converter, "1 / 32nd"), 32.0f);
	EXPECT_EQ(RealOf(converter, "64"), 64.0f);
	EXPECT_EQ(RealOf(converter, "0.25 BEATS"), 16.0f);
	EXPECT_EQ(RealOf(converter, "4 beats"), 4.0f); // a whole bar is below the range
	for (const char* text : {"", "x", "1/2/3", "1/", "0 beats", "-1 beat", "beats", "nan", "1/nan"})
		EXPECT_TRUE(std::isnan(RealOf(converter, text))) << text;
}

TEST_F(TVortelValueConverterTest, FrequencyCurve) {
	const TVortelFrequencyValueConverter converter({20.0f, 20000.0f}, "%.00f", "Hz");
	EXPECT_FLOAT_EQ(converter.RealFromNormalized(0.5f), 20.0f + 19980.0f * 9.0f / 99.0f);
	EXPECT_EQ(converter.RealFromNormalized(0.0f), 20.0f);
	EXPECT_EQ(converter.RealFromNormalized(1.0f), 20000.0f);
	for (int i = 0; i <= 64; ++i) {
		const float normalized = static_cast<float>(i) / 64.0f;
		EXPECT_NEAR(converter.NormalizedFromReal(converter.RealFromNormalized(normalized)), normalized, 2e-6f);
	}
}

TEST_F(TVortelValueConverterTest, EnumSurvivesTheRoundTripAtAnyLength) {
	std::vector<std::string> texts;
	for (int i = 0; i < 12; ++i)
		texts.push_back("name " + std::to_string(i));
	for (std::size_t count = 1; count <= texts.size(); ++count) {
		std::vector<const char*> names;
		for (std::size_t i = 0; i < count; ++i)
			names.push_back(texts[i].c_str());
		const TVortelEnumValueConverter converter(names);
		for (std::size_t i = 0; i < count; ++i) {
			EXPECT_EQ(RealOf(converter, names[i]), static_cast<float>(i));
			EXPECT_EQ(TextOf(converter, static_cast<float>(i)), names[i]);
		}
		EXPECT_TRUE(std::isnan(RealOf(converter, "name")));
	}
	const char* const two[] = {"off", "on"};
	const TVortelEnumValueConverter converter(two);
	EXPECT_EQ(converter.RealFromNormalized(0.4999f), 0.0f);
	EXPECT_EQ(converter.RealFromNormalized(0.5f), 1.0f);
}

TEST_F(TVortelValueConverterTest, PanningTexts) {
	const TVortelPanningValueConverter converter;
	EXPECT_EQ(TextOf(converter, 0.75f), "25 R");
	EXPECT_EQ(TextOf(converter, 0.0f), "50 L");
	EXPECT_EQ(TextOf(converter, 0.5f), "Center");
	EXPECT_EQ(RealOf(converter, "50 L"), 0.0f);
	EXPECT_EQ(RealOf(converter, "25r"), 0.75f);
	EXPECT_EQ(RealOf(converter, " 0 "), 0.5f);
	EXPECT_EQ(RealOf(converter, "Center"), 0.5f);
	EXPECT_EQ(RealOf(converter, "900 R"), 1.0f);
	for (const char* text : {"10", "right", "", "x"})
		EXPECT_TRUE(std::isnan(RealOf(converter, text))) << text;
}

TEST_F(TVortelValueConverterTest, FullBitDepthReadsOriginal) {
	TVortelLofiBitDepthConverter converter({1.0f, 13.0f}, "%.02f", "Bit");
	for (const bool stepped : {false, true}) {
		converter.SetStepped(stepped);
		EXPECT_EQ(TextOf(converter, 13.0f), "Original");
		EXPECT_EQ(RealOf(converter, "Original"), 13.0f);
		EXPECT_EQ(RealOf(converter, "8"), 8.0f);
	}
	EXPECT_EQ(TextOf(converter, 7.6f), "8");
}

TEST_F(TVortelValueConverterTest, PrefixIsWrittenAndTakenOff) {
	const TVortelValueConverter converter({0.0f, 100.0f}, "%.01f", "%", "+/- ");
	EXPECT_EQ(TextOf(converter, 12.5f), "+/- 12.5");
	EXPECT_EQ(RealOf(converter, "+/- 12.5"), 12.5f);
	EXPECT_EQ(RealOf(converter, "12,5"), 12.5f);
	EXPECT_EQ(RealOf(converter, "1000"), 100.0f);
	EXPECT_TRUE(std::isnan(RealOf(converter, "+/- ")));
}
