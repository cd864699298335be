// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelRetriggerDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "tests/effects/TDspDeviceFixture.h"

namespace {

struct TSettings {
	int mMode = 1;
	float mInitialSpeed = 64.0f, mFinalSpeed = 16.0f, mTransition = 4.0f, mDecay = 0.0f;
};

/// The effect, one channel, written down sample by sample without any short cut.
class TSlowRetrigger {
public:
	TSlowRetrigger(int rate, float tempo, const TSettings& settings)
	    : mRate(rate),
	      mTempo(tempo),
	      mSettings(settings),
	      mFade(rate / 1000 + (rate % 1000 >= 500 ? 1 : 0)),
	      mCapacity(static_cast<int>(rate * 60 / 32.0 * 1.5)),
	      mEnvelope(mFade),
	      mLoop(static_cast<std::size_t>(mCapacity)),
	      mNext(static_cast<std::size_t>(mFade)) {
		Start();
	}

	void Start() {
		mTail = mPosition = mRecorded = mFadeCount = 0;
		mGain = 1.0;
		Retrigger();
	}

	void Retrigger() {
		mNextTail = mNextPosition = mSwitchCount = mNextFadeCount = 0;
		mNextGain = 1.0;
		mGlide = 0.0;
		ComputeLengths();
	}

	void SetTempo(float tempo) {
		mTempo = tempo;
		ComputeLengths();
	}

	void SetSettings(const TSettings& settings) {
		mSettings = settings;
		mDirty = true;
	}

	double Process(float in) {
		const double decayStep = 1.0 / (mRate * 60.0 / mTempo * 0.25) * mSettings.mDecay;
		if (mRecorded < mCapacity)
			mLoop[static_cast<std::size_t>(mRecorded++)] = in;
		if (mPosition == 0) {
			if (mDirty)
				ComputeLengths();
			mLoopLength = static_cast<int>(std::round(mInitialLength * (1.0 - mGlide) + mFinalLength * mGlide));
			mFadeCount = 0;
		}
		double a = At(mLoop, mPosition);
		if (mFadeCount < mFade) {
			const double e = mEnvelope.Value(mFadeCount);
			a = a * e + At(mLoop, mTail) * (1.0 - e);
			if (mTail < mCapacity - 1)
				++mTail;
			++mFadeCount;
		}
		a *= mGain;
		if (mPosition >= mLoopLength) {
			mTail = mPosition;
			mPosition = 0;
		} else {
			++mPosition;
		}
		if (mGlide < 1.0)
			mGlide = std::clamp(mGlide + mGlideStep, 0.0, 1.0);
		if (mGain > 0.0 && decayStep > 0.0)
			mGain = std::clamp(mGain - decayStep, 0.0, 1.0);
		if (mSwitchCount >= mFade)
			return a;

		mNext[static_cast<std::size_t>(mSwitchCount)] = in;
		const double s = mEnvelope.Value(mSwitchCount);
		++mSwitchCount;
		if (mNextPosition == 0) {
			mNextLoopLength = mInitialLength;
			mNextFadeCount = 0;
		}
		double b = At(mNext, mNextPosition);
		if (mNextFadeCount < mFade) {
			const double e = mEnvelope.Value(mNextFadeCount);
			b = b * e + At(mLoop, mNextTail) * (1.0 - e);
			if (mNextTail < mFade)
				++mNextTail;
			++mNextFadeCount;
		}
		b *= mNextGain;
		const double output = a * (1.0 - s) + b * s;
		if (mNextPosition >= mNextLoopLength) {
			mNextTail = mNextPosition;
			mNextPosition = 0;
		} else {
			++mNextPosition;
		}
		if (mNextGain > 0.0 && decayStep > 0.0)
			mNextGain = std::clamp(mNextGain - decayStep, 0.0, 1.0);
		if (mSwitchCount == mFade) {
			mTail = mNextTail;
			mPosition = mNextPosition;
			mRecorded = mSwitchCount;
			mLoopLength = mNextLoopLength;
			mFadeCount = mNextFadeCount;
			mGain = mNextGain;
			std::copy(mNext.begin(), mNext.end(), mLoop.begin());
		}
		return output;
	}

private:
	static double At(const TSignal& samples, int index) { return samples[static_cast<std::size_t>(index)]; }

	void ComputeLengths() {
		double bar = 4.0 * (mRate * 60.0 / mTempo);
		if (mSettings.mMode == 2)
			bar /= 1.5;
		if (mSettings.mMode == 3)
			bar *= 1.5;
		const auto length = [&](float x) { return std::min(static_cast<int>(bar / x), mCapacity - 1); };
		mInitialLength = length(mSettings.mInitialSpeed);
		mFinalLength = length(mSettings.mFinalSpeed);
		mGlideStep = 1.0 / length(mSettings.mTransition);
		mDirty = false;
	}

