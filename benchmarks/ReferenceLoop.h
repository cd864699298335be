// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

/// A fixed piece of work that times are compared with, so that results of different machines can be. Never changes:
/// per frame a write into a stereo ring buffer, a four-point read that moves through it, one std::sin, and a linear
/// four-stage ladder per channel; about 270 instructions.
class ReferenceLoop {
public:
	ReferenceLoop() : mLeft(kSize), mRight(kSize) {}

	void Process(float* left, float* right, int count) {
		for (int i = 0; i < count; ++i) {
			mLeft[mWrite] = left[i];
			mRight[mWrite] = right[i];
			mPhase += 0.0003;
			if (mPhase > 6.283185307179586)
				mPhase -= 6.283185307179586;
			double position = static_cast<double>(mWrite) - 12000.0 - 8000.0 * std::sin(mPhase);
			if (position < 0.0)
				position += kSize;
			left[i] = static_cast<float>(Ladder(mStages[0], Read(mLeft, position)));
			right[i] = static_cast<float>(Ladder(mStages[1], Read(mRight, position)));
			mWrite = (mWrite + 1) & (kSize - 1);
		}
	}

private:
	static constexpr std::size_t kSize = 65536;
	using TStages = std::array<double, 5>;

	static double Read(const std::vector<float>& buffer, double position) {
		const auto whole = static_cast<std::size_t>(position);
		const double t = position - static_cast<double>(whole);
		const double a = buffer[(whole - 1) & (kSize - 1)];
		const double b = buffer[whole & (kSize - 1)];
		const double c = buffer[(whole + 1) & (kSize - 1)];
		const double d = buffer[(whole + 2) & (kSize - 1)];
		const double slope = (c - a) * 0.5;
		const double curve = a - 2.5 * b + 2.0 * c - 0.5 * d;
		const double twist = 1.5 * (b - c) + 0.5 * (d - a);
		return b + t * (slope + t * (curve + t * twist));
	}

	static double Ladder(TStages& stages, double input) {
		constexpr double kCutoff = 0.12;
		constexpr double kResonance = 1.5;
		double in = input - kResonance * stages[3];
		for (std::size_t i = 0; i < 4; ++i) {
			stages[i] += kCutoff * (in - stages[i]);
			in = stages[i];
		}
		return in;
	}

	std::vector<float> mLeft, mRight;
	std::size_t mWrite = 0;
	double mPhase = 0.0;
	std::array<TStages, 2> mStages{};
};
