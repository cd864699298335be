// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelMasterDspDevice.h"

#include "document/TVortelProgram.h"

namespace {

constexpr double kCeiling = 32767.0;
constexpr float kKneeFactor = 0.85f;

} // namespace

TVortelMasterDspDevice::TVortelMasterDspDevice(TVortelDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mSoftClip(kCeiling, kKneeFactor) {
	FinishConstruction();
}

void TVortelMasterDspDevice::Process(float* left, float* right, int count) {
	TVortelProgram* program = Program();
	if (!program)
		return;
	mMixRamp.SetTarget(program->MasterMix().Get());
	mPanRamp.SetTarget(program->MasterPanning().Get());
	mVolumeRamp.SetTarget(program->MasterVolume().Get());
	ProcessMix(left, right, count);
	if (program->SoftClip().Get()) {
		mSoftClip.ProcessBlock(left, count);
		mSoftClip.ProcessBlock(right, count);
	}
}
