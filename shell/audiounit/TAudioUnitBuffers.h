// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUBus.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The buffers of one render, as the engine takes them: stereo pairs, one entry per bus in each list, in the engine's
/// scale while it works. Inputs are scaled where they lie and scaled back before the render returns; a buffer that is
/// input and output at once is scaled back once. Where the one output lies apart from the one input, the scaled input
/// goes straight into the output, which saves the engine its copy and leaves the input alone.
///
/// Audio thread, but for SetUp, which allocates.
class TAudioUnitBuffers {
public:
	/// blockSize: the most frames of one render.
	void SetUp(std::size_t inputs, std::size_t outputs, int32_t blockSize);

	/// Empties the lists and sets how long the block is.
	void Begin(int32_t frames);
	/// One buffer serves both sides; silence stands in for none. False for three.
	bool SetInput(std::size_t bus, std::span<const AudioBuffer> buffers);
	void SetSilentInput(std::size_t bus);
	/// False for three.
	bool SetOutput(std::size_t bus, std::span<const AudioBuffer> buffers);
	bool AreInputsComplete() const { return AreComplete(mLeftInputs, mRightInputs); }

	bool AreOutputsComplete() const { return AreComplete(mLeftOutputs, mRightOutputs); }

	void ScaleInputs();
	void RestoreInputs();
	void RestoreOutputs();

	std::span<float* const> LeftInputs() const { return mLeftInputs; }

	std::span<float* const> RightInputs() const { return mRightInputs; }

	std::span<float* const> LeftOutputs() const { return mLeftOutputs; }

	std::span<float* const> RightOutputs() const { return mRightOutputs; }

private:
	using TPointers = std::vector<float*>;

	static bool AreComplete(const TPointers& lefts, const TPointers& rights);
	bool HasOneOutputApart() const;
	void ScaleInputs(float factor);

	TPointers mLeftInputs;
	TPointers mRightInputs;
	TPointers mLeftOutputs;
	TPointers mRightOutputs;
	std::vector<float> mSilentInput;
	int32_t mFrames = 0;
	bool mIsScaledIntoOutput = false;
};
