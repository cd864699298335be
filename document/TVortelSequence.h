// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TSerializable.h"
#include "framework/foundation/text/TString.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

enum EVortelStep : uint8_t { kStepEmpty = 0, kStepBlockStart = 1, kStepBlockContinue = 2 };

/// A row of a sequencer: 64 steps. A block is a start followed by any number of continued steps.
/// Written by the main thread, read by the audio thread without a lock. Nothing here notifies: whoever changes a row
/// fires the document's sequence bang.
class TVortelSequence final : public TSerializable {
public:
	static constexpr int32_t kNumberOfSteps = 64;

	/// Empty for an index outside 0 to 63.
	uint8_t Step(int32_t index) const noexcept;
	/// Ignores an index outside 0 to 63. What is no EVortelStep is empty.
	void SetStep(int32_t index, uint8_t value) noexcept;
	void Clear() noexcept;
	bool IsEmpty() const noexcept;
	/// mix: only the steps at which the source has a block are taken over.
	void CopyFrom(const TVortelSequence& source, bool mix) noexcept;

	/// Rewrites all 64 steps with blocks and gaps of random lengths, in steps.
	void Randomize(int32_t minLength, int32_t maxLength);
	/// Moves or resizes some of the blocks of the first stepCount steps by one step.
	void Mutate(int32_t stepCount, int32_t maxBlockLength);
	void MirrorHorizontally(int32_t stepCount);

	bool IsPlainText() const override { return true; }

	/// "-" empty, "*" start, "+" continued; nothing at all for an empty row.
	TString ToString() const override;
	void FromString(const TString& text) override;

private:
	struct TBlock {
		int32_t mStart;
		int32_t mLength;
	};

	std::vector<TBlock> CollectBlocks(int32_t stepCount) const;
	void WriteBlock(TBlock block, int32_t stepCount) noexcept;

	// Two bits a step, so that a row is copied and cleared at once. A step lies in one word: readers see it whole.
	static constexpr int32_t kStepsPerWord = 32;

	static constexpr int32_t ShiftOf(int32_t index) noexcept { return 2 * (index % kStepsPerWord); }

	static constexpr std::size_t WordOf(int32_t index) noexcept {
		return static_cast<std::size_t>(index / kStepsPerWord);
	}

	std::array<std::atomic<uint64_t>, kNumberOfSteps / kStepsPerWord> mWords{};
};
