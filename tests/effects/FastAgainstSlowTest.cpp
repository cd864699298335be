// SPDX-License-Identifier: GPL-3.0-or-later
// Every effect but the Retrigger (which has a test of its own) against its slow twin, in slices of odd lengths, with
// retriggers close together and far apart.

#include "effects/CreateVortelDspDevices.h"
#include "tests/effects/SlowEffects.h"
#include "tests/effects/TDspDeviceFixture.h"

#include <map>
#include <string>

namespace {

constexpr int kDistortion = 7;
/// A millionth of full scale.
constexpr double kTolerance = 32768.0 * 1e-6;
/// A delay of hundreds of samples is known to the precision of a float; feedback adds the difference up.
constexpr double kContinuousTimes = 20.0;

struct TCase {
	std::string mName;
	int mDevice;
	int mRate;
	std::map<int, float> mValues; // normalised, by parameter id
	double mTolerance = kTolerance;
};

void PrintTo(const TCase& testCase, std::ostream* stream) {
	*stream << testCase.mName;
}

class FastAgainstSlowTest : public TDspDeviceFixture, public ::testing::WithParamInterface<TCase> {
protected:
	void SetValue(int id, float value) { mpDocument->Parameter(id)->SetValue(value); }

	/// The Distortion's ramps do not jump at a start; they arrive in silence.
	static void LetRampsArrive(TVortelDspDevice& device, int rate) {
		const std::size_t count = static_cast<std::size_t>(rate);
		TStereo silence{TSignal(count), TSignal(count)};
		device.Start();
		Run(device, silence, {256}, 0, count / 2);
		device.Stop();
		Run(device, silence, {256}, count / 2);
	}

