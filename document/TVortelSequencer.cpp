// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelSequencer.h"

#include "document/TVortelIndexedNames.h"
#include "framework/document/nodes/TNameRules.h"

#include <algorithm>

namespace {

constexpr int kInitialBeats = 4;
constexpr int kInitialStepsPerBeat = 4;

std::size_t RowIndex(int32_t deviceIndex) {
	return static_cast<std::size_t>(std::clamp(deviceIndex, 0, TVortelSequencer::kNumberOfRows - 1));
}

} // namespace

TVortelSequencer::TVortelSequencer() {
	using TNameRules::MemberNameToElementName;
	static const auto kRowNames = MakeIndexedNames<kNumberOfRows>("Sequence");

	ReserveMembers(3 + kNumberOfRows, 0);
	AddProperty(&mNumBeats, MemberNameToElementName("mNumBeats"), kWrite);
	AddProperty(&mNumStepsPerBeat, MemberNameToElementName("mNumStepsPerBeat"), kWrite);
	AddProperty(&mLoopEnabled, MemberNameToElementName("mLoopEnabled"), kWrite);
	for (std::size_t i = 0; i < mSequences.size(); ++i)
		AddProperty(&mSequences[i], kRowNames[i], kWrite);
	FinishDeclaration();
}

void TVortelSequencer::Clear() {
	mNumBeats.Set(kInitialBeats);
	mNumStepsPerBeat.Set(kInitialStepsPerBeat);
	mLoopEnabled.Set(true);
	for (TVortelSequence& sequence : mSequences)
		sequence.Clear();
}

void TVortelSequencer::CopyFrom(const TVortelSequencer& source, bool mix) {
	if (!mix) {
		mNumBeats.Set(source.mNumBeats.Get());
		mNumStepsPerBeat.Set(source.mNumStepsPerBeat.Get());
		mLoopEnabled.Set(source.mLoopEnabled.Get());
	}
	for (std::size_t i = 0; i < mSequences.size(); ++i)
		mSequences[i].CopyFrom(source.mSequences[i], mix);
}

bool TVortelSequencer::HasContent() const {
	return mNumBeats.Get() != kInitialBeats || mNumStepsPerBeat.Get() != kInitialStepsPerBeat ||
	       std::any_of(mSequences.begin(), mSequences.end(), [](const TVortelSequence& row) { return !row.IsEmpty(); });
}

TVortelSequence& TVortelSequencer::Sequence(int32_t deviceIndex) noexcept {
	return mSequences[RowIndex(deviceIndex)];
}

const TVortelSequence& TVortelSequencer::Sequence(int32_t deviceIndex) const noexcept {
	return mSequences[RowIndex(deviceIndex)];
}

int32_t TVortelSequencer::StepCount() const noexcept {
	const int64_t beats = std::max(0, mNumBeats.Get());
	const int64_t stepsPerBeat = std::max(0, mNumStepsPerBeat.Get());
	return static_cast<int32_t>(std::min<int64_t>(beats * stepsPerBeat, TVortelSequence::kNumberOfSteps));
}
