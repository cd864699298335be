// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelDspDevice.h"

#include "effects/CreateVortelDspDevices.h"
#include "tests/effects/TDspDeviceFixture.h"

#include <functional>
#include <limits>
#include <string>
#include <utility>

namespace {

constexpr int32_t kProbeIndex = 1;
constexpr int32_t kMix = 11, kPan = 12, kVolume = 13, kFilterType = 14, kFilterFrequency = 15, kFilterQ = 16;
constexpr int kFade = 44; // 1 ms

/// Multiplies by a factor and notes what it is told.
class TProbeDevice final : public TVortelDspDevice {
public:
	TProbeDevice(TVortelDevice* device, THost* host) : TVortelDspDevice(device, host, kProbeIndex) {
		FinishConstruction();
	}

	float mFactor = 1.0f;
	std::string mCalls;
	int mPulls = 0;

protected:
	void OnParametersChanged() override { ++mPulls; }

	void ProcessEffect(float* left, float* right, int count) override {
		for (int i = 0; i < count; ++i) {
			left[i] *= mFactor;
			right[i] *= mFactor;
		}
	}

	void OnSampleRateChanged(int32_t) override { mCalls += 'r'; }

	void OnBlockSizeChanged(int32_t) override { mCalls += 'b'; }

	void OnTempoChanged(float) override { mCalls += 't'; }

	void OnStart() override { mCalls += 'S'; }

	void OnRetrigger() override { mCalls += 'R'; }
};

} // namespace

class TVortelDspDeviceTest : public TDspDeviceFixture {
protected:
	void SetUp() override {
		TDspDeviceFixture::SetUp();
		mpProbe = Attach(MakePtr<TProbeDevice>(mpDocument->Device(kProbeIndex), &mHost));
		mpProbe->mCalls.clear();
	}

	void TearDown() override {
		mpProbe = nullptr;
		mHost.mpDevice = nullptr;
		TDspDeviceFixture::TearDown();
	}

	/// Past the fade-in.
	void StartAndSettle() {
		mpProbe->Start();
		TStereo silence = Constant(kFade, 0.0f);
		ProcessSlice(*mpProbe, silence, 0, kFade);
	}

	static TStereo Constant(int count, float left, float right) {
		const auto size = static_cast<std::size_t>(count);
		return {TSignal(size, left), TSignal(size, right)};
	}

	static TStereo Constant(int count, float value) { return Constant(count, value, value); }

	static TStereo Noise(int count) {
		return {TestSignals::Noise(count, 30000.0f, 1), TestSignals::Noise(count, 30000.0f, 2)};
	}

	TTestHost mHost;
	TPtr<TProbeDevice> mpProbe;
};

TEST_F(TVortelDspDeviceTest, ConstructionRegistersAndTellsTheHooksOnce) {
	TTestHost host(96000, 90.0f);
	auto probe = MakePtr<TProbeDevice>(mpDocument->Device(kProbeIndex), &host);
	EXPECT_EQ(host.mIndex, kProbeIndex);
	EXPECT_EQ(host.mpDevice.Get(), probe.Get());
	EXPECT_EQ(probe->mCalls, "rbt");
	EXPECT_FALSE(probe->IsRunning());
	probe->SetSampleRate(96000);
	probe->SetBlockSize(512);
	probe->SetTempo(90.0f);
	EXPECT_EQ(probe->mCalls, "rbtt"); // the tempo is heard at every call
}

TEST_F(TVortelDspDeviceTest, FadesInFromDryAndOutToTheUntouchedInput) {
	const TVortelDeClickEnvelope envelope(kFade);
	mpProbe->mFactor = 0.0f;
	mpProbe->Start();
	TStereo sound = Constant(100, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, 100);
	for (int i = 0; i < 100; ++i) {
		const double expected = i < kFade ? 1000.0 * (1.0 - envelope.Value(i)) : 0.0;
		ASSERT_NEAR(sound.mLeft[static_cast<std::size_t>(i)], expected, 1e-4) << i;
	}
	mpProbe->Stop();
	sound = Constant(100, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, 100);
	for (int i = 0; i < 100; ++i) {
		const double expected = i < kFade ? 1000.0 * envelope.Value(i) : 1000.0;
		ASSERT_NEAR(sound.mRight[static_cast<std::size_t>(i)], expected, 1e-4) << i;
	}
	EXPECT_EQ(sound.mLeft[kFade], 1000.0f);
	EXPECT_FALSE(mpProbe->IsRunning());
}

