// SPDX-License-Identifier: GPL-3.0-or-later
// Minutes of sound with random settings in every bar, in blocks of random sizes.
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "framework/foundation/values/TRandom.h"
#include "plugin/TProgramInstance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <numbers>
#include <optional>
#include <span>
#include <tuple>

namespace {

constexpr int32_t kRate = 44100;
constexpr double kTempo = 133.0;
constexpr double kFramesPerBar = 4.0 * 60.0 / kTempo * kRate;
constexpr int32_t kLargestBlock = 2048;
#ifdef NDEBUG
constexpr int32_t kSeconds = 600;
#else
constexpr int32_t kSeconds = 60;
#endif

using TChanges = std::vector<TProgramPluginShell::TParameterChange>;

/// Draws a value for a parameter, or nothing to leave it at its default.
using TDraw = std::function<std::optional<double>(int32_t id, double random)>;

/// An instance whose effects come and go, and the sound that it makes, block by block.
class TLongRender {
public:
	TLongRender(std::span<const int32_t> devices, TDraw draw) : mDraw(std::move(draw)) {
		TRandom::SetState(1); // the Stretcher draws from it
		mRandom.SetSeed(20);
		mpInstance->Shell().Setup(kRate, kLargestBlock);
		mpInstance->Shell().AsGui([&] {
			for (int32_t scene = 0; scene < 4; ++scene)
				for (const int32_t device : devices)
					mpInstance->Document().Program(0)->Scene(scene)->Sequencer()->Sequence(device).FromString(
					    kRows[static_cast<std::size_t>(device + scene) % std::size(kRows)]);
		});
		mTransport.mFlags =
		    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
		mTransport.mTempo = kTempo;
		mTransport.mIsPlaying = true;
	}

	/// Calls with the left and the right samples of each block.
	template <class TSource, class TListener>
	void Run(int32_t seconds, TSource source, TListener listen) {
		const int64_t end = int64_t{seconds} * kRate;
		for (int64_t frame = 0; frame < end;) {
			const auto size =
			    static_cast<int32_t>(1 + mRandom.NextInt() % (mRandom.NextInt() % 2 ? 100 : kLargestBlock));
			const auto count = static_cast<std::size_t>(size);
			for (std::size_t i = 0; i < count; ++i)
				std::tie(mLeft[i], mRight[i]) = source(frame + static_cast<int64_t>(i));
			Process(frame, size);
			listen(std::span(mLeft.data(), count), std::span(mRight.data(), count));
			frame += size;
		}
	}

private:
	static constexpr const char* kRows[]{
	    "*+++*+++****++++", "----*+++++++*+*+", "********--------", "*+++++++++++++++"};

	void Process(int64_t frame, int32_t size) {
		TChanges changes;
		std::vector<TMidiEvent> events;
		if (static_cast<double>(frame) >= mNextBar) {
			mNextBar += kFramesPerBar;
			changes = DrawParameters();
			events.push_back({0x90, static_cast<uint8_t>(mRandom.NextInt() % 4), 100, 0});
		}
		mTransport.mBeatPosition = static_cast<double>(frame) * kTempo / 60.0 / kRate;
		TProgramPluginShell::TBlock block;
		block.mpLeftIn = block.mpLeftOut = mLeft.data();
		block.mpRightIn = block.mpRightOut = mRight.data();
		block.mSamples = size;
		block.mpTransport = &mTransport;
		block.mParameterChanges = changes;
		block.mMidiEvents = events;
		mpInstance->Shell().Process(block);
		mpInstance->Shell().Tick();
	}

	TChanges DrawParameters() {
		TChanges changes;
		for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
			if (const std::optional<double> value = mDraw(id, mRandom.NextDouble()))
				changes.push_back({0, id, static_cast<float>(*value)});
		return changes;
	}

