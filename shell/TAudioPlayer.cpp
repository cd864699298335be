// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TAudioPlayer.h"

void TAudioPlayer::SetOutputChannels(int32_t pairs) {
	if (pairs == mNumOutputs)
		return;
	mNumOutputs = pairs;
	OutputChannelsChanged(pairs);
}

void TAudioPlayer::SetInputChannels(int32_t pairs) {
	if (pairs == mNumInputs)
		return;
	mNumInputs = pairs;
	InputChannelsChanged(pairs);
}

void TAudioPlayer::SetSampleRate(int32_t rate) {
	if (rate == mSampleRate || rate < 1)
		return;
	mSampleRate = rate;
	SampleRateChanged(rate);
}

void TAudioPlayer::SetBlockSize(int32_t samples) {
	if (samples == mBlockSize || samples < 1)
		return;
	mBlockSize = samples;
	BlockSizeChanged(samples);
}

void TAudioPlayer::Initialize() {
	if (mInitialized)
		return;
	mInitialized = true;
	Initialized();
}
