// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3Buffers.h"

#include "shell/ScaleSamples.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <functional>

using namespace Steinberg::Vst;

namespace {

std::span<AudioBusBuffers> BussesOf(AudioBusBuffers* busses, int32_t count) {
	return {busses, busses && count > 0 ? static_cast<std::size_t>(count) : 0};
}

float* Channel(const AudioBusBuffers& bus, int32_t channel) {
	return bus.channelBuffers32 ? bus.channelBuffers32[channel] : nullptr;
}

/// Lists left and right of each bus; a mono bus gives its one channel for both.
bool CollectBusses(
    std::span<const AudioBusBuffers> busses, std::span<float*> lefts, std::span<float*> rights, float* replacementLeft,
    float* replacementRight) {
	for (std::size_t i = 0; i < lefts.size(); ++i) {
		lefts[i] = replacementLeft;
		rights[i] = replacementRight;
		if (i >= busses.size())
			continue;
		if (busses[i].numChannels < 1)
			return false;
		if (float* left = Channel(busses[i], 0))
			lefts[i] = left;
		if (float* right = Channel(busses[i], std::min(busses[i].numChannels, 2) - 1))
			rights[i] = right;
	}
	return true;
}

void ScalePair(float* left, float* right, int32_t samples, float factor) {
	ScaleSamples(left, left, samples, factor);
	if (right != left)
		ScaleSamples(right, right, samples, factor);
}

bool IsApart(const float* a, const float* b, int32_t samples) {
	const std::less_equal<> endsBefore;
	return endsBefore(a + samples, b) || endsBefore(b + samples, a);
}

bool IsSilent(const AudioBusBuffers& bus, bool isOneBuffer) {
	const uint64_t needed = isOneBuffer ? 1 : 3;
	return (bus.silenceFlags & needed) == needed;
}

void ClearBus(AudioBusBuffers& bus, int32_t samples) {
	for (int32_t channel = 0; channel < bus.numChannels; ++channel) {
		if (float* buffer = Channel(bus, channel))
			std::fill_n(buffer, samples, 0.0f);
		bus.silenceFlags |= uint64_t{1} << std::min(channel, 63);
	}
}

using TSides = std::array<float*, 2>;

/// Left goes to its output first. Where that lies on the right input, right moves there ahead of it. Gives where the
/// inputs are then.
TSides ClearTheWay(const TSides& inputs, const TSides& outputs, int32_t samples) {
	if (outputs[0] != inputs[1] || inputs[0] == inputs[1] || !inputs[0] || !inputs[1] || !outputs[1])
		return inputs;
	if (outputs[1] == inputs[0]) {
		std::swap_ranges(inputs[0], inputs[0] + samples, inputs[1]);
		return outputs;
	}
	std::copy_n(inputs[1], samples, outputs[1]);
	return {inputs[0], outputs[1]};
}

void CopyChannel(const float* from, float* to, int32_t samples) {
	if (from && to && from != to)
		std::memmove(to, from, static_cast<std::size_t>(samples) * sizeof(float));
}

void CopyBus(const AudioBusBuffers& input, AudioBusBuffers& output, int32_t samples) {
	int32_t channel = 0;
	if (output.numChannels >= 2) {
		const TSides to{Channel(output, 0), Channel(output, 1)};
		for (const float* from : ClearTheWay({Channel(input, 0), Channel(input, 1)}, to, samples))
			CopyChannel(from, to[static_cast<std::size_t>(channel++)], samples);
	}
	for (; channel < output.numChannels; ++channel)
		CopyChannel(Channel(input, channel), Channel(output, channel), samples);
}

} // namespace

void TVst3Buffers::SetBusCounts(std::size_t inputs, std::size_t outputs) {
	mLeftInputs.resize(inputs);
	mRightInputs.resize(inputs);
	mInputScaled.resize(inputs);
	mLeftOutputs.resize(outputs);
	mRightOutputs.resize(outputs);
}

void TVst3Buffers::SetBlockSize(int32_t samples) {
	const auto size = static_cast<std::size_t>(samples);
	mSilence.assign(size, 0.0f);
	mDropped.assign(2 * size, 0.0f);
}

bool TVst3Buffers::Collect(ProcessData& data) {
	mpData = &data;
	float* dropped = mDropped.data();
	return CollectBusses(
	           BussesOf(data.inputs, data.numInputs), mLeftInputs, mRightInputs, mSilence.data(), mSilence.data()) &&
	       CollectBusses(
	           BussesOf(data.outputs, data.numOutputs), mLeftOutputs, mRightOutputs, dropped,
	           dropped + mDropped.size() / 2);
}

