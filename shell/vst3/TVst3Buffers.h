// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TAudioPluginShell.h"
#include "shell/TStereoBuffers.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>

#include <cstddef>
#include <cstdint>

/// Between the busses of a host's block and the engine's stereo pairs. Audio thread, but for the two setters, which
/// allocate. Hosts leave buffers and channels out for busses that are off.
class TVst3Buffers {
public:
	void SetBusCounts(std::size_t inputs, std::size_t outputs) { mPairs.SetCounts(inputs, outputs); }

	/// The longest block that will come.
	void SetBlockSize(int32_t samples) { mPairs.SetBlockSize(samples); }

	/// data must stay as it is until RestoreOutputs.
	void Collect(Steinberg::Vst::ProcessData& data);

	TStereoBuffers& Pairs() { return mPairs; }

	/// Also says which outputs are silent.
	void RestoreOutputs(TAudioPluginShell::TEngine& engine);

	/// Input to output, with its silence; an output with more channels than the input becomes silent.
	static void CopyInputs(Steinberg::Vst::ProcessData& data);
	static void ClearOutputs(Steinberg::Vst::ProcessData& data);

private:
	Steinberg::Vst::ProcessData* mpData = nullptr;
	TStereoBuffers mPairs;
};