	const TOwnerPtr<TProgramInstance> mpInstance = TProgramInstance::Create();
	TDraw mDraw;
	TParkMillerPRNG mRandom;
	TTransportInfo mTransport;
	double mNextBar = 0.0;
	std::vector<float> mLeft = std::vector<float>(kLargestBlock);
	std::vector<float> mRight = std::vector<float>(kLargestBlock);
};

constexpr std::array<int32_t, 10> kAllEffects{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

int32_t CommonParameter(int32_t id) {
	return id - TVortelParameterTable::Device(TVortelParameterTable::DeviceOfParameter(id)).mFirstId;
}

/// Levels multiply along the chain of ten: beyond unity, or with a filter that sings, they would only show how large a
/// float can be.
std::optional<double> DrawLevelHeaded(int32_t id, double random) {
	if (id < 10)
		return std::nullopt;
	switch (CommonParameter(id)) {
	case VortelParameterIds::kPanning:
		return 0.4 + 0.2 * random;
	case VortelParameterIds::kVolume:
		return 0.5 * random;
	case VortelParameterIds::kFilterQ:
		return 0.5 * random;
	default:
		return id == 179 ? 0.8 * random : random; // the echoes' feedback
	}
}

/// What came out, in a number that any bit changes.
struct TOutcome {
	uint64_t mHash = 14695981039346656037u;
	double mPeak = 0.0;
	double mSumOfSquares = 0.0;
	bool mIsFinite = true;
	friend bool operator==(const TOutcome&, const TOutcome&) = default;

	void Add(std::span<const float> samples) {
		for (const float sample : samples) {
			mHash = (mHash ^ std::bit_cast<uint32_t>(sample)) * 1099511628211u;
			mIsFinite = mIsFinite && std::isfinite(sample);
			mPeak = std::max(mPeak, std::abs(static_cast<double>(sample)));
			mSumOfSquares += static_cast<double>(sample) * static_cast<double>(sample);
		}
	}
};

TOutcome PlayAllEffects() {
	TLongRender render(kAllEffects, DrawLevelHeaded);
	TParkMillerPRNG noise;
	noise.SetSeed(3);
	TOutcome outcome;
	render.Run(
	    kSeconds,
	    [&](int64_t frame) {
		    const double burst = std::exp(-static_cast<double>(frame % 11025) / 2000.0);
		    const double sine =
		        0.5 * burst * std::sin(2.0 * std::numbers::pi * 70.0 * static_cast<double>(frame) / kRate);
		    const double hiss = 0.3 * burst * (noise.NextDouble() - 0.5);
		    return std::pair(static_cast<float>(sine + hiss), static_cast<float>(sine - hiss));
	    },
	    [&](std::span<const float> left, std::span<const float> right) {
		    outcome.Add(left);
		    outcome.Add(right);
	    });
	return outcome;
}

std::pair<float, float> Hum(int64_t frame) {
	const double sine = 0.5 * std::sin(2.0 * std::numbers::pi * 55.0 * static_cast<double>(frame) / kRate);
	return {static_cast<float>(sine), static_cast<float>(sine)};
}

} // namespace

TEST(LongRenderTest, AllEffectsStayFiniteAndRepeatThemselves) {
	const TOutcome outcome = PlayAllEffects();
	EXPECT_TRUE(outcome.mIsFinite);
	EXPECT_LT(outcome.mPeak, 32.0);
	EXPECT_GT(outcome.mSumOfSquares / kRate / kSeconds, 1e-4) << "it is not silence that repeats itself";
	EXPECT_EQ(PlayAllEffects(), outcome);
}

// What fades over a millisecond covers 0.04 of the distance in a sample, and the distance may be several times the
// level around. The other effects jump by design: the Modulator's phase and the type of a filter at once, Lofi's
// samples and the curves of the Distortion all the time, the Delay when the first sample of an empty line comes round,
// the Tape Stop when a new length changes the speed of a running ramp, the Shuffler when one slice follows within the
// fade of another.
TEST(LongRenderTest, EffectsThatNeverJumpDoNotClick) {
	constexpr double kSteepest = 0.25; // of the level around; a missing fade gives 1 and more
	constexpr double kQuiet = 0.1;     // no click is told from a slope below this level
	for (const int32_t device : {3, 4, 5, 8}) {
		TLongRender render({&device, 1}, [](int32_t id, double random) {
			const bool isType = id >= 10 && CommonParameter(id) == VortelParameterIds::kFilterType;
			return isType ? std::nullopt : DrawLevelHeaded(id, random);
		});
		double level = 0.0;
		double last = 0.0;
		double worst = 0.0;
		const auto listen = [&](std::span<const float> left, std::span<const float>) {
			for (const double sample : left) {
				level = std::max({0.999 * level, std::abs(sample), kQuiet});
				worst = std::max(worst, std::abs(sample - last) / level);
				last = sample;
			}
		};
		render.Run(60, &Hum, listen);
		EXPECT_LT(worst, kSteepest) << "device " << device;
	}
}
