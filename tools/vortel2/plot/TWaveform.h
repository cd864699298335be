// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// The outline of a sound in so many equal parts, taken while the sound goes by.
class TWaveform {
public:
	/// Full scale at ±1. A part without a sample lies at 0.
	struct TPart {
		float mLowest = 0.0f;
		float mHighest = 0.0f;
		float mRms = 0.0f;
	};

	/// frames of sound will be added.
	TWaveform(int64_t frames, int32_t columns);

	/// Both of one length.
	void Add(std::span<const float> left, std::span<const float> right);

	/// side: 0 left, 1 right.
	TPart Part(int32_t side, int32_t column) const;

private:
	struct TSums {
		float mLowest = 0.0f;
		float mHighest = 0.0f;
		double mSquares = 0.0;
		int64_t mSamples = 0;

		void Add(float sample);
	};

	void AddSide(std::vector<TSums>& columns, std::span<const float> samples) const;

	int64_t mFrames;
	int64_t mPosition = 0;
	std::array<std::vector<TSums>, 2> mSides;
};
