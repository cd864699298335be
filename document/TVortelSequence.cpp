// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelSequence.h"

#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr uint64_t kStepMask = 3;
constexpr uint64_t kLowBits = 0x5555'5555'5555'5555; // of each step
constexpr char kStepTexts[] = {'-', '*', '+'};

uint8_t StepFromText(char text) {
	if (text == kStepTexts[kStepBlockStart])
		return kStepBlockStart;
	return text == kStepTexts[kStepBlockContinue] ? kStepBlockContinue : kStepEmpty;
}

int32_t ClampStepCount(int32_t stepCount) {
	return std::clamp(stepCount, 0, TVortelSequence::kNumberOfSteps);
}

} // namespace

uint8_t TVortelSequence::Step(int32_t index) const noexcept {
	if (index < 0 || index >= kNumberOfSteps)
		return kStepEmpty;
	return static_cast<uint8_t>((mWords[WordOf(index)].load(std::memory_order_relaxed) >> ShiftOf(index)) & kStepMask);
}

void TVortelSequence::SetStep(int32_t index, uint8_t value) noexcept {
	if (index < 0 || index >= kNumberOfSteps)
		return;
	std::atomic<uint64_t>& word = mWords[WordOf(index)];
	const uint64_t others = word.load(std::memory_order_relaxed) & ~(kStepMask << ShiftOf(index));
	const uint64_t step = value > kStepBlockContinue ? 0 : value;
	word.store(others | step << ShiftOf(index), std::memory_order_relaxed);
}

void TVortelSequence::Clear() noexcept {
	for (auto& word : mWords)
		word.store(0, std::memory_order_relaxed);
}

bool TVortelSequence::IsEmpty() const noexcept {
	return std::all_of(
	    mWords.begin(), mWords.end(), [](const auto& word) { return word.load(std::memory_order_relaxed) == 0; });
}

void TVortelSequence::CopyFrom(const TVortelSequence& source, bool mix) noexcept {
	for (std::size_t i = 0; i < mWords.size(); ++i) {
		const uint64_t taken = source.mWords[i].load(std::memory_order_relaxed);
		const uint64_t blocks = (taken | taken >> 1) & kLowBits;
		const uint64_t kept = mix ? mWords[i].load(std::memory_order_relaxed) & ~(blocks * kStepMask) : 0;
		mWords[i].store(kept | taken, std::memory_order_relaxed);
	}
}

void TVortelSequence::Randomize(int32_t minLength, int32_t maxLength) {
	int32_t remaining = 0;
	uint8_t state = kStepEmpty;
	for (int32_t i = 0; i < kNumberOfSteps; ++i) {
		if (remaining == 0) {
			remaining = std::max(1, RoundHalfAway(TRandom::Next() * (maxLength - 1)) + minLength);
			state = TRandom::Next() > 0.5 ? kStepBlockStart : kStepEmpty;
		}
		SetStep(i, state);
		--remaining;
		if (state == kStepBlockStart)
			state = kStepBlockContinue;
	}
}

void TVortelSequence::Mutate(int32_t stepCount, int32_t maxBlockLength) {
	stepCount = ClampStepCount(stepCount);
	std::vector<TBlock> blocks = CollectBlocks(stepCount);
	const auto isFree = [&](int32_t start) {
		return start >= 0 && start < stepCount &&
		       std::none_of(blocks.begin(), blocks.end(), [=](const TBlock& block) { return block.mStart == start; });
	};

	for (TBlock& block : blocks) {
		const int choice = RoundHalfAway(TRandom::Next() * 3.0);
		if (choice == 1) {
			const int32_t start = TRandom::Next() < 0.5 ? block.mStart - 1 : block.mStart + 1;
			if (isFree(start))
				block.mStart = start;
		} else if (choice == 3) {
			if (TRandom::Next() < 0.5)
				block.mLength = std::max(1, block.mLength - 1);
			else if (isFree(block.mStart + 1) && block.mLength + 1 <= maxBlockLength)
				++block.mLength;
		}
	}

	Clear();
	for (const TBlock& block : blocks)
		WriteBlock(block, stepCount);
}

void TVortelSequence::MirrorHorizontally(int32_t stepCount) {
	stepCount = ClampStepCount(stepCount);
	const std::vector<TBlock> blocks = CollectBlocks(stepCount);
	Clear();
	for (const TBlock& block : blocks)
		WriteBlock({std::abs(block.mStart + block.mLength - stepCount), block.mLength}, stepCount);
}

TString TVortelSequence::ToString() const {
	if (IsEmpty())
		return TString();
	char text[kNumberOfSteps + 1] = {};
	for (int32_t i = 0; i < kNumberOfSteps; ++i)
		text[i] = kStepTexts[Step(i)];
	return TString(text);
}

void TVortelSequence::FromString(const TString& text) {
	const std::string_view steps = text.CString(kAsciiEncoding);
	for (int32_t i = 0; i < kNumberOfSteps; ++i) {
		const auto index = static_cast<std::size_t>(i);
		SetStep(i, StepFromText(index < steps.size() ? steps[index] : kStepTexts[kStepEmpty]));
	}
}

std::vector<TVortelSequence::TBlock> TVortelSequence::CollectBlocks(int32_t stepCount) const {
	std::vector<TBlock> blocks;
	for (int32_t start = 0; start < stepCount; ++start) {
		if (Step(start) != kStepBlockStart)
			continue;
		int32_t end = start + 1;
		while (end < stepCount && Step(end) == kStepBlockContinue)
			++end;
		blocks.push_back({start, end - start});
	}
	return blocks;
}

void TVortelSequence::WriteBlock(TBlock block, int32_t stepCount) noexcept {
	for (int32_t i = 0; i < block.mLength && block.mStart + i < stepCount; ++i)
		SetStep(block.mStart + i, i == 0 ? kStepBlockStart : kStepBlockContinue);
}
