// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVABiquadFilter.h"
#include "tests/effects/TestSignals.h"

#include <gtest/gtest.h>

namespace {

double GainInDecibels(TVABiquadFilter& filter, double frequency) {
	filter.ClearState();
	const auto signal = TestSignals::Sine(8820, frequency, 44100.0, 1.0);
	double peak = 0.0;
	for (std::size_t i = 0; i < signal.size(); ++i) {
		const double output = filter.ProcessLeft(signal[i]);
		if (i > 4410)
			peak = std::fmax(peak, std::abs(output));
	}
	return 20.0 * std::log10(peak);
}

} // namespace

TEST(TVABiquadFilterTest, ShelfLeavesTheLowsAndMovesTheHighs) {
	for (const double gain : {-8.0, 0.0, 8.0}) {
		TVABiquadFilter filter;
		filter.SetHighShelf(1200.0, 44100.0, 1.5, gain);
		EXPECT_NEAR(GainInDecibels(filter, 20.0), 0.0, 0.01);
		EXPECT_NEAR(GainInDecibels(filter, 1200.0), gain / 2.0, 0.01); // half the gain at the corner
		EXPECT_NEAR(GainInDecibels(filter, 15000.0), gain, 0.1);
	}
}

TEST(TVABiquadFilterTest, ChannelsStayApartAndClearForgets) {
	TVABiquadFilter filter;
	filter.SetHighShelf(1200.0, 44100.0, 1.5, 6.0);
	const double first = filter.ProcessLeft(1.0);
	EXPECT_EQ(filter.ProcessRight(0.0), 0.0);
	EXPECT_EQ(filter.ProcessRight(1.0), first);
	filter.ClearState();
	EXPECT_EQ(filter.ProcessLeft(0.0), 0.0);
	EXPECT_EQ(filter.ProcessRight(1.0), first);
}

TEST(TVABiquadFilterTest, ExtremeSettingsStayStable) {
	for (const double frequency : {0.0, 1e6}) {
		TVABiquadFilter filter;
		filter.SetHighShelf(frequency, 44100.0, 0.0, 8.0);
		double last = 0.0;
		for (int i = 0; i < 100000; ++i)
			last = filter.ProcessLeft(i == 0 ? 1.0 : 0.0);
		EXPECT_LT(std::abs(last), 1e-3);
	}
}
