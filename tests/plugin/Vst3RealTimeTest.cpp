// SPDX-License-Identifier: GPL-3.0-or-later
// What a host's audio thread calls must neither allocate nor lock, however much comes and however long the main thread
// sleeps.
#include "plugin/Vst3Instances.h"
#include "tests/plugin/AudioThreadLocks.h"
#include "tests/plugin/TBusyVst3Host.h"
#include "tests/support/TFailingHeap.h"
#include "tests/support/TRealTimeWatch.h"

#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr ParamID kParameters = TVortelDocument::kNumberOfParameters;

struct TRelease {
	void operator()(TVst3PluginShell* shell) const { shell->release(); }
};

using TInstance = std::unique_ptr<TVst3PluginShell, TRelease>;

/// In a host that lends no run loop.
TInstance MakeInstance(int32 longestBlock) {
	TInstance shell(Vst3Instances::Create());
	EXPECT_EQ(shell->initialize(nullptr), kResultOk);
	ProcessSetup setup{kRealtime, kSample32, longestBlock, 44100.0};
	EXPECT_EQ(shell->setupProcessing(setup), kResultOk);
	return shell;
}

TVortelDocument& DocumentOf(TVst3PluginShell& shell) {
	return static_cast<TVortelDocument&>(*shell.Document());
}

/// What a new thread of the host does wrong in here, entering and leaving included.
template <class TWork>
void ExpectNoOffence(TVst3PluginShell& shell, const TWork& work) {
	const auto locks = LocksOfTheAudioThread(shell.StorageId(), DocumentOf(shell));
	std::size_t offences = 0;
	std::string first;
	std::thread([&] {
		work(locks);
		offences = TRealTimeWatch::NumberOfOffences();
		first = TRealTimeWatch::FirstOffence();
	}).join();
	EXPECT_EQ(offences, 0u) << first;
}

/// A point at every sample, none like the one before.
class TFloodQueue final : public TUncounted<IParamValueQueue> {
public:
	ParamID PLUGIN_API getParameterId() override { return mId; }

	int32 PLUGIN_API getPointCount() override { return mSamples; }

	tresult PLUGIN_API getPoint(int32 index, int32& offset, ParamValue& value) override {
		offset = index;
		value = mId == kVst3Preset ? index % 2 / 2.0 : (index * 37 + static_cast<int32>(mId)) % 101 / 101.0;
		return kResultTrue;
	}

	tresult PLUGIN_API addPoint(int32, ParamValue, int32&) override { return kNotImplemented; }

	double LastValue() {
		int32 offset = 0;
		double value = 0.0;
		getPoint(mSamples - 1, offset, value);
		return value;
	}

	ParamID mId = 0;
	int32 mSamples = 0;
};

class TFlood final : public TUncounted<IParameterChanges> {
public:
	TFlood(ParamID firstId, ParamID count) : mQueues(count) {
		for (ParamID i = 0; i < count; ++i)
			mQueues[i].mId = firstId + i;
	}

	int32 PLUGIN_API getParameterCount() override { return static_cast<int32>(mQueues.size()); }

	IParamValueQueue* PLUGIN_API getParameterData(int32 index) override {
		return &mQueues[static_cast<std::size_t>(index)];
	}

	IParamValueQueue* PLUGIN_API addParameterData(const ParamID&, int32&) override { return nullptr; }

	void SetSamples(int32 samples) {
		for (TFloodQueue& queue : mQueues)
			queue.mSamples = samples;
	}

	std::vector<TFloodQueue> mQueues;
};

/// Watches all parameters, as views do.
class TWatcher final : public TObserver {
public:
	explicit TWatcher(TVortelDocument& document) {
		for (ParamID i = 0; i < kParameters; ++i)
			document.ParameterObservable(static_cast<int32_t>(i))->AddObserver({this, &TWatcher::OnChange});
		mTold = 0;
	}

	void OnChange(TObservable*, int32_t reason) { mTold += reason == kDidChange; }

	ParamID mTold = 0;
};

} // namespace

TEST(Vst3RealTimeTest, AudioThreadNeitherAllocatesNorLocks) {
	const TInstance shell = MakeInstance(TBusyVst3Host::kBlock);
	for (int32 start = 0; start < 600; start += 200) {
		shell->setActive(1);
		ExpectNoOffence(*shell, [&](const auto& locks) {
			TBusyVst3Host host;
			const TRealTimeWatch watch(locks);
			shell->setProcessing(1);
			for (int32 block = start; block < start + 200; ++block)
				host.RunBlock(*shell, block);
			shell->setProcessing(0);
		});
		shell->setActive(0);
	}
}

// Ten seconds of blocks. As points take their time, only the first blocks of each size are full of them.
TEST(Vst3RealTimeTest, FloodOfAutomationCostsNothingWhileTheMainThreadSleeps) {
	constexpr int32 kFloodedSamples = 2048;
	for (const int32 samples : {64, 256, 1024}) {
		const TInstance shell = MakeInstance(samples);
		TVortelDocument& document = DocumentOf(*shell);
		const TGlobalStorageScope storage(shell->StorageId());
		const auto watcher = MakePtr<TWatcher>(document);
		TFlood flood(0, kParameters);
		TFailingHeap heap;
		ExpectNoOffence(*shell, [&](const auto& locks) {
			TVst3TestBlock block(samples);
			const TRealTimeWatch watch(locks);
			for (int32 at = 0; at < 441000; at += samples) {
				const bool isFlooded = at < kFloodedSamples;
				flood.SetSamples(isFlooded ? samples : 2);
				block.mData.inputParameterChanges = isFlooded || at / samples % 16 == 0 ? &flood : nullptr;
				block.Process(*shell);
			}
		});
		EXPECT_EQ(heap->mAllocations, 0);
		EXPECT_EQ(watcher->mTold, 0u);
		for (TFloodQueue& queue : flood.mQueues)
			EXPECT_EQ(document.ParameterValue(static_cast<int32_t>(queue.mId)), static_cast<float>(queue.LastValue()));
		shell->setParamNormalized(kVst3GuiIdle, 0.0);
		EXPECT_EQ(watcher->mTold, kParameters);
	}
}

TEST(Vst3RealTimeTest, FloodOfProgramChangesIsToldOnce) {
	const TInstance shell = MakeInstance(64);
	TFakeVst3Host host;
	shell->setComponentHandler(&host);
	TFlood flood(kVst3Preset, 1);
	flood.SetSamples(64);
	ExpectNoOffence(*shell, [&](const auto& locks) {
		TVst3TestBlock block(64);
		block.mData.inputParameterChanges = &flood;
		const TRealTimeWatch watch(locks);
		for (int32 i = 0; i < 100; ++i)
			block.Process(*shell);
	});
	EXPECT_EQ(shell->getParamNormalized(kVst3Preset), 0.5);
	EXPECT_EQ(host.Take(), "");
	shell->setParamNormalized(kVst3GuiIdle, 0.0);
	EXPECT_EQ(host.Take(), "program8 ");
	shell->setComponentHandler(nullptr);
}
