// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TAudioPluginShell.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>

#include <cstdint>
#include <span>
#include <vector>

/// The buffers of one host block, as the engine takes them: stereo pairs, and in the engine's scale while it works. The
/// scaling happens in place, in the host's buffers, input and output, and is undone before the call returns; a buffer
/// that is input and output at once is scaled back once. Where a single bus has its inputs apart from its outputs, the
/// scaled input goes straight into the output, which saves the engine its copy and leaves the input alone. An output
/// may also lie on the other side's input: no side is lost.
///
/// Audio thread, but for the two setters, which allocate. A missing buffer (hosts leave them out for busses that are
/// off) is replaced: silence goes in, and what comes out is dropped.
class TVst3Buffers {
public:
	void SetBusCounts(std::size_t inputs, std::size_t outputs);
	/// The longest block that will come.
	void SetBlockSize(int32_t samples);

	/// False: a bus has no channel. data must stay as it is until RestoreOutputs.
	bool Collect(Steinberg::Vst::ProcessData& data);
	void ScaleInputs();
	void RestoreInputs();
	/// Also says which outputs are silent.
	void RestoreOutputs(TAudioPluginShell::TEngine& engine);

	std::span<float* const> LeftInputs() const { return mLeftInputs; }

	std::span<float* const> RightInputs() const { return mRightInputs; }

	std::span<float* const> LeftOutputs() const { return mLeftOutputs; }

	std::span<float* const> RightOutputs() const { return mRightOutputs; }

	/// Input to output, where both sides have the bus; an output with more channels than the input becomes silent.
	static void CopyInputs(Steinberg::Vst::ProcessData& data);
	static void ClearOutputs(Steinberg::Vst::ProcessData& data);

private:
	using TPointers = std::vector<float*>;

	bool IsInPlace() const;
	bool HasOutputsApart() const;
	bool ScaleIntoOutputs(bool isSilent);
	bool IsRestored(const float* buffer) const;

	Steinberg::Vst::ProcessData* mpData = nullptr;
	TPointers mLeftInputs; // one entry per bus
	TPointers mRightInputs;
	TPointers mLeftOutputs;
	TPointers mRightOutputs;
	std::vector<char> mInputScaled;
	std::vector<float> mSilence;
	std::vector<float> mDropped;
};
