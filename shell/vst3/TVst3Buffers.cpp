// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3Buffers.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

using namespace Steinberg::Vst;

namespace {

std::span<AudioBusBuffers> BussesOf(AudioBusBuffers* busses, int32_t count) {
	return {busses, busses && count > 0 ? static_cast<std::size_t>(count) : 0};
}

float* Channel(const AudioBusBuffers& bus, int32_t channel) {
	return bus.channelBuffers32 ? bus.channelBuffers32[channel] : nullptr;
}

/// Left and right of a bus; a mono bus gives its one channel for both.
TStereoBuffers::TSides SidesOf(const AudioBusBuffers& bus) {
	if (bus.numChannels < 1)
		return {};
	return {Channel(bus, 0), Channel(bus, std::min(bus.numChannels, 2) - 1)};
}

/// One bit for each channel.
uint64_t AllChannels(const AudioBusBuffers& bus) {
	return bus.numChannels < 64 ? (uint64_t{1} << std::max(bus.numChannels, 0)) - 1 : ~uint64_t{0};
}

bool IsSilent(const AudioBusBuffers& bus, bool isOneBuffer) {
	const uint64_t needed = isOneBuffer ? 1 : 3;
	return (bus.silenceFlags & needed) == needed;
}

void ClearBus(AudioBusBuffers& bus, int32_t samples) {
	for (int32_t channel = 0; channel < bus.numChannels; ++channel)
		if (float* buffer = Channel(bus, channel))
			std::fill_n(buffer, samples, 0.0f);
	bus.silenceFlags = AllChannels(bus);
}

void CopyChannel(const float* from, float* to, int32_t samples) {
	if (from && to && from != to)
		std::memmove(to, from, static_cast<std::size_t>(samples) * sizeof(float));
}

void CopyBus(const AudioBusBuffers& input, AudioBusBuffers& output, int32_t samples) {
	int32_t channel = 0;
	if (output.numChannels >= 2) {
		const TStereoBuffers::TSides to{Channel(output, 0), Channel(output, 1)};
		const TStereoBuffers::TSides from{Channel(input, 0), Channel(input, 1)};
		for (const float* side : TStereoBuffers::ClearTheWay(from, to, samples))
			CopyChannel(side, to[static_cast<std::size_t>(channel++)], samples);
	}
	for (; channel < output.numChannels; ++channel)
		CopyChannel(Channel(input, channel), Channel(output, channel), samples);
}

} // namespace

void TVst3Buffers::Collect(ProcessData& data) {
	mpData = &data;
	const auto inputs = BussesOf(data.inputs, data.numInputs);
	const auto outputs = BussesOf(data.outputs, data.numOutputs);
	for (std::size_t i = 0; i < mPairs.NumberOfInputs(); ++i) {
		const bool isThere = i < inputs.size() && inputs[i].numChannels > 0;
		const auto [left, right] = isThere ? SidesOf(inputs[i]) : TStereoBuffers::TSides{};
		mPairs.SetInput(i, left, right, !isThere || IsSilent(inputs[i], left == right));
	}
	for (std::size_t i = 0; i < mPairs.NumberOfOutputs(); ++i) {
		const auto [left, right] = i < outputs.size() ? SidesOf(outputs[i]) : TStereoBuffers::TSides{};
		mPairs.SetOutput(i, left, right);
	}
}

void TVst3Buffers::RestoreOutputs(TAudioPluginShell::TEngine& engine) {
	const auto busses = BussesOf(mpData->outputs, mpData->numOutputs);
	for (std::size_t i = 0; i < mPairs.NumberOfOutputs() && i < busses.size(); ++i) {
		if (engine.IsOutputActive(static_cast<int32_t>(i)))
			busses[i].silenceFlags = mPairs.RestoreOutput(i, mpData->numSamples) & AllChannels(busses[i]);
		else
			ClearBus(busses[i], mpData->numSamples);
	}
}

void TVst3Buffers::CopyInputs(ProcessData& data) {
	const auto inputs = BussesOf(data.inputs, data.numInputs);
	const auto outputs = BussesOf(data.outputs, data.numOutputs);
	for (std::size_t i = 0; i < outputs.size(); ++i) {
		if (i >= inputs.size() || inputs[i].numChannels < outputs[i].numChannels) {
			ClearBus(outputs[i], data.numSamples);
			continue;
		}
		CopyBus(inputs[i], outputs[i], data.numSamples);
		outputs[i].silenceFlags = inputs[i].silenceFlags & AllChannels(outputs[i]);
	}
}

void TVst3Buffers::ClearOutputs(ProcessData& data) {
	for (AudioBusBuffers& bus : BussesOf(data.outputs, data.numOutputs))
		ClearBus(bus, data.numSamples);
}