	int mRate;
	float mTempo;
	TSettings mSettings;
	int mFade, mCapacity;
	TVortelDeClickEnvelope mEnvelope;
	TSignal mLoop, mNext;
	bool mDirty = true;
	int mInitialLength = 0, mFinalLength = 0, mLoopLength = 0, mNextLoopLength = 0;
	int mTail = 0, mPosition = 0, mRecorded = 0, mFadeCount = 0;
	int mNextTail = 0, mNextPosition = 0, mSwitchCount = 0, mNextFadeCount = 0;
	double mGain = 1.0, mNextGain = 1.0, mGlide = 0.0, mGlideStep = 0.0;
};

} // namespace

class TVortelRetriggerDspDeviceTest : public TDspDeviceFixture {
protected:
	void Apply(const TSettings& settings) {
		TVortelRetriggerDevice& device = *mpDocument->RetriggerDevice();
		device.mpTimeMode->SetRealValue(static_cast<float>(settings.mMode));
		device.mpTimeA->SetRealValue(settings.mInitialSpeed);
		device.mpTimeB->SetRealValue(settings.mFinalSpeed);
		device.mpABTime->SetRealValue(settings.mTransition);
		device.mpDecay->SetValue(settings.mDecay);
	}

	/// At full wet signal, running.
	TPtr<TVortelRetriggerDspDevice> MakeRunning(int rate, float tempo, const TSettings& settings) {
		Apply(settings);
		TTestHost host(rate, tempo);
		auto device = Attach(MakePtr<TVortelRetriggerDspDevice>(mpDocument->RetriggerDevice(), &host, 3));
		device->Start();
		return device;
	}

	/// The frame fades the first millisecond in from the dry input, which this undoes on the expected side.
	static double FadedIn(int rate, std::size_t index, double dry, double wet) {
		const TVortelDeClickEnvelope envelope(static_cast<int>(std::round(rate * 0.001)));
		if (index >= static_cast<std::size_t>(envelope.Size()))
			return wet;
		const double e = envelope.Value(static_cast<int>(index));
		return dry * (1.0 - e) + wet * e;
	}

	static void ExpectSame(
	    int rate, const TStereo& input, const TStereo& sound, TSlowRetrigger& left, TSlowRetrigger& right,
	    std::size_t from, std::size_t to) {
		for (std::size_t i = from; i < to; ++i) {
			ASSERT_NEAR(sound.mLeft[i], FadedIn(rate, i, input.mLeft[i], left.Process(input.mLeft[i])), 0.004)
			    << rate << ' ' << i;
			ASSERT_NEAR(sound.mRight[i], FadedIn(rate, i, input.mRight[i], right.Process(input.mRight[i])), 0.004) << i;
		}
	}

	static TStereo Noise(int count) {
		return {TestSignals::Noise(count, 32767.0f, 8), TestSignals::Noise(count, 32767.0f, 9)};
	}
};

TEST_F(TVortelRetriggerDspDeviceTest, RepeatsTheBeginningOfTheBlock) {
	// 64 to the bar at 120 bpm and 44100 Hz: 1378 samples, played as rounds of one more.
	const auto device = MakeRunning(44100, 120.0f, {1, 64.0f, 64.0f, 4.0f, 0.0f});
	const TStereo input = {TestSignals::Count(12000), TestSignals::Count(12000, 100001.0f)};
	TStereo sound = input;
	Run(*device, sound, {256});
	for (std::size_t i = 0; i < 12000; ++i) {
		const std::size_t inRound = i % 1379;
		if (i < 1379 || inRound >= 44) {
			ASSERT_EQ(sound.mLeft[i], input.mLeft[inRound]) << i;
			ASSERT_EQ(sound.mRight[i], input.mRight[inRound]) << i;
		}
	}
	// Under its crossfade the last round runs on.
	EXPECT_NEAR(sound.mLeft[1379], 1379.0f, 1.0f);
}

TEST_F(TVortelRetriggerDspDeviceTest, FollowsTheSampleBySampleFormulaAtAnyRateModeAndSlicing) {
	const TSettings kSettings[] = {
	    {1, 64.0f, 16.0f, 4.0f, 0.0f},
	    {2, 256.0f, 256.0f, 16.0f, 0.2f},
	    {3, 8.0f, 128.0f, 8.0f, 1.0f},
	    {0, 37.0f, 91.0f, 3.3f, 0.05f}};
	const std::vector<std::size_t> kSlices[] = {{1}, {256}, {17, 1, 400, 3}, {44, 45}};
	for (const int rate : {8000, 44100, 96000}) {
		for (std::size_t i = 0; i < 4; ++i) {
			const TSettings& settings = kSettings[i];
			const auto device = MakeRunning(rate, 137.0f, settings);
			const TStereo input = Noise(rate / 2);
			TStereo sound = input;
			Run(*device, sound, kSlices[i]);
			TSlowRetrigger left(rate, 137.0f, settings), right(rate, 137.0f, settings);
			ExpectSame(rate, input, sound, left, right, 0, input.Size());
		}
	}
}

