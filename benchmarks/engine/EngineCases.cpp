// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/TSoundCase.h"
#include "document/TVortelDocument.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <vector>

namespace {

constexpr int kCut = 16;

enum class EPattern { kEmpty, kAllTheTime, kInTurn };

struct TEngineOptions {
	EPattern mPattern = EPattern::kEmpty;
	std::vector<int32_t> mDevices{};
	bool mFilter = false;
	bool mCut = false; // a command at every 16th sample
};

class TNothingCommand final : public TCommand {
public:
	void Execute() override {}
};

/// The engine under a host that plays at 120 bpm. Effects that run all the time begin a block once per bar; effects in
/// turn have a step each.
class TEngineCase final : public TSoundCase {
public:
	explicit TEngineCase(const TEngineOptions& options) : mOptions(options), mpDocument(MakePtr<TVortelDocument>()) {
		FillPattern();
		mpEngine = MakePtr<TVortelAudioEngine>(mpDocument.Get());
		mpEngine->SetSampleRate(kSampleRate);
		mpEngine->SetBlockSize(kMaximumBlock);
		mpEngine->SetInputChannels(1);
		mpEngine->SetOutputChannels(1);
		mTransport.mFlags =
		    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
		mTransport.mTempo = 120.0f;
		mTransport.mIsPlaying = true;
		TThreadCommunicator::Instance()->ProcessCommands();
	}

	void ProcessBlock(int frames) override {
		TSoundCase::ProcessBlock(frames);
		for (int offset = kCut; mOptions.mCut && offset < frames; offset += kCut)
			mpEngine->ScheduleCommand(new TNothingCommand, offset);
		float* const left[] = {mLeft.data()};
		float* const right[] = {mRight.data()};
		mpEngine->Process(left, right, left, right, frames, &mTransport);
		mTransport.mBeatPosition += frames * 120.0 / 60.0 / kSampleRate;
	}

private:
	void FillPattern() {
		TVortelScene& scene = *mpDocument->ActiveScene();
		for (std::size_t i = 0; i < mOptions.mDevices.size(); ++i) {
			const int32_t device = mOptions.mDevices[i];
			if (mOptions.mFilter)
				scene.SetParameterValue(
				    mpDocument->Device(device)->FirstParameterId() + VortelParameterIds::kFilterType, 0.25f);
			TVortelSequence& row = scene.Sequencer()->Sequence(device);
			if (mOptions.mPattern == EPattern::kInTurn) {
				row.SetStep(static_cast<int32_t>(i), kStepBlockStart);
				continue;
			}
			for (int32_t step = 0; step < scene.Sequencer()->StepCount(); ++step)
				row.SetStep(step, step == 0 ? kStepBlockStart : kStepBlockContinue);
		}
	}

	TEngineOptions mOptions;
	TPtr<TVortelDocument> mpDocument;
	TPtr<TVortelAudioEngine> mpEngine;
	TTransportInfo mTransport;
	TThreadManager::TScope mRole{kAudioThread};
};

struct TEngineRegistration {
	TEngineRegistration(const char* name, const TEngineOptions& options)
	    : mRegistration(name, [options] { return std::make_unique<TEngineCase>(options); }) {}

	TBenchmarkCase::TRegistration mRegistration;
};

const std::vector<int32_t> kTen = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

const TEngineRegistration kCases[] = {
    {"Engine/idle", {}},
    {"Engine/idle/cut", {.mCut = true}},
    {"Engine/Retrigger", {.mPattern = EPattern::kAllTheTime, .mDevices = {3}}},
    {"Engine/Retrigger/cut", {.mPattern = EPattern::kAllTheTime, .mDevices = {3}, .mCut = true}},
    {"Engine/Retrigger/filter", {.mPattern = EPattern::kAllTheTime, .mDevices = {3}, .mFilter = true}},
    {"Engine/Retrigger/filter/cut",
     {.mPattern = EPattern::kAllTheTime, .mDevices = {3}, .mFilter = true, .mCut = true}},
    {"Engine/ten in turn", {.mPattern = EPattern::kInTurn, .mDevices = kTen}},
    {"Engine/ten at once", {.mPattern = EPattern::kAllTheTime, .mDevices = kTen}},
    {"Engine/ten at once/cut", {.mPattern = EPattern::kAllTheTime, .mDevices = kTen, .mCut = true}},
    {"Engine/ten at once/filter", {.mPattern = EPattern::kAllTheTime, .mDevices = kTen, .mFilter = true}},
};

} // namespace
