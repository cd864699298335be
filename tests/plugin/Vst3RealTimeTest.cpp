// SPDX-License-Identifier: GPL-3.0-or-later
// What a host's audio thread calls must neither allocate nor lock: blocks with automation, notes, bypass and presets,
// and what hosts ask the controller from there.
#include "plugin/Vst3Instances.h"
#include "shell/vst3/TVst3PluginShell.h"
#include "tests/plugin/AudioThreadLocks.h"
#include "tests/shell/vst3/FakeVst3Host.h"
#include "tests/support/TRealTimeWatch.h"

#include <pluginterfaces/vst/ivstprocesscontext.h>

#include <gtest/gtest.h>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32 kBlock = 128;

class TBusyHost {
public:
	TBusyHost() {
		for (int32 i = 0; i < 4; ++i)
			mChanges.mQueues.emplace_back(
			    static_cast<ParamID>(i), std::vector<TFakeQueue::TPoint>{{0, 0.5}, {64, 0.5}});
		Event note{};
		note.type = Event::kNoteOnEvent;
		note.noteOn = {0, 36, 0.0f, 1.0f, 0, -1};
		mEvents.mEvents.assign(300, note);
		mBus.numChannels = 2;
		mBus.channelBuffers32 = mChannels;
		mContext.state =
		    ProcessContext::kPlaying | ProcessContext::kTempoValid | ProcessContext::kProjectTimeMusicValid;
		mContext.tempo = 140.0;
		mData.numSamples = kBlock;
		mData.numInputs = mData.numOutputs = 1;
		mData.inputs = mData.outputs = &mBus;
		mData.inputParameterChanges = &mChanges;
		mData.inputEvents = &mEvents;
		mData.processContext = &mContext;
	}

	void RunBlock(TVst3PluginShell& shell, int32 number) {
		mChanges.mQueues[0].mId = static_cast<ParamID>(number % 210);
		mChanges.mQueues[1].mId = static_cast<ParamID>(209 - number % 210);
		mChanges.mQueues[2].mId = number % 10 == 0 ? kVst3Preset : kVst3GuiIdle;
		mChanges.mQueues[3].mId = number % 30 == 0 ? kVst3Bypass : kVst3Sustain;
		for (TFakeQueue& queue : mChanges.mQueues)
			for (auto& point : queue.mPoints)
				point.second = number % 7 / 7.0;
		shell.process(mData);
		mContext.projectTimeMusic += kBlock * 140.0 / 60.0 / 44100.0;
		ParamID id = 0;
		shell.getMidiControllerAssignment(0, 0, 1, id);
		shell.plainParamToNormalized(5, 0.5);
		shell.getParamNormalized(kVst3Preset);
	}

private:
	std::vector<float> mLeft = std::vector<float>(kBlock, 0.1f);
	std::vector<float> mRight = std::vector<float>(kBlock, -0.1f);
	float* mChannels[2] = {mLeft.data(), mRight.data()};
	AudioBusBuffers mBus;
	TFakeChanges mChanges;
	TFakeEvents mEvents;
	ProcessContext mContext{};
	ProcessData mData;
};

} // namespace

TEST(Vst3RealTimeTest, AudioThreadNeitherAllocatesNorLocks) {
	TVst3PluginShell* shell = Vst3Instances::Create();
	ASSERT_EQ(shell->initialize(nullptr), kResultOk);
	ProcessSetup setup{kRealtime, kSample32, kBlock, 44100.0};
	ASSERT_EQ(shell->setupProcessing(setup), kResultOk);
	const auto locks = LocksOfTheAudioThread(shell->StorageId(), static_cast<TVortelDocument&>(*shell->Document()));
	std::size_t offences = 0;
	std::string first;
	std::thread([&] {
		TBusyHost host;
		// Entering the storage takes its lock, by design; here that happens once, outside.
		const TGlobalStorageScope storage(shell->StorageId());
		host.RunBlock(*shell, 0);
		for (int32 block = 1; block < 600; ++block) {
			const TRealTimeWatch watch(locks);
			host.RunBlock(*shell, block);
		}
		offences = TRealTimeWatch::NumberOfOffences();
		first = TRealTimeWatch::FirstOffence();
	}).join();
	EXPECT_EQ(offences, 0u) << first;
	shell->release();
}