TEST_F(TVortelRetriggerDspDeviceTest, SlicingDoesNotChangeTheSound) {
	const TSettings settings = {1, 32.0f, 128.0f, 4.0f, 0.3f};
	TStereo expected = Noise(20000);
	Run(*MakeRunning(44100, 120.0f, settings), expected, {512});
	for (const std::vector<std::size_t>& slices : {std::vector<std::size_t>{1}, {16}, {256, 3, 97}}) {
		TStereo sound = Noise(20000);
		Run(*MakeRunning(44100, 120.0f, settings), sound, slices);
		EXPECT_EQ(sound, expected);
	}
}

TEST_F(TVortelRetriggerDspDeviceTest, RetriggersTempoAndParameterChangesAnywhere) {
	constexpr int kRate = 44100;
	TSettings settings = {1, 32.0f, 64.0f, 8.0f, 0.0f};
	const auto device = MakeRunning(kRate, 120.0f, settings);
	TSlowRetrigger left(kRate, 120.0f, settings), right(kRate, 120.0f, settings);
	const TStereo input = Noise(40000);
	TStereo sound = input;
	std::size_t at = 0;
	const auto play = [&](std::size_t count) {
		Run(*device, sound, {100, 1, 13}, at, at + count);
		ExpectSame(kRate, input, sound, left, right, at, at + count);
		at += count;
	};
	const auto retrigger = [&] {
		device->Start();
		left.Retrigger();
		right.Retrigger();
	};
	const auto change = [&](float initial, float decay) {
		settings.mInitialSpeed = initial;
		settings.mDecay = decay;
		Apply(settings);
		left.SetSettings(settings);
		right.SetSettings(settings);
	};
	const auto setTempo = [&](float tempo) {
		device->SetTempo(tempo);
		left.SetTempo(tempo);
		right.SetTempo(tempo);
	};
	play(5000);
	retrigger();
	play(20); // inside the crossfade
	retrigger();
	play(3);
	change(256.0f, 0.5f);
	play(2000);
	setTempo(77.7f);
	play(4000);
	change(4.0f, 0.0f);
	play(1500);
	retrigger();
	play(30);
	setTempo(400.0f);
	change(128.0f, 0.02f);
	play(12000);
	setTempo(2000.0f); // loops shorter than their crossfade
	play(1000);
	retrigger();
	play(1000);
}

TEST_F(TVortelRetriggerDspDeviceTest, FullDecayIsSilentAfterAQuarterBeat) {
	const auto device = MakeRunning(44100, 120.0f, {1, 64.0f, 64.0f, 4.0f, 1.0f});
	TStereo sound = Noise(30000);
	Run(*device, sound, {256});
	EXPECT_GT(TestSignals::Peak(TSignal(sound.mLeft.begin() + 5000, sound.mLeft.begin() + 5300)), 0.0);
	EXPECT_EQ(TestSignals::Peak(sound.mLeft, 5514), 0.0); // 22050 / 4, and a sample for rounding
}

TEST_F(TVortelRetriggerDspDeviceTest, LoopLengthEndsWithTheRecording) {
	// A beat of 3 seconds against 2.8125 seconds of buffer: 22500 samples at 8000 Hz.
	const auto device = MakeRunning(8000, 20.0f, {1, 4.0f, 4.0f, 4.0f, 0.0f});
	const TStereo input = {TestSignals::Count(50000), TestSignals::Count(50000)};
	TStereo sound = input;
	Run(*device, sound, {512});
	for (std::size_t i = 100; i < 50000; ++i) {
		if (i % 22500 >= 8) {
			ASSERT_EQ(sound.mLeft[i], input.mLeft[i % 22500]) << i;
		}
	}
}

TEST_F(TVortelRetriggerDspDeviceTest, SenselessTemposKeepItInItsBuffers) {
	const auto device = MakeRunning(44100, 120.0f, {1, 256.0f, 256.0f, 16.0f, 1.0f});
	for (const float tempo : {0.0f, -60.0f, 1e9f, std::nanf(""), 120.0f}) {
		device->SetTempo(tempo);
		TStereo sound = Noise(3000);
		Run(*device, sound, {256});
		device->Start();
		Run(*device, sound, {256});
		EXPECT_LE(TestSignals::Peak(sound.mLeft), 40000.0);
	}
}
