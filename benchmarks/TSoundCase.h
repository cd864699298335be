// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "benchmarks/TBenchmarkCase.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

/// A case that has a block of sound to work on. By itself it is the floor: what every other pays for its input too.
class TSoundCase : public TBenchmarkCase {
public:
	/// A second of noise that is played over and over; a tail dies away within the first tenth of it.
	explicit TSoundCase(bool tail = false) : mSourceLeft(kLength), mSourceRight(kLength) {
		uint32_t state = 1;
		float level = 20000.0f;
		for (std::size_t i = 0; i < kLength; ++i) {
			state = state * 1664525u + 1013904223u;
			mSourceLeft[i] = level * (static_cast<float>(state >> 8) / 8388608.0f - 1.0f);
			mSourceRight[i] = level * (static_cast<float>(state & 0xFFFFFF) / 8388608.0f - 1.0f);
			if (tail)
				level *= i < kLength / 10 ? 0.995f : 0.0f;
		}
	}

	void ProcessBlock(int frames) override {
		const auto count = static_cast<std::size_t>(frames);
		if (mPosition + count > kLength)
			mPosition = 0;
		std::memcpy(mLeft.data(), &mSourceLeft[mPosition], count * sizeof(float));
		std::memcpy(mRight.data(), &mSourceRight[mPosition], count * sizeof(float));
		mPosition += count;
	}

protected:
	alignas(16) std::array<float, kMaximumBlock> mLeft{};
	alignas(16) std::array<float, kMaximumBlock> mRight{};

private:
	static constexpr std::size_t kLength = kSampleRate;

	std::vector<float> mSourceLeft, mSourceRight;
	std::size_t mPosition = 0;
};
