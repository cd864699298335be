// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/TNeuQuant.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

// The constants are those of the published algorithm.
constexpr int kCycles = 100;
constexpr int kColorShift = 4;
constexpr int kBiasShift = 16;
constexpr int kBiasOne = 1 << kBiasShift;
constexpr int kGammaShift = 10; // of the bias against winning often
constexpr int kBetaShift = 10;  // of how fast frequencies follow
constexpr int kBeta = kBiasOne >> kBetaShift;
constexpr int kBetaGamma = kBiasOne << (kGammaShift - kBetaShift);
constexpr int kRadiusShift = 6;
constexpr int kRadiusDecrease = 30;
constexpr int kStrengthShift = 10;
constexpr int kFirstStrength = 1 << kStrengthShift;
constexpr int kNeighbourShift = 8;
constexpr int kNeighbourFull = 1 << (kStrengthShift + kNeighbourShift);
constexpr int kTransparentNeurons = 16; // begin with a ramp of alpha
constexpr int kGreen = 1;

/// A stride that visits every pixel before it comes to one again.
int StrideFor(int pixels) {
	constexpr int kPrimes[] = {499, 491, 487, 503};
	if (pixels < kPrimes[3])
		return 1;
	for (const int prime : kPrimes)
		if (pixels % prime != 0)
			return prime;
	return kPrimes[3];
}

int Distance(const TNeuQuant::TColor& a, const TNeuQuant::TColor& b) {
	return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]) + std::abs(a[3] - b[3]);
}

TNeuQuant::TColor PixelAt(std::span<const uint8_t> pixels, int index) {
	const uint8_t* const pixel = pixels.data() + static_cast<std::ptrdiff_t>(index) * 4;
	return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

std::size_t Place(int index) {
	return static_cast<std::size_t>(index);
}

} // namespace

TNeuQuant::TNeuQuant(int numberOfColors)
    : mCount(numberOfColors),
      mNeurons(Place(numberOfColors)),
      mFrequencies(Place(numberOfColors), kBiasOne / numberOfColors),
      mBiases(Place(numberOfColors), 0) {
	for (int i = 0; i < mCount; ++i) {
		const int grey = (i << (kColorShift + 8)) / mCount;
		const int alpha = i < kTransparentNeurons ? i * (256 / kTransparentNeurons) : 255;
		mNeurons[Place(i)] = {grey, grey, grey, alpha << kColorShift};
	}
}

void TNeuQuant::Learn(std::span<const uint8_t> pixels, int sampleFactor) {
	LearnFrom(pixels, sampleFactor);
	TakePaletteOut();
	BuildIndex();
}

void TNeuQuant::LearnFrom(std::span<const uint8_t> pixels, int sampleFactor) {
	const int count = static_cast<int>(pixels.size() / 4);
	const int stride = StrideFor(count);
	if (stride == 1)
		sampleFactor = 1;
	const int strengthDecrease = 30 + (sampleFactor - 1) / 3;
	const int samples = count / sampleFactor;
	const int samplesPerCycle = std::max(samples / kCycles, 1);
	int strength = kFirstStrength;
	int radius = (mCount >> 3) << kRadiusShift;
	SetRadius(radius >> kRadiusShift, strength);
	for (int sample = 1, pixel = 0; sample <= samples; ++sample) {
		TColor color = PixelAt(pixels, pixel);
		for (int& part : color)
			part <<= kColorShift;
		const int winner = Contest(color);
		MoveTowards(winner, color, strength, kFirstStrength);
		MoveNeighbours(winner, static_cast<int>(mStrengths.size()), color);
		pixel = (pixel + stride) % count;
		if (sample % samplesPerCycle == 0) {
			strength -= strength / strengthDecrease;
			radius -= radius / kRadiusDecrease;
			SetRadius(radius >> kRadiusShift, strength);
		}
	}
}

/// How strongly each neighbour is taken along; a radius of 1 takes none.
void TNeuQuant::SetRadius(int radius, int strength) {
	mStrengths.clear();
	if (radius <= 1)
		return;
	const int squared = radius * radius;
	for (int i = 0; i < radius; ++i)
		mStrengths.push_back(strength * (((squared - i * i) << kNeighbourShift) / squared));
}

/// The neuron that is nearest, with a handicap for those that have won often.
int TNeuQuant::Contest(const TColor& color) {
	int nearest = 0;
	int winner = 0;
	int leastDistance = std::numeric_limits<int>::max();
	int leastBiased = std::numeric_limits<int>::max();
	for (int i = 0; i < mCount; ++i) {
		const int distance = Distance(mNeurons[Place(i)], color);
		if (distance < leastDistance) {
			leastDistance = distance;
			nearest = i;
		}
		int& bias = mBiases[Place(i)];
		const int biased = distance - (bias >> (kBiasShift - kColorShift));
		if (biased < leastBiased) {
			leastBiased = biased;
			winner = i;
		}
		const int share = mFrequencies[Place(i)] >> kBetaShift;
		mFrequencies[Place(i)] -= share;
		bias += share << kGammaShift;
	}
	mFrequencies[Place(nearest)] += kBeta;
	mBiases[Place(nearest)] -= kBetaGamma;
	return winner;
}

void TNeuQuant::MoveTowards(int neuron, const TColor& color, int strength, int full) {
	TColor& moved = mNeurons[Place(neuron)];
	for (std::size_t i = 0; i < moved.size(); ++i)
		moved[i] -= static_cast<int>(int64_t{strength} * (moved[i] - color[i]) / full);
}

void TNeuQuant::MoveNeighbours(int neuron, int radius, const TColor& color) {
	for (int distance = 1; distance < radius; ++distance) {
		const int strength = mStrengths[Place(distance)];
		if (neuron + distance < mCount)
			MoveTowards(neuron + distance, color, strength, kNeighbourFull);
		if (neuron - distance >= 0)
			MoveTowards(neuron - distance, color, strength, kNeighbourFull);
	}
}

void TNeuQuant::TakePaletteOut() {
	constexpr int kHalf = 1 << (kColorShift - 1);
	mPalette = mNeurons;
	for (TColor& color : mPalette)
		for (int& part : color)
			part = std::clamp((part + kHalf) >> kColorShift, 0, 255);
	std::stable_sort(
	    mPalette.begin(), mPalette.end(), [](const TColor& a, const TColor& b) { return a[kGreen] < b[kGreen]; });
}

void TNeuQuant::BuildIndex() {
	for (int green = 0; green < 256; ++green) {
		const auto found =
		    std::lower_bound(mPalette.begin(), mPalette.end(), green, [](const TColor& color, int value) {
			    return color[kGreen] < value;
		    });
		mIndex[Place(green)] = static_cast<int>(found - mPalette.begin());
	}
}

/// From the entry with the same green outward in both directions, until green alone is farther away than the best.
int TNeuQuant::BestEntry(const TColor& color) const {
	int best = 0;
	int least = std::numeric_limits<int>::max();
	const auto isBeyond = [&](int entry) { return std::abs(mPalette[Place(entry)][kGreen] - color[kGreen]) >= least; };
	const auto look = [&](int entry) {
		const int distance = Distance(mPalette[Place(entry)], color);
		if (distance < least) {
			least = distance;
			best = entry;
		}
	};
	int up = mIndex[Place(color[kGreen])];
	int down = up - 1;
	while (up < mCount || down >= 0) {
		if (up < mCount) {
			if (isBeyond(up))
				up = mCount;
			else
				look(up++);
		}
		if (down >= 0) {
			if (isBeyond(down))
				down = -1;
			else
				look(down--);
		}
	}
	return best;
}
