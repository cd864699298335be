// SPDX-License-Identifier: GPL-3.0-or-later
// What the VST 2 adapter costs, with an engine that has nothing to do. To be read against "Bundle".
#include "benchmarks/TSoundCase.h"

#include <dlfcn.h>
#include <pluginterfaces/fst/fst.h>
#include <stdexcept>
#include <thread>

namespace {

class TLibraryCase final : public TSoundCase {
public:
	/// The host's main thread makes the instance; the one that measures plays its audio thread.
	explicit TLibraryCase(bool isInPlace) {
		std::thread([this] { SetUp(); }).join();
		if (isInPlace) {
			mOutputs[0] = mInputs[0];
			mOutputs[1] = mInputs[1];
		}
	}

	~TLibraryCase() override {
		Do(effClose);
		dlclose(mpHandle);
	}

	void ProcessBlock(int frames) override {
		TSoundCase::ProcessBlock(frames);
		mpEffect->processReplacing(mpEffect, mInputs, mOutputs, frames);
		sTime.ppqPos += frames * sTime.tempo / 60.0 / kSampleRate;
	}

private:
	static VstIntPtr Answer(AEffect*, int opcode, int, VstIntPtr, void*, float) {
		switch (opcode) {
		case audioMasterVersion:
			return kVstVersion;
		case audioMasterGetTime:
			return reinterpret_cast<VstIntPtr>(&sTime);
		case audioMasterGetSampleRate:
			return static_cast<VstIntPtr>(kSampleRate);
		case audioMasterGetBlockSize:
			return kMaximumBlock;
		default:
			return 0;
		}
	}

	void Do(int opcode, VstIntPtr value = 0, void* ptr = nullptr) {
		mpEffect->dispatcher(mpEffect, opcode, 0, value, ptr, 0.0f);
	}

	void SetUp() {
		mpHandle = dlopen(VORTEL_VST2_BINARY, RTLD_LAZY | RTLD_LOCAL);
		if (!mpHandle)
			throw std::runtime_error(dlerror());
		const auto entry = reinterpret_cast<AEffect* (*)(audioMasterCallback)>(dlsym(mpHandle, "VSTPluginMain"));
		mpEffect = entry(&Answer);
		if (!mpEffect)
			throw std::runtime_error("the library makes no effect");
		// Sixteen empty programs, whatever the plug-in starts with.
		char bank[] = "<VortelDocument doc_version=\"3\"/>";
		Do(effOpen);
		Do(effSetChunk, sizeof(bank) - 1, bank);
		Do(effMainsChanged, 1);
		sTime.sampleRate = kSampleRate;
		sTime.tempo = 120.0;
		sTime.flags = kVstTransportPlaying | kVstTempoValid | kVstPpqPosValid;
	}

	static inline VstTimeInfo sTime{};
	void* mpHandle = nullptr;
	AEffect* mpEffect = nullptr;
	alignas(16) std::array<float, kMaximumBlock> mLeftOut{};
	alignas(16) std::array<float, kMaximumBlock> mRightOut{};
	float* mInputs[2] = {mLeft.data(), mRight.data()};
	float* mOutputs[2] = {mLeftOut.data(), mRightOut.data()};
};

const TBenchmarkCase::TRegistration kInPlace{"Library/in place", [] { return std::make_unique<TLibraryCase>(true); }};
const TBenchmarkCase::TRegistration kApart{"Library/two buffers", [] { return std::make_unique<TLibraryCase>(false); }};

} // namespace
