// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TAudioObject.h"

#include <cstdint>

/// What a host sets up before audio runs: rate, block size and the number of stereo pairs.
/// The setters are called while no process call runs; each calls its hook only when the value really changes. A rate
/// or size below 1 is ignored.
class TAudioPlayer : public TAudioObject {
public:
	void SetOutputChannels(int32_t pairs);
	void SetInputChannels(int32_t pairs);
	/// Hertz.
	void SetSampleRate(int32_t rate);
	/// The largest number of samples in one process call.
	void SetBlockSize(int32_t samples);

	int32_t OutputChannels() const { return mNumOutputs; }

	int32_t InputChannels() const { return mNumInputs; }

	int32_t SampleRate() const { return mSampleRate; }

	int32_t BlockSize() const { return mBlockSize; }

	virtual bool IsOutputActive(int32_t /*output*/) { return true; }

protected:
	TAudioPlayer(int32_t sampleRate, int32_t blockSize) : mSampleRate(sampleRate), mBlockSize(blockSize) {}

	virtual void InputChannelsChanged(int32_t pairs) = 0;
	virtual void OutputChannelsChanged(int32_t pairs) = 0;
	virtual void SampleRateChanged(int32_t rate) = 0;
	virtual void BlockSizeChanged(int32_t samples) = 0;

	/// Run once, from the constructor of the contract class.
	virtual void Initialized() {}

	void Initialize();

private:
	int32_t mNumOutputs = 0;
	int32_t mNumInputs = 0;
	int32_t mSampleRate;
	int32_t mBlockSize;
	bool mInitialized = false;
};