TEST_F(TVortelDspDeviceTest, FadesTakeOneMillisecondAtAnyRateAndSlicing) {
	for (const int rate : {8000, 44100, 96000}) {
		mpProbe->SetSampleRate(rate);
		mpProbe->Start();
		TStereo sound = Constant(rate / 1000 + 1, 1.0f);
		Run(*mpProbe, sound, {1});
		mpProbe->Stop();
		const int fade = static_cast<int>(std::round(rate * 0.001));
		for (int i = 0; i < fade; ++i) {
			ASSERT_TRUE(mpProbe->IsRunning());
			ProcessSlice(*mpProbe, sound, 0, 1);
		}
		EXPECT_FALSE(mpProbe->IsRunning()) << rate;
	}
}

TEST_F(TVortelDspDeviceTest, StopInsideTheFadeInBeginsTheFadeOutFromItsStart) {
	mpProbe->mFactor = 0.0f;
	mpProbe->Start();
	TStereo sound = Constant(60, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, 10);
	mpProbe->Stop();
	mpProbe->Stop(); // a second one does not begin it again
	ProcessSlice(*mpProbe, sound, 10, 50);
	EXPECT_EQ(sound.mLeft[10], 0.0f);
	EXPECT_GT(sound.mLeft[9], 900.0f * 0.5f);
	EXPECT_EQ(sound.mLeft[10 + kFade], 1000.0f);
	EXPECT_FALSE(mpProbe->IsRunning());
}

TEST_F(TVortelDspDeviceTest, StartWhileFadingOutRetriggersFollowsAgainAndStillStops) {
	StartAndSettle();
	mpProbe->Stop();
	TStereo sound = Constant(kFade, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, 20);
	mpProbe->Start();
	Scene().SetParameterValue(kMix, 0.0f);
	mpProbe->mFactor = -1.0f;
	ProcessSlice(*mpProbe, sound, 20, kFade - 20);
	EXPECT_EQ(mpProbe->mCalls, "SR");
	EXPECT_FALSE(mpProbe->IsRunning());
	mpProbe->Start();
	EXPECT_EQ(mpProbe->mCalls, "SRS");
	sound = Constant(200, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, 200);
	EXPECT_EQ(sound, Constant(200, 1000.0f)); // mix 0 held from the first sample
}

TEST_F(TVortelDspDeviceTest, ParametersFreezeForTheFadeOut) {
	StartAndSettle();
	mpProbe->Stop();
	Scene().SetParameterValue(kVolume, 0.0f);
	TStereo sound = Constant(kFade, 1000.0f);
	ProcessSlice(*mpProbe, sound, 0, kFade);
	EXPECT_EQ(sound, Constant(kFade, 1000.0f));
}

TEST_F(TVortelDspDeviceTest, MixPanAndVolumeAtRest) {
	struct TCase {
		float mMix, mPan, mVolume;
		double mLeft, mRight; // for a dry 1000 and a wet -3000 on both sides
	};

	const double up = std::sqrt(2.0);
	for (const TCase& c :
	     {TCase{1.0f, 0.5f, 0.5f, -3000.0, -3000.0}, TCase{0.0f, 0.5f, 0.5f, 1000.0, 1000.0},
	      TCase{0.5f, 0.5f, 0.5f, -1000.0, -1000.0}, TCase{1.0f, 0.5f, 1.0f, -6000.0, -6000.0},
	      TCase{1.0f, 0.0f, 0.5f, -3000.0 * up, 0.0}, TCase{0.25f, 1.0f, 0.25f, 0.0, 0.0},
	      TCase{0.0f, 0.75f, 0.5f, 1000.0 * std::sqrt(0.5), 1000.0 * std::sqrt(1.5)}}) {
		Scene().SetParameterValue(kMix, c.mMix);
		Scene().SetParameterValue(kPan, c.mPan);
		Scene().SetParameterValue(kVolume, c.mVolume);
		mpProbe->mFactor = -3.0f;
		StartAndSettle();
		TStereo sound = Constant(7, 1000.0f);
		ProcessSlice(*mpProbe, sound, 0, 7);
		for (std::size_t i = 0; i < 7; ++i) {
			EXPECT_NEAR(sound.mLeft[i], c.mLeft, 1e-3);
			EXPECT_NEAR(sound.mRight[i], c.mRight, 1e-3);
		}
		mpProbe->Stop();
		TStereo rest = Constant(kFade, 0.0f);
		ProcessSlice(*mpProbe, rest, 0, kFade);
	}
}

