// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TStereoBuffers.h"

#include "shell/ScaleSamples.h"

#include <algorithm>
#include <functional>

namespace {

void ScalePair(float* left, float* right, int32_t samples, float factor) {
	ScaleSamples(left, left, samples, factor);
	if (right != left)
		ScaleSamples(right, right, samples, factor);
}

bool IsApart(const float* a, const float* b, int32_t samples) {
	const std::less_equal<> endsBefore;
	return endsBefore(a + samples, b) || endsBefore(b + samples, a);
}

} // namespace

void TStereoBuffers::SetCounts(std::size_t inputs, std::size_t outputs) {
	mLeftInputs.resize(inputs);
	mRightInputs.resize(inputs);
	mInputStates.resize(inputs);
	mLeftOutputs.resize(outputs);
	mRightOutputs.resize(outputs);
}

void TStereoBuffers::SetBlockSize(int32_t samples) {
	const auto size = static_cast<std::size_t>(samples);
	mSilence.assign(size, 0.0f);
	mDropped.assign(2 * size, 0.0f);
}

TStereoBuffers::TSides TStereoBuffers::ClearTheWay(const TSides& inputs, const TSides& outputs, int32_t samples) {
	if (outputs[0] != inputs[1] || inputs[0] == inputs[1] || !inputs[0] || !inputs[1] || !outputs[1])
		return inputs;
	if (outputs[1] == inputs[0]) {
		std::swap_ranges(inputs[0], inputs[0] + samples, inputs[1]);
		return outputs;
	}
	std::copy_n(inputs[1], samples, outputs[1]);
	return {inputs[0], outputs[1]};
}

bool TStereoBuffers::IsInPlace() const {
	return mLeftInputs[0] == mLeftOutputs[0] && mRightInputs[0] == mRightOutputs[0] &&
	       mLeftOutputs[0] != mRightOutputs[0];
}

bool TStereoBuffers::HasOutputsApart(int32_t samples) const {
	const auto isApart = [samples](const float* a, const float* b) { return IsApart(a, b, samples); };
	return isApart(mLeftInputs[0], mLeftOutputs[0]) && isApart(mLeftInputs[0], mRightOutputs[0]) &&
	       isApart(mRightInputs[0], mLeftOutputs[0]) && isApart(mRightInputs[0], mRightOutputs[0]) &&
	       isApart(mLeftOutputs[0], mRightOutputs[0]);
}

/// Of a single pair. True: what comes in is in the output buffers, in the engine's scale, or is silent.
bool TStereoBuffers::ScaleIntoOutputs(int32_t samples) {
	if (!IsInPlace()) {
		const TSides inputs{mLeftInputs[0], mRightInputs[0]};
		const TSides outputs{mLeftOutputs[0], mRightOutputs[0]};
		const TSides clear = ClearTheWay(inputs, outputs, samples);
		mLeftInputs[0] = clear[0];
		mRightInputs[0] = clear[1];
		if (!IsInPlace() && !HasOutputsApart(samples))
			return false;
	}
	if (mInputStates[0] == EInput::kSilent)
		return true;
	ScaleSamples(mLeftInputs[0], mLeftOutputs[0], samples, kEngineScale);
	ScaleSamples(mRightInputs[0], mRightOutputs[0], samples, kEngineScale);
	mLeftInputs[0] = mLeftOutputs[0];
	mRightInputs[0] = mRightOutputs[0];
	return true;
}

void TStereoBuffers::ScaleInputs(int32_t samples) {
	if (mLeftInputs.size() == 1 && mLeftOutputs.size() == 1 && ScaleIntoOutputs(samples))
		return;
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i) {
		if (mInputStates[i] == EInput::kSilent)
			continue;
		ScalePair(mLeftInputs[i], mRightInputs[i], samples, kEngineScale);
		mInputStates[i] = EInput::kScaled;
	}
}

void TStereoBuffers::RestoreInputs(int32_t samples) {
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i)
		if (mInputStates[i] == EInput::kScaled)
			ScalePair(mLeftInputs[i], mRightInputs[i], samples, kHostScale);
}

bool TStereoBuffers::IsRestored(const float* buffer) const {
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i)
		if (mInputStates[i] == EInput::kScaled && (buffer == mLeftInputs[i] || buffer == mRightInputs[i]))
			return true;
	return false;
}

/// Whether it is silent, which it is in either scale. An input that was silent is not scaled back, but what the engine
/// has made of it in the same buffer is.
bool TStereoBuffers::RestoreSide(float* buffer, int32_t samples) const {
	if (IsSilence(buffer, samples))
		return true;
	if (!IsRestored(buffer))
		ScaleSamples(buffer, buffer, samples, kHostScale);
	return false;
}

uint32_t TStereoBuffers::RestoreOutput(std::size_t index, int32_t samples) {
	float* left = mLeftOutputs[index];
	float* right = mRightOutputs[index];
	const uint32_t leftIsSilent = RestoreSide(left, samples) ? 1 : 0;
	const uint32_t rightIsSilent = right == left ? leftIsSilent : RestoreSide(right, samples) ? 1 : 0;
	return leftIsSilent | rightIsSilent << 1;
}