	/// Bursts of noise over a sine: steps in level, quiet and loud stretches, sides that differ.
	static TStereo Sound(int count, int rate) {
		TStereo sound{TestSignals::Sine(count, 110.0, rate, 9000.0), TestSignals::Sine(count, 173.0, rate, 7000.0)};
		const TSignal noise = TestSignals::Noise(count, 12000.0f);
		for (std::size_t i = 0; i < noise.size(); ++i) {
			const float level = i / 3000 % 3 == 0 ? 1.0f : i / 3000 % 3 == 1 ? 0.05f : 0.0f;
			sound.mLeft[i] += level * noise[i];
			sound.mRight[i] -= level * noise[noise.size() - 1 - i];
		}
		return sound;
	}
};

TEST_P(FastAgainstSlowTest, SameSamplesInAnySlices) {
	const TCase& testCase = GetParam();
	for (const auto& [id, value] : testCase.mValues)
		SetValue(id, value);
	TTestHost host(testCase.mRate, 130.0f);
	const auto device = Attach(CreateVortelDspDevice(*mpDocument, &host, testCase.mDevice));
	const auto slow = TSlowEffect::Make(testCase.mDevice, {&Scene(), testCase.mRate, 130.0});

	const int count = testCase.mRate * 3 / 2;
	const std::size_t fade = static_cast<std::size_t>(testCase.mRate * 0.001 + 0.5);
	const std::vector<std::size_t> retriggers{
	    static_cast<std::size_t>(count / 7), static_cast<std::size_t>(count / 7) + fade / 2,
	    static_cast<std::size_t>(count / 2), static_cast<std::size_t>(count)};
	const TStereo input = Sound(count, testCase.mRate);
	TStereo fast = input;
	if (testCase.mDevice == kDistortion)
		LetRampsArrive(*device, testCase.mRate);
	device->OnReseed(4711);
	device->Start();
	slow->Start();
	std::size_t at = 0;
	double worst = 0.0;
	std::size_t worstAt = 0;
	for (const std::size_t next : retriggers) {
		Run(*device, fast, {1, 300, 7, 64, 2}, at, next);
		for (; at < next; ++at) {
			const auto [left, right] = slow->Process(input.mLeft[at], input.mRight[at]);
			if (at < fade)
				continue; // the frame's own fade
			const double difference = std::max(std::abs(left - fast.mLeft[at]), std::abs(right - fast.mRight[at]));
			if (!(difference <= worst)) {
				worst = difference;
				worstAt = at;
			}
		}
		device->Start();
		slow->Retrigger();
	}
	EXPECT_LE(worst, testCase.mTolerance) << "at sample " << worstAt;
}

INSTANTIATE_TEST_SUITE_P(
    Effects, FastAgainstSlowTest,
    ::testing::Values(
        TCase{"ModulatorDefault", 1, 44100, {}},
        TCase{
            "ModulatorFM",
            1,
            48000,
            {{17, 0.3f}, {18, 0.7f}, {19, 0.2f}, {20, 0.9f}, {21, 0.0f}, {22, 0.1f}, {23, 0.8f}}},
        TCase{"ModulatorSlow", 1, 8000, {{17, 0.0f}, {20, 0.0f}, {23, 0.0f}}},
        TCase{"TapeStop", 2, 44100, {{37, 0.7f}}}, TCase{"TapeStart", 2, 96000, {{38, 0.8f}, {40, 1.0f}}},
        TCase{"TapeStopStart", 2, 44100, {{37, 0.8f}, {38, 0.9f}, {39, 0.0f}, {40, 0.0f}}},
        TCase{"TapeStartStop", 2, 8000, {{37, 1.0f}, {38, 0.85f}, {39, 0.67f}, {40, 0.67f}}},
        TCase{"Reverser", 4, 44100, {}},
        TCase{"ReverserCrossed", 4, 48000, {{77, 0.55f}, {78, 0.0f}, {79, 0.9f}, {80, 0.2f}}},
        TCase{"ReverserTight", 4, 44100, {{77, 1.0f}, {79, 0.3f}, {80, 0.31f}}},
        TCase{"ReverserPoint", 4, 22050, {{79, 0.4f}, {80, 0.4f}}}, TCase{"Stretcher", 5, 44100, {}},
        TCase{"StretcherModulated", 5, 48000, {{97, 1.0f}, {98, 0.1f}, {99, 0.0f}, {100, 1.0f}}},
        TCase{"StretcherFrozen", 5, 8000, {{97, 0.0f}, {98, 0.0f}, {99, 1.0f}, {100, 0.0f}}},
        TCase{"Lofi", 6, 44100, {}}, TCase{"LofiFM", 6, 48000, {{117, 0.3f}, {118, 1.0f}, {120, 0.9f}, {121, 0.0f}}},
        TCase{"LofiUnsigned", 6, 22050, {{117, 0.6f}, {118, 0.4f}, {119, 1.0f}, {120, 0.2f}}},
        TCase{"LofiOneBit", 6, 44100, {{118, 0.0f}, {119, 1.0f}}}, TCase{"Razor", 7, 44100, {}},
        TCase{"RazorHot", 7, 44100, {{138, 1.0f}, {139, 0.9f}, {141, 0.5f}}, 1.0},
        TCase{"Shape", 7, 44100, {{137, 0.34f}, {138, 0.6f}, {139, 0.2f}}},
        TCase{"Fold", 7, 44100, {{137, 0.67f}, {138, 0.7f}}},
        TCase{"FoldHot", 7, 96000, {{137, 0.67f}, {138, 1.0f}}, 1.0},
        TCase{"Shift", 7, 44100, {{137, 1.0f}, {138, 0.5f}, {139, 0.7f}}}, TCase{"Gater", 8, 44100, {}},
        TCase{"GaterSmooth", 8, 48000, {{157, 1.0f}, {158, 0.9f}, {160, 0.2f}}},
        TCase{"GaterFree", 8, 8000, {{157, 0.0f}, {158, 0.77f}, {159, 0.0f}, {160, 1.0f}}},
        TCase{"Delay", 9, 44100, {}},
        TCase{
            "DelaySpread",
            9,
            48000,
            {{177, 0.9f}, {178, 0.0f}, {179, 0.9f}, {180, 1.0f}, {182, 0.8f}},
            kContinuousTimes},
        TCase{"DelayTriplet", 9, 8000, {{177, 1.0f}, {178, 0.67f}, {179, 1.0f}, {182, 0.1f}}, kContinuousTimes},
        TCase{"Shuffler", 10, 44100, {{198, 0.8f}, {199, 0.4f}}},
        TCase{"ShufflerAll", 10, 48000, {{197, 0.0f}, {198, 1.0f}, {199, 0.6f}, {200, 0.7f}, {202, 0.4f}, {203, 0.5f}}},
        TCase{"ShufflerBackwards", 10, 8000, {{198, 1.0f}, {199, 0.9f}, {201, 1.0f}, {203, 1.0f}}},
        TCase{"ShufflerLive", 10, 44100, {{198, 0.9f}, {199, 0.9f}, {200, 0.0f}}}),
    [](const auto& given) { return given.param.mName; });

/// The parameters of an effect that glide, by id, with the share of the way that a sample covers at 44100 Hz.
struct TGlideCase {
	int mDevice;
	std::map<int, float> mShares;
	std::map<int, float> mValues;
};

/// The twin reads each sample's values from a scene of its own, where they have been put down step by step.
TEST_F(FastAgainstSlowTest, GlidingParametersOfTheEffects) {
	constexpr int kRate = 48000;
	const std::map<int, float> distortion{{138, 1.0f / 32.0f}, {140, 1.0f / 256.0f}, {141, 1.0f / 256.0f}};
	const std::vector<TGlideCase> cases{
	    {1, {{18, 1.0f / 64.0f}, {19, 1.0f / 64.0f}, {20, 1.0f / 64.0f}, {23, 1.0f / 64.0f}}, {}},
	    {7, distortion, {{137, 0.0f}}},
	    {7, distortion, {{137, 0.34f}}},
	    {7, {{138, 1.0f / 32.0f}}, {{137, 0.34f}, {140, 0.75f}, {141, 0.5f}}},
	    {7, {{140, 1.0f / 256.0f}}, {{137, 0.67f}, {138, 0.4f}, {141, 0.0f}}},
	    {7, distortion, {{137, 0.67f}}},
	    {7, distortion, {{137, 1.0f}}},
	    {9, {{181, 1.0f / 64.0f}, {183, 1.0f / 64.0f}}, {{177, 0.9f}, {179, 0.3f}}}};
	for (const TGlideCase& glideCase : cases) {
		SCOPED_TRACE(testing::Message() << "case " << &glideCase - cases.data());
		TTestHost host(kRate, 130.0f);
		TVortelScene& slowScene = *mpDocument->ActiveProgram()->Scene(1);
		for (const auto& [id, value] : glideCase.mValues) {
			SetValue(id, value);
			slowScene.SetParameterValue(id, value);
		}
		std::map<int, TRampable<float>> glides;
		for (const auto& [id, share] : glideCase.mShares) {
			SetValue(id, 0.3f);
			glides[id] = TRampable<float>(0.3f, share);
			glides[id].SetScale(44100.0f / static_cast<float>(kRate));
		}
		const auto device = Attach(CreateVortelDspDevice(*mpDocument, &host, glideCase.mDevice));
		const auto slow = TSlowEffect::Make(glideCase.mDevice, {&slowScene, kRate, 130.0});
		LetRampsArrive(*device, kRate);
		const TStereo input = Sound(kRate / 2, kRate);
		TStereo fast = input;
		device->Start();
		slow->Start();
		constexpr std::array<std::size_t, 6> kSlices{1, 300, 7, 64, 2, 450};
		constexpr std::size_t kFade = 48;
		for (std::size_t at = 0, slice = 0; at < input.Size(); ++slice) {
			for (auto& [id, glide] : glides) {
				const bool turns = (slice + static_cast<std::size_t>(id)) % 11 == 0;
				if (turns)
					SetValue(id, glide.Target() > 0.5f ? 0.15f : 0.9f);
				glide.SetTarget(Scene().ParameterValue(id));
			}
			const std::size_t count = std::min(kSlices[slice % kSlices.size()], input.Size() - at);
			ProcessSlice(*device, fast, at, count);
			for (const std::size_t end = at + count; at < end; ++at) {
				for (auto& [id, glide] : glides) {
					glide.Step();
					slowScene.SetParameterValue(id, glide.Current());
				}
				const auto [left, right] = slow->Process(input.mLeft[at], input.mRight[at]);
				if (at >= kFade) {
					ASSERT_NEAR(fast.mLeft[at], left, kTolerance) << at;
					ASSERT_NEAR(fast.mRight[at], right, kTolerance) << at;
				}
			}
		}
	}
}

/// The Shuffler's ring goes round after seven and a half seconds, with read heads in front of the write head.
TEST_F(FastAgainstSlowTest, ShufflerBeyondTheEndOfItsRing) {
	for (const auto& [id, value] :
	     std::map<int, float>{{198, 0.3f}, {199, 0.6f}, {200, 0.9f}, {201, 1.0f}, {203, 0.5f}})
		SetValue(id, value);
	constexpr int kRate = 8000;
	TTestHost host(kRate, 130.0f);
	const auto device = Attach(CreateVortelDspDevice(*mpDocument, &host, 10));
	const auto slow = TSlowEffect::Make(10, {&Scene(), kRate, 130.0});
	const TStereo input = Sound(kRate * 20, kRate);
	TStereo fast = input;
	device->OnReseed(4711);
	device->Start();
	slow->Start();
	Run(*device, fast, {256, 1, 511});
	for (std::size_t i = 0; i < input.Size(); ++i) {
		const auto [left, right] = slow->Process(input.mLeft[i], input.mRight[i]);
		if (i >= 8) {
			ASSERT_NEAR(fast.mLeft[i], left, kTolerance) << i;
			ASSERT_NEAR(fast.mRight[i], right, kTolerance) << i;
		}
	}
}

/// Not-a-number, infinity and absurd levels leave nothing behind in any effect or filter: a second later the sound is
/// as loud as it would be without.
TEST_F(FastAgainstSlowTest, InsaneInputIsForgotten) {
	constexpr int kRate = 8000;
	constexpr float kInfinity = std::numeric_limits<float>::infinity();
	const std::vector<float> insane{std::numeric_limits<float>::quiet_NaN(), kInfinity, -kInfinity, 1e30f, -1e30f};
	// Both then play what has just come in: the Stretcher at full speed, the Tape Stop running up.
	SetValue(97, 1.0f);
	SetValue(40, 1.0f);
	for (int index = 1; index <= 10; ++index) {
		for (const float filterType : {0.0f, 0.25f, 0.5f, 0.75f, 1.0f}) {
			const int firstId = mpDocument->Device(index)->FirstParameterId();
			SetValue(firstId + VortelParameterIds::kFilterType, filterType);
			SetValue(firstId + VortelParameterIds::kFilterQ, 0.8f);
			TTestHost host(kRate);
			const auto tail = [&](const std::vector<float>& disturbance) {
				const auto device = Attach(CreateVortelDspDevice(*mpDocument, &host, index));
				TStereo sound = Sound(kRate * 2, kRate);
				for (std::size_t i = 0; i < 500 && !disturbance.empty(); ++i)
					sound.mLeft[i + 1000] = sound.mRight[i + 1000] = disturbance[i % disturbance.size()];
				device->Start();
				Run(*device, sound, {256});
				sound.mLeft.insert(sound.mLeft.end(), sound.mRight.begin() + 9500, sound.mRight.end());
				return TestSignals::Peak(TSignal(sound.mLeft.begin() + 9500, sound.mLeft.end()));
			};
			const double expected = tail({});
			const double found = tail(insane);
			EXPECT_TRUE(found <= 2.0 * expected && found >= 0.5 * expected)
			    << "device " << index << ", filter " << filterType << ": " << found << " instead of " << expected;
		}
	}
}

} // namespace