TEST_F(TVortelDspDeviceTest, MixRampsMoveSampleBySampleWhateverTheSlices) {
	for (const std::vector<std::size_t>& slices : {std::vector<std::size_t>{1}, {3, 64, 5}, {300}}) {
		Scene().SetParameterValue(kMix, 1.0f);
		Scene().SetParameterValue(kPan, 0.5f);
		Scene().SetParameterValue(kVolume, 0.5f);
		mpProbe->mFactor = -1.0f;
		StartAndSettle();
		Scene().SetParameterValue(kMix, 0.25f);
		Scene().SetParameterValue(kPan, 0.9f);
		Scene().SetParameterValue(kVolume, 0.8f);
		const TStereo input = Noise(300);
		TStereo sound = input;
		Run(*mpProbe, sound, slices);
		TRampable<float> mix(1.0f, 1.0f / 64.0f), pan(0.5f, 1.0f / 64.0f), volume(0.5f, 1.0f / 64.0f);
		mix.SetTarget(0.25f);
		pan.SetTarget(0.9f);
		volume.SetTarget(0.8f);
		for (std::size_t i = 0; i < 300; ++i) {
			for (auto* ramp : {&mix, &pan, &volume})
				ramp->Step();
			const double scale = (1.0 - 2.0 * mix.Current()) * 2.0 * volume.Current() * std::sqrt(2.0);
			ASSERT_NEAR(sound.mLeft[i], input.mLeft[i] * scale * std::sqrt(1.0 - pan.Current()), 0.03) << i;
			ASSERT_NEAR(sound.mRight[i], input.mRight[i] * scale * std::sqrt(pan.Current()), 0.03) << i;
		}
		mpProbe->Stop();
		TStereo rest = Constant(kFade, 0.0f);
		ProcessSlice(*mpProbe, rest, 0, kFade);
	}
}

TEST_F(TVortelDspDeviceTest, FilterAtRestIsTheLadderInAnySlices) {
	for (int type = 1; type <= 4; ++type) {
		Scene().SetParameterValue(kFilterType, static_cast<float>(type) / 4.0f);
		Scene().SetParameterValue(kFilterFrequency, 0.5f);
		Scene().SetParameterValue(kFilterQ, 0.9f);
		TStereo expected = Noise(512);
		TVALadderFilter ladder;
		ladder.SetCoefficients(type - 1, static_cast<float>(20.0 + 19980.0 * 9.0 / 99.0), 44100.0, 0.9f);
		ladder.ProcessBlock(expected.mLeft.data(), expected.mRight.data(), 512);
		for (const std::vector<std::size_t>& slices : {std::vector<std::size_t>{1}, {7, 100}, {512}}) {
			auto device = Attach(MakePtr<TProbeDevice>(mpDocument->Device(kProbeIndex), &mHost));
			device->Start();
			TStereo sound = Noise(512);
			Run(*device, sound, slices);
			for (std::size_t i = kFade; i < 512; ++i) {
				ASSERT_EQ(sound.mLeft[i], expected.mLeft[i]) << type << ' ' << i;
				ASSERT_EQ(sound.mRight[i], expected.mRight[i]) << type << ' ' << i;
			}
		}
	}
}

TEST_F(TVortelDspDeviceTest, FilterRampsSetTheCoefficientsOfEverySample) {
	Scene().SetParameterValue(kFilterType, 0.25f);
	Scene().SetParameterValue(kFilterFrequency, 0.2f);
	StartAndSettle();
	Scene().SetParameterValue(kFilterFrequency, 0.8f);
	Scene().SetParameterValue(kFilterQ, 1.0f);
	const TStereo input = Noise(400);
	TStereo sound = input;
	Run(*mpProbe, sound, {1, 150, 3});

	const auto hertz = [&](float value) {
		return mpDocument->Device(kProbeIndex)->mpFilterFrequency->Converter()->RealFromNormalized(value);
	};
	TRampable<float> frequency(hertz(0.2f), 1.0f / 64.0f), q(0.2f, 1.0f / 64.0f);
	frequency.SetTarget(hertz(0.8f));
	q.SetTarget(1.0f);
	TVALadderFilter ladder;
	for (std::size_t i = 0; i < 400; ++i) {
		frequency.Step();
		q.Step();
		ladder.SetCoefficients(0, frequency.Current(), 44100.0, q.Current());
		ASSERT_NEAR(sound.mLeft[i], ladder.ProcessSampleLeft(input.mLeft[i]), 0.02) << i;
		ASSERT_NEAR(sound.mRight[i], ladder.ProcessSampleRight(input.mRight[i]), 0.02) << i;
	}
}

TEST_F(TVortelDspDeviceTest, FilterThatIsOffKeepsItsState) {
	Scene().SetParameterValue(kFilterType, 0.25f);
	StartAndSettle();
	TStereo sound = Constant(100, 20000.0f);
	ProcessSlice(*mpProbe, sound, 0, 100);
	Scene().SetParameterValue(kFilterType, 0.0f);
	sound = Constant(100, 0.0f);
	ProcessSlice(*mpProbe, sound, 0, 100);
	EXPECT_EQ(sound, Constant(100, 0.0f));
	Scene().SetParameterValue(kFilterType, 0.25f);
	ProcessSlice(*mpProbe, sound, 0, 1);
	EXPECT_GT(sound.mLeft[0], 10000.0f);
}

