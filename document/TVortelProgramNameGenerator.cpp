// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelProgramNameGenerator.h"

#include "document/TVortelProgramNameWords.h"
#include "framework/foundation/values/TRandom.h"

namespace {

constexpr int32_t kCompared = 2; // letters

TList<TString> Words(const char* text) {
	return TString(text).Split(u',');
}

/// The first and the last word come up half as often as the others.
const TString& AnyWord(const TList<TString>& list) {
	return list[RoundHalfAway(TRandom::Next() * (list.Count() - 1))];
}

TString Join(const TString& first, const TString& second) {
	return first + " " + second;
}

} // namespace

TVortelProgramNameGenerator::TVortelProgramNameGenerator()
    : mAdverbs(Words(TVortelProgramNameWords::kAdverbs)),
      mAdjectives(Words(TVortelProgramNameWords::kAdjectives)),
      mNouns(Words(TVortelProgramNameWords::kNouns)) {}

TString TVortelProgramNameGenerator::Generate() const {
	const int grammar = RoundHalfAway(TRandom::Next() * 3.0);
	if (grammar == 0) {
		const TString adverb = PickWord(mAdverbs, TString());
		return Join(adverb, PickWord(mAdjectives, adverb));
	}
	if (grammar == 1) {
		const TString adjective = PickWord(mAdjectives, TString());
		return Join(adjective, PickWord(mNouns, adjective));
	}
	const TString first = PickWord(TRandom::Next() < 0.5 ? mAdverbs : mAdjectives, TString());
	const TString adjective = PickWord(mAdjectives, first);
	return Join(Join(first, adjective), PickWord(mNouns, adjective));
}

TString TVortelProgramNameGenerator::PickWord(const TList<TString>& list, const TString& previous) {
	if (previous.IsEmpty())
		return AnyWord(list);
	const TString beginning = previous.SubString(0, kCompared);
	TString word = previous;
	while (word.SubString(0, kCompared) == beginning)
		word = AnyWord(list);
	return word;
}
