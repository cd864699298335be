// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/audiounit/TAudioUnitBuffers.h"

#include "shell/ScaleSamples.h"

#include <algorithm>
#include <functional>

namespace {

float* DataOf(const AudioBuffer& buffer) {
	return static_cast<float*>(buffer.mData);
}

void ScalePair(float* left, float* right, int32_t frames, float factor) {
	ScaleSamples(left, left, frames, factor);
	if (right != left)
		ScaleSamples(right, right, frames, factor);
}

bool IsApart(const float* a, const float* b, int32_t frames) {
	const std::less_equal<> endsBefore;
	return endsBefore(a + frames, b) || endsBefore(b + frames, a);
}

} // namespace

void TAudioUnitBuffers::SetUp(std::size_t inputs, std::size_t outputs, int32_t blockSize) {
	mLeftInputs.assign(inputs, nullptr);
	mRightInputs.assign(inputs, nullptr);
	mLeftOutputs.assign(outputs, nullptr);
	mRightOutputs.assign(outputs, nullptr);
	mSilentInput.assign(inputs > 0 ? static_cast<std::size_t>(blockSize) : 0, 0.0f);
}

void TAudioUnitBuffers::Begin(int32_t frames) {
	for (TPointers* pointers : {&mLeftInputs, &mRightInputs, &mLeftOutputs, &mRightOutputs})
		std::ranges::fill(*pointers, nullptr);
	mFrames = frames;
}

bool TAudioUnitBuffers::SetInput(std::size_t bus, std::span<const AudioBuffer> buffers) {
	if (buffers.size() > 2)
		return false;
	if (buffers.empty()) {
		SetSilentInput(bus);
	} else {
		mLeftInputs[bus] = DataOf(buffers.front());
		mRightInputs[bus] = DataOf(buffers.back());
	}
	return true;
}

void TAudioUnitBuffers::SetSilentInput(std::size_t bus) {
	mLeftInputs[bus] = mRightInputs[bus] = mSilentInput.data();
}

bool TAudioUnitBuffers::SetOutput(std::size_t bus, std::span<const AudioBuffer> buffers) {
	if (buffers.size() > 2)
		return false;
	mLeftOutputs[bus] = buffers.empty() ? nullptr : DataOf(buffers[0]);
	mRightOutputs[bus] = buffers.size() < 2 ? nullptr : DataOf(buffers[1]);
	return true;
}

bool TAudioUnitBuffers::AreComplete(const TPointers& lefts, const TPointers& rights) {
	const auto isMissing = [](const float* buffer) { return buffer == nullptr; };
	return std::ranges::none_of(lefts, isMissing) && std::ranges::none_of(rights, isMissing);
}

bool TAudioUnitBuffers::HasOneOutputApart() const {
	if (mLeftInputs.size() != 1 || mLeftOutputs.size() != 1 || mLeftInputs[0] == mSilentInput.data())
		return false;
	const auto isApart = [this](const float* a, const float* b) { return IsApart(a, b, mFrames); };
	return isApart(mLeftInputs[0], mLeftOutputs[0]) && isApart(mLeftInputs[0], mRightOutputs[0]) &&
	       isApart(mRightInputs[0], mLeftOutputs[0]) && isApart(mRightInputs[0], mRightOutputs[0]) &&
	       isApart(mLeftOutputs[0], mRightOutputs[0]);
}

void TAudioUnitBuffers::ScaleInputs() {
	mIsScaledIntoOutput = HasOneOutputApart();
	if (!mIsScaledIntoOutput)
		return ScaleInputs(kEngineScale);
	ScaleSamples(mLeftInputs[0], mLeftOutputs[0], mFrames, kEngineScale);
	ScaleSamples(mRightInputs[0], mRightOutputs[0], mFrames, kEngineScale);
	mLeftInputs[0] = mLeftOutputs[0];
	mRightInputs[0] = mRightOutputs[0];
}

void TAudioUnitBuffers::RestoreInputs() {
	if (!mIsScaledIntoOutput)
		ScaleInputs(kHostScale);
}

void TAudioUnitBuffers::ScaleInputs(float factor) {
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i)
		if (mLeftInputs[i] != mSilentInput.data())
			ScalePair(mLeftInputs[i], mRightInputs[i], mFrames, factor);
}

void TAudioUnitBuffers::RestoreOutputs() {
	for (std::size_t i = 0; i < mLeftOutputs.size(); ++i) {
		const bool isRestored = !mIsScaledIntoOutput && i < mLeftInputs.size() && mLeftOutputs[i] == mLeftInputs[i];
		if (!isRestored)
			ScalePair(mLeftOutputs[i], mRightOutputs[i], mFrames, kHostScale);
	}
}
