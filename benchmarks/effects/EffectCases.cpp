// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/ReferenceLoop.h"
#include "benchmarks/TSoundCase.h"
#include "document/TVortelDocument.h"
#include "effects/CreateVortelDspDevices.h"

#include <algorithm>
#include <vector>

namespace {

class TReferenceCase final : public TSoundCase {
public:
	void ProcessBlock(int frames) override {
		TSoundCase::ProcessBlock(frames);
		mLoop.Process(mLeft.data(), mRight.data(), frames);
	}

private:
	ReferenceLoop mLoop;
};

struct TEffectOptions {
	int32_t mDevice = 0;
	bool mFilter = false;
	bool mRamping = false; // all ramps, the frame's and the effect's, have somewhere to go in every block
	bool mTail = false;
	int mSlice = 0; // longest call, 0 for the whole block
	std::vector<std::pair<int32_t, float>> mParameters{};
	std::vector<int32_t> mRamped{}; // parameters of the effect itself that glide
};

class TEffectCase final : public TSoundCase {
public:
	explicit TEffectCase(const TEffectOptions& options)
	    : TSoundCase(options.mTail),
	      mOptions(options),
	      mpDocument(MakePtr<TVortelDocument>()),
	      mFirstId(mpDocument->Device(options.mDevice)->FirstParameterId()) {
		for (const auto& [id, value] : options.mParameters)
			Scene().SetParameterValue(id, value);
		if (options.mFilter)
			Scene().SetParameterValue(mFirstId + VortelParameterIds::kFilterType, 0.25f);
		mpDevice = CreateVortelDspDevice(*mpDocument, nullptr, options.mDevice);
		mpDevice->SetBlockSize(TBenchmarkCase::kMaximumBlock);
		mpDevice->SetProgram(mpDocument->ActiveProgram());
		mpDevice->SetScene(mpDocument->ActiveScene());
		mpDevice->Start();
	}

	void ProcessBlock(int frames) override {
		TSoundCase::ProcessBlock(frames);
		if (mOptions.mRamping)
			MoveRamps();
		const int slice = mOptions.mSlice > 0 ? mOptions.mSlice : frames;
		for (int at = 0; at < frames; at += slice) {
			const int count = std::min(slice, frames - at);
			mpDevice->CaptureDry(&mLeft[static_cast<std::size_t>(at)], &mRight[static_cast<std::size_t>(at)], count);
			mpDevice->Process(&mLeft[static_cast<std::size_t>(at)], &mRight[static_cast<std::size_t>(at)], count);
		}
	}

private:
	TVortelScene& Scene() { return *mpDocument->ActiveScene(); }

	void MoveRamps() {
		mUp = !mUp;
		for (int32_t offset = VortelParameterIds::kMix; offset <= VortelParameterIds::kFilterQ; ++offset) {
			if (offset != VortelParameterIds::kFilterType)
				Scene().SetParameterValue(mFirstId + offset, mUp ? 0.7f : 0.3f);
		}
		for (const int32_t id : mOptions.mRamped)
			Scene().SetParameterValue(id, mUp ? 0.7f : 0.3f);
	}

	TEffectOptions mOptions;
	TPtr<TVortelDocument> mpDocument;
	int32_t mFirstId;
	TPtr<TVortelDspDevice> mpDevice;
	bool mUp = false;
};

struct TEffectRegistration {
	/// The effect at rest, ramping, with its filter, with both, in slices of 16, and with a signal that dies away.
	TEffectRegistration(const std::string& name, const TEffectOptions& options) {
		const auto add = [&](const char* suffix, auto change) {
			TEffectOptions changed = options;
			change(changed);
			TBenchmarkCase::TRegistration(name + suffix, [changed] { return std::make_unique<TEffectCase>(changed); });
		};
		add("", [](TEffectOptions&) {});
		add("/ramping", [](TEffectOptions& o) { o.mRamping = true; });
		add("/filter", [](TEffectOptions& o) { o.mFilter = true; });
		add("/filter/ramping", [](TEffectOptions& o) { o.mFilter = o.mRamping = true; });
		add("/slices of 16", [](TEffectOptions& o) { o.mSlice = 16; });
		add("/filter/tail", [](TEffectOptions& o) { o.mFilter = o.mTail = true; });
	}
};

const TBenchmarkCase::TRegistration kFloor("floor", [] { return std::make_unique<TSoundCase>(); });
const TBenchmarkCase::TRegistration kReference("reference", [] { return std::make_unique<TReferenceCase>(); });
const TBenchmarkCase::TRegistration kMaster("Master", [] {
	return std::make_unique<TEffectCase>(TEffectOptions{.mDevice = 0});
});

const std::vector<int32_t> kDistortionRamps = {138, 140, 141};

const TEffectRegistration kEffects[] = {
    {"Modulator", {.mDevice = 1, .mRamped = {17, 18, 19, 20, 23}}},
    {"Tape Stop", {.mDevice = 2, .mParameters = {{40, 0.0f}}}},
    {"Retrigger", {.mDevice = 3}},
    {"Retrigger/decay", {.mDevice = 3, .mParameters = {{61, 0.001f}}}},
    {"Reverser", {.mDevice = 4}},
    {"Stretcher", {.mDevice = 5}},
    {"Lofi/13 bit", {.mDevice = 6, .mParameters = {{118, 1.0f}}}},
    {"Lofi/signed", {.mDevice = 6}},
    {"Lofi/unsigned", {.mDevice = 6, .mParameters = {{119, 1.0f}}}},
    {"Distortion/razor", {.mDevice = 7, .mRamped = kDistortionRamps}},
    {"Distortion/shape", {.mDevice = 7, .mParameters = {{137, 1.0f / 3.0f}}, .mRamped = kDistortionRamps}},
    {"Distortion/fold", {.mDevice = 7, .mParameters = {{137, 2.0f / 3.0f}}, .mRamped = kDistortionRamps}},
    {"Distortion/shift", {.mDevice = 7, .mParameters = {{137, 1.0f}}, .mRamped = kDistortionRamps}},
    {"Gater", {.mDevice = 8}},
    {"Delay", {.mDevice = 9, .mRamped = {181, 183}}},
    {"Shuffler", {.mDevice = 10}},
};

} // namespace
