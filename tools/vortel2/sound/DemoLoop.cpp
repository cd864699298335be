// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/DemoLoop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string_view>

namespace {

constexpr int32_t kRate = 44100;
constexpr double kSamplesPerSixteenth = kRate * 60.0 / 120.0 / 4.0;
constexpr std::size_t kSixteenthsPerBar = 16;
constexpr std::size_t kBars = 4;
constexpr std::size_t kFrames = std::size_t{kRate} * 8;
/// How far every second sixteenth comes late, in sixteenths.
constexpr double kSwing = 0.14;
constexpr float kPeak = 0.84f;

using TPattern = std::array<std::string_view, kBars>;

/// A digit is a hit of that strength, 9 the strongest.
constexpr TPattern kKick{"9.....4...8.....", "9.....4...8..5..", "9.....4...8.....", "9..6......8....."};
constexpr TPattern kSnare{"....9..2.2..9...", "....9..2....9..3", "....9..2.2..9...", "....9..2.3..7578"};
constexpr TPattern kClosedHat{"7352735273527352", "7352735273527.52", "7352735273527352", "73527352735.3..."};
constexpr TPattern kOpenHat{"................", ".............6..", "................", "...........6...."};

/// White, -1 to 1; the same each time.
class TNoise {
public:
	explicit TNoise(uint32_t seed) : mState(seed) {}

	double Next() {
		mState = mState * 1664525u + 1013904223u;
		return static_cast<double>(mState) / 2147483648.0 - 1.0;
	}

private:
	uint32_t mState;
};

/// Takes the lows away: the difference to a one-pole low pass, twice.
class TBrightener {
public:
	explicit TBrightener(double hertz) : mAmount(1.0 - std::exp(-2.0 * std::numbers::pi * hertz / kRate)) {}

	double Next(double sample) { return Stage(mLow2, Stage(mLow1, sample)); }

private:
	double Stage(double& low, double sample) const {
		low += mAmount * (sample - low);
		return sample - low;
	}

	double mAmount;
	double mLow1 = 0.0;
	double mLow2 = 0.0;
};

double Decay(double seconds, double halfLife) {
	return std::exp2(-seconds / halfLife);
}

double Tone(double phase) {
	return std::sin(2.0 * std::numbers::pi * phase);
}

std::vector<double> MakeKick() {
	std::vector<double> hit(kRate / 2);
	double phase = 0.0;
	TNoise noise(1);
	for (std::size_t i = 0; i < hit.size(); ++i) {
		const double seconds = static_cast<double>(i) / kRate;
		phase += (46.0 + 170.0 * Decay(seconds, 0.014)) / kRate;
		const double body = std::tanh(1.6 * Tone(phase)) * Decay(seconds, 0.075);
		hit[i] = body + 0.25 * noise.Next() * Decay(seconds, 0.0015);
	}
	return hit;
}

std::vector<double> MakeSnare() {
	std::vector<double> hit(kRate * 2 / 5);
	TNoise noise(2);
	TBrightener bright(1400.0);
	for (std::size_t i = 0; i < hit.size(); ++i) {
		const double seconds = static_cast<double>(i) / kRate;
		const double drum = Tone(182.0 * seconds) + 0.6 * Tone(331.0 * seconds);
		hit[i] = 0.45 * drum * Decay(seconds, 0.028) + 0.8 * bright.Next(noise.Next()) * Decay(seconds, 0.042);
	}
	return hit;
}

std::vector<double> MakeHat(double halfLife, uint32_t seed) {
	std::vector<double> hit(kRate * 2 / 5);
	TNoise noise(seed);
	TBrightener bright(7200.0);
	for (std::size_t i = 0; i < hit.size(); ++i)
		hit[i] = bright.Next(noise.Next()) * Decay(static_cast<double>(i) / kRate, halfLife);
	return hit;
}

class TMixer {
public:
	explicit TMixer(TStereoSound& sound) : mSound(sound) {}

	/// pan: -1 left to 1 right.
	void Play(const std::vector<double>& hit, const TPattern& pattern, double gain, double pan) {
		for (std::size_t bar = 0; bar < kBars; ++bar)
			for (std::size_t step = 0; step < kSixteenthsPerBar; ++step)
				if (const char strength = pattern[bar][step]; strength != '.')
					Add(hit, bar * kSixteenthsPerBar + step, gain * std::pow((strength - '0') / 9.0, 1.5), pan);
	}

private:
	/// What rings past the end goes on at the start.
	void Add(const std::vector<double>& hit, std::size_t sixteenth, double gain, double pan) {
		const double late = sixteenth % 2 == 1 ? kSwing : 0.0;
		auto frame =
		    static_cast<std::size_t>(std::llround((static_cast<double>(sixteenth) + late) * kSamplesPerSixteenth));
		for (const double sample : hit) {
			mSound.mLeft[frame % kFrames] += static_cast<float>(sample * gain * std::min(1.0, 1.0 - pan));
			mSound.mRight[frame % kFrames] += static_cast<float>(sample * gain * std::min(1.0, 1.0 + pan));
			++frame;
		}
	}

	TStereoSound& mSound;
};

void Normalise(TStereoSound& sound) {
	float peak = 0.0f;
	for (const std::vector<float>* side : {&sound.mLeft, &sound.mRight})
		for (const float sample : *side)
			peak = std::max(peak, std::abs(sample));
	for (std::vector<float>* side : {&sound.mLeft, &sound.mRight})
		for (float& sample : *side)
			sample *= kPeak / peak;
}

} // namespace

TStereoSound MakeDemoLoop() {
	TStereoSound sound{kRate, std::vector<float>(kFrames), std::vector<float>(kFrames)};
	TMixer mixer(sound);
	mixer.Play(MakeKick(), kKick, 1.0, 0.0);
	mixer.Play(MakeSnare(), kSnare, 0.8, -0.06);
	mixer.Play(MakeHat(0.011, 3), kClosedHat, 0.42, 0.28);
	mixer.Play(MakeHat(0.07, 4), kOpenHat, 0.42, 0.28);
	Normalise(sound);
	return sound;
}
