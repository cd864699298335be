// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// Finds the palette that fits an image best: a self-organising chain of neurons (A. H. Dekker, "Kohonen neural
/// networks for optimal colour quantization", Network 5, 1994), here in the four dimensions red, green, blue and alpha.
///
///     TNeuQuant network(256);
///     network.Learn(pixels, 1);
///     network.Palette()[network.BestEntry(pixel)]
class TNeuQuant {
public:
	using TColor = std::array<int, 4>; // red, green, blue, alpha

	explicit TNeuQuant(int numberOfColors);

	/// pixels: red, green, blue and alpha in turn; every sampleFactor-th is looked at. Makes the palette.
	void Learn(std::span<const uint8_t> pixels, int sampleFactor);

	const std::vector<TColor>& Palette() const noexcept { return mPalette; }

	int BestEntry(const TColor& color) const;

private:
	void LearnFrom(std::span<const uint8_t> pixels, int sampleFactor);
	int Contest(const TColor& color);
	void MoveTowards(int neuron, const TColor& color, int strength, int full);
	void MoveNeighbours(int neuron, int radius, const TColor& color);
	void SetRadius(int radius, int strength);
	void TakePaletteOut();
	void BuildIndex();

	int mCount;
	std::vector<TColor> mNeurons; // in units of 1 / 2^kColorShift
	std::vector<int> mFrequencies;
	std::vector<int> mBiases;
	std::vector<int> mStrengths;   // of the neighbours, by distance
	std::vector<TColor> mPalette;  // by rising green
	std::array<int, 256> mIndex{}; // where to begin the search for a green
};
