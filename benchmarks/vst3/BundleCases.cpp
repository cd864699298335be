// SPDX-License-Identifier: GPL-3.0-or-later
// What the adapter costs: the built bundle, loaded as a host loads it, with an engine that has nothing to do. To be
// read against "Engine/idle" and, for the cost of a copy of the block, against "floor".
#include "benchmarks/TSoundCase.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>
#include <public.sdk/source/common/memorystream.h>
#include <stdexcept>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

enum class EBuffers { kInPlace, kApart, kSilent };

/// Sixteen empty programs, whatever the plug-in starts with.
void LoadEmptyBank(IComponent& component) {
	constexpr char kBank[] = "<VortelDocument doc_version=\"3\"/>";
	constexpr int32 kLength = sizeof(kBank) - 1;
	char state[sizeof(kLength) + kLength];
	std::memcpy(state, &kLength, sizeof(kLength));
	std::memcpy(state + sizeof(kLength), kBank, kLength);
	MemoryStream stream(state, sizeof(state));
	if (component.setState(&stream) != kResultOk)
		throw std::runtime_error("the bundle takes no empty bank");
}

/// The shared object, open as long as a case runs.
class TModule {
public:
	TModule() : mpHandle(dlopen(VORTEL_BUNDLE_BINARY, RTLD_LAZY | RTLD_LOCAL)) {
		if (!mpHandle)
			throw std::runtime_error(dlerror());
	}

	~TModule() { dlclose(mpHandle); }

	TModule(const TModule&) = delete;
	TModule& operator=(const TModule&) = delete;

	IPtr<IComponent> MakeComponent() const {
		const auto factory = reinterpret_cast<IPluginFactory* (*)()>(dlsym(mpHandle, "GetPluginFactory"));
		const IPtr<IPluginFactory> made = owned(factory());
		PClassInfo info;
		void* component = nullptr;
		if (made->getClassInfo(0, &info) != kResultOk ||
		    made->createInstance(info.cid, IComponent_iid, &component) != kResultOk)
			throw std::runtime_error("the bundle makes no component");
		return owned(static_cast<IComponent*>(component));
	}

private:
	void* mpHandle;
};

class TBundleCase final : public TSoundCase {
public:
	/// The host's main thread makes the instance; the one that measures plays its audio thread.
	explicit TBundleCase(EBuffers buffers) : mBuffers(buffers) {
		std::thread([this] { SetUp(); }).join();
		ConnectBuffers();
	}

	~TBundleCase() override {
		mpComponent->setActive(0);
		mpComponent->terminate();
	}

	void ProcessBlock(int frames) override {
		TSoundCase::ProcessBlock(frames);
		if (mBuffers == EBuffers::kSilent) {
			std::fill_n(mLeft.begin(), frames, 0.0f);
			std::fill_n(mRight.begin(), frames, 0.0f);
		}
		mData.numSamples = frames;
		mpProcessor->process(mData);
		mContext.projectTimeMusic += frames * 120.0 / 60.0 / kSampleRate;
	}

private:
	void SetUp() {
		void* processor = nullptr;
		mpComponent = mModule.MakeComponent();
		mpComponent->initialize(nullptr);
		LoadEmptyBank(*mpComponent);
		mpComponent->queryInterface(IAudioProcessor_iid, &processor);
		mpProcessor = owned(static_cast<IAudioProcessor*>(processor));
		ProcessSetup setup{kRealtime, kSample32, kMaximumBlock, kSampleRate};
		mpProcessor->setupProcessing(setup);
		mpComponent->setActive(1);
		mContext.state =
		    ProcessContext::kPlaying | ProcessContext::kTempoValid | ProcessContext::kProjectTimeMusicValid;
		mContext.tempo = 120.0;
		mContext.sampleRate = kSampleRate;
	}

	void ConnectBuffers() {
		const bool inPlace = mBuffers != EBuffers::kApart;
		mOutputs[0] = inPlace ? mLeft.data() : mLeftOut.data();
		mOutputs[1] = inPlace ? mRight.data() : mRightOut.data();
		mInput.numChannels = mOutput.numChannels = 2;
		mInput.channelBuffers32 = mInputs;
		mInput.silenceFlags = mBuffers == EBuffers::kSilent ? 3 : 0;
		mOutput.channelBuffers32 = mOutputs;
		mData.symbolicSampleSize = kSample32;
		mData.numInputs = mData.numOutputs = 1;
		mData.inputs = &mInput;
		mData.outputs = &mOutput;
		mData.processContext = &mContext;
	}

	const EBuffers mBuffers;
	TModule mModule; // outlives what comes out of it
	IPtr<IComponent> mpComponent;
	IPtr<IAudioProcessor> mpProcessor;
	alignas(16) std::array<float, kMaximumBlock> mLeftOut{};
	alignas(16) std::array<float, kMaximumBlock> mRightOut{};
	float* mInputs[2] = {mLeft.data(), mRight.data()};
	float* mOutputs[2] = {};
	AudioBusBuffers mInput;
	AudioBusBuffers mOutput;
	ProcessContext mContext{};
	ProcessData mData;
};

const TBenchmarkCase::TRegistration kInPlace{
    "Bundle/in place", [] { return std::make_unique<TBundleCase>(EBuffers::kInPlace); }};
const TBenchmarkCase::TRegistration kApart{
    "Bundle/two buffers", [] { return std::make_unique<TBundleCase>(EBuffers::kApart); }};
const TBenchmarkCase::TRegistration kSilent{
    "Bundle/silent", [] { return std::make_unique<TBundleCase>(EBuffers::kSilent); }};

} // namespace