bool TVst3Buffers::IsInPlace() const {
	return mLeftInputs[0] == mLeftOutputs[0] && mRightInputs[0] == mRightOutputs[0] &&
	       mLeftOutputs[0] != mRightOutputs[0];
}

bool TVst3Buffers::HasOutputsApart() const {
	const auto isApart = [this](const float* a, const float* b) { return IsApart(a, b, mpData->numSamples); };
	return isApart(mLeftInputs[0], mLeftOutputs[0]) && isApart(mLeftInputs[0], mRightOutputs[0]) &&
	       isApart(mRightInputs[0], mLeftOutputs[0]) && isApart(mRightInputs[0], mRightOutputs[0]) &&
	       isApart(mLeftOutputs[0], mRightOutputs[0]);
}

/// Of a single bus. True: what comes in is in the output buffers, in the engine's scale.
bool TVst3Buffers::ScaleIntoOutputs(bool isSilent) {
	if (!IsInPlace()) {
		const TSides inputs{mLeftInputs[0], mRightInputs[0]};
		const TSides outputs{mLeftOutputs[0], mRightOutputs[0]};
		const TSides clear = ClearTheWay(inputs, outputs, mpData->numSamples);
		mLeftInputs[0] = clear[0];
		mRightInputs[0] = clear[1];
		if (!IsInPlace() && !HasOutputsApart())
			return false;
	}
	if (isSilent)
		return false;
	ScaleSamples(mLeftInputs[0], mLeftOutputs[0], mpData->numSamples, kEngineScale);
	ScaleSamples(mRightInputs[0], mRightOutputs[0], mpData->numSamples, kEngineScale);
	mLeftInputs[0] = mLeftOutputs[0];
	mRightInputs[0] = mRightOutputs[0];
	mInputScaled[0] = false;
	return true;
}

void TVst3Buffers::ScaleInputs() {
	const auto busses = BussesOf(mpData->inputs, mpData->numInputs);
	const bool isSingle = mLeftInputs.size() == 1 && mLeftOutputs.size() == 1 && !busses.empty();
	if (isSingle && ScaleIntoOutputs(IsSilent(busses[0], mLeftInputs[0] == mRightInputs[0])))
		return;
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i) {
		mInputScaled[i] = i < busses.size() && !IsSilent(busses[i], mLeftInputs[i] == mRightInputs[i]);
		if (mInputScaled[i])
			ScalePair(mLeftInputs[i], mRightInputs[i], mpData->numSamples, kEngineScale);
	}
}

void TVst3Buffers::RestoreInputs() {
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i)
		if (mInputScaled[i])
			ScalePair(mLeftInputs[i], mRightInputs[i], mpData->numSamples, kHostScale);
}

bool TVst3Buffers::IsRestored(const float* buffer) const {
	for (std::size_t i = 0; i < mLeftInputs.size(); ++i)
		if (mInputScaled[i] && (buffer == mLeftInputs[i] || buffer == mRightInputs[i]))
			return true;
	return false;
}

// An input that was silent is not scaled back, but what the engine has made of it in the same buffer is.
void TVst3Buffers::RestoreOutputs(TAudioPluginShell::TEngine& engine) {
	const auto busses = BussesOf(mpData->outputs, mpData->numOutputs);
	for (std::size_t i = 0; i < mLeftOutputs.size() && i < busses.size(); ++i) {
		busses[i].silenceFlags = 0;
		if (!engine.IsOutputActive(static_cast<int32_t>(i))) {
			ClearBus(busses[i], mpData->numSamples);
			busses[i].silenceFlags = 3;
			continue;
		}
		float* left = mLeftOutputs[i];
		float* right = mRightOutputs[i];
		if (!IsRestored(left))
			ScaleSamples(left, left, mpData->numSamples, kHostScale);
		if (right != left && !IsRestored(right))
			ScaleSamples(right, right, mpData->numSamples, kHostScale);
	}
}

void TVst3Buffers::CopyInputs(ProcessData& data) {
	const auto inputs = BussesOf(data.inputs, data.numInputs);
	const auto outputs = BussesOf(data.outputs, data.numOutputs);
	for (std::size_t i = 0; i < std::min(inputs.size(), outputs.size()); ++i) {
		outputs[i].silenceFlags = 0;
		if (inputs[i].numChannels >= outputs[i].numChannels)
			CopyBus(inputs[i], outputs[i], data.numSamples);
		else
			ClearBus(outputs[i], data.numSamples);
	}
}

void TVst3Buffers::ClearOutputs(ProcessData& data) {
	for (AudioBusBuffers& bus : BussesOf(data.outputs, data.numOutputs))
		ClearBus(bus, data.numSamples);
}