TEST_F(TVortelDspDeviceTest, InsaneInputIsNoNumberToTheEffectAndFollowedByAFreshState) {
	StartAndSettle();
	for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
		TStereo sound = Constant(9, 100.0f);
		sound.mLeft[3] = sound.mRight[8] = bad;
		ProcessSlice(*mpProbe, sound, 0, 9);
		for (std::size_t i = 0; i < 9; ++i) {
			EXPECT_EQ(sound.mLeft[i], i == 3 ? 0.0f : 100.0f);
			EXPECT_EQ(sound.mRight[i], i == 8 ? 0.0f : 100.0f);
		}
	}
	TStereo huge = Constant(9, 1e30f);
	ProcessSlice(*mpProbe, huge, 0, 9);
	EXPECT_EQ(huge, Constant(9, 1e30f)); // a finite input is not touched
	mpProbe->mCalls.clear();
	TStereo sane = Constant(9, 1e6f);
	ProcessSlice(*mpProbe, sane, 0, 9);
	ProcessSlice(*mpProbe, sane, 0, 9);
	EXPECT_EQ(mpProbe->mCalls, "S");
}

TEST_F(TVortelDspDeviceTest, EveryDeviceOfADocumentLeavesSilenceSilent) {
	class TEngine final : public TVortelDspDevice::THost {
	public:
		int32_t SampleRate() const override { return 48000; }

		int32_t BlockSize() const override { return 64; }

		float Tempo() const override { return 100.0f; }

		void RegisterDevice(int32_t index, TVortelDspDevice* device) override {
			mDevices.at(static_cast<std::size_t>(index)) = device;
		}

		std::array<TPtr<TVortelDspDevice>, 11> mDevices;
	} engine;

	CreateVortelDspDevices(*mpDocument, engine);
	for (const auto& device : engine.mDevices) {
		ASSERT_TRUE(device);
		Attach(device);
		device->Start();
		TStereo sound = Constant(640, 0.0f);
		Run(*device, sound, {64, 1, 63});
		EXPECT_EQ(sound, Constant(640, 0.0f));
	}
}

TEST_F(TVortelDspDeviceTest, EveryWayToChangeWhatIsHeardReachesTheNextSliceAndNothingElsePulls) {
	const auto leaf = [this](const char* name) { return dynamic_cast<TSerializable*>(Scene().ValueAtPath(name)); };
	const auto other = MakePtr<TVortelScene>();
	const std::pair<const char*, std::function<void()>> ways[] = {
	    {"a write into the scene", [&] { Scene().SetParameterValue(kVolume, 0.25f); }},
	    {"the same scene from defaults", [&] { Scene().Init(true); }},
	    {"a copy of another", [&] { Scene().CopyFrom(*other); }},
	    {"the text of a file or of undo", [&] { leaf("/ParameterValues")->FromString("0.5 0.25 1 0 0.5"); }},
	    {"the host", [&] { mpDocument->SetParameterValue(kVolume, 0.75f); }},
	    {"the editor", [&] { mpDocument->Device(kProbeIndex)->mpMixerVolume->SetValue(0.5f); }},
	    {"a step level", [&] { Scene().SetGaterStep(3, 0.25f); }},
	    {"the text of the step levels", [&] { leaf("/GaterVolumeSteps")->FromString("0.5 0.25"); }},
	    {"another meaning of the same value",
	     [&] {
		     const auto converter = mpDocument->Device(8)->mpFilterFrequency->Converter();
		     converter->SetStepped(!converter->IsStepped());
	     }},
	    {"another scene", [&] { mpProbe->SetScene(mpDocument->ActiveProgram()->Scene(5)); }},
	};
	StartAndSettle();
	TStereo sound = Constant(512, 1000.0f);
	const auto pullsOfSlices = [&](int count) {
		const int before = mpProbe->mPulls;
		for (int i = 0; i < count; ++i)
			ProcessSlice(*mpProbe, sound, 0, sound.Size());
		return mpProbe->mPulls - before;
	};
	for (const auto& [name, change] : ways) {
		pullsOfSlices(200); // all ramps arrive
		ASSERT_EQ(pullsOfSlices(3), 0) << "before " << name;
		const int before = mpProbe->mPulls;
		change();
		ProcessSlice(*mpProbe, sound, 0, 1);
		EXPECT_GT(mpProbe->mPulls, before) << name;
	}
}
