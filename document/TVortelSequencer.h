// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelParameterTable.h"
#include "document/TVortelSequence.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBaseType.h"

#include <array>

/// The pattern of a scene: one row per device on a common grid. Rows go by device index, not by display position.
/// Steps beyond the used length stay stored. A file may hold any grid; the editor keeps to 1 to 8 beats of 2 to 8
/// steps.
class TVortelSequencer final : public TDocumentNode {
public:
	static constexpr int32_t kNumberOfRows = TVortelParameterTable::kNumberOfDevices;

	TVortelSequencer();

	void Clear();
	/// mix: the grid stays, and the source's blocks are laid over the rows.
	void CopyFrom(const TVortelSequencer& source, bool mix);
	/// Whether the grid is not 4 by 4 or any row has a step.
	bool HasContent() const;

	/// The index is taken into 0 to 10.
	TVortelSequence& Sequence(int32_t deviceIndex) noexcept;
	const TVortelSequence& Sequence(int32_t deviceIndex) const noexcept;
	/// Steps of the used length: beats times steps per beat, 0 to 64 whatever a file says.
	int32_t StepCount() const noexcept;

	TObservableBaseType<int>& NumBeats() noexcept { return mNumBeats; }

	TObservableBaseType<int>& NumStepsPerBeat() noexcept { return mNumStepsPerBeat; }

	TObservableBaseType<bool>& LoopEnabled() noexcept { return mLoopEnabled; }

private:
	TObservableBaseType<int> mNumBeats{4};
	TObservableBaseType<int> mNumStepsPerBeat{4};
	TObservableBaseType<bool> mLoopEnabled{true};
	std::array<TVortelSequence, kNumberOfRows> mSequences;
};
