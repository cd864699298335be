// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

/// Makes up names of two or three words for programs, drawn with the general generator. Neighbouring words never begin
/// with the same two letters. Held by the document; main thread.
class TVortelProgramNameGenerator final : public TReferenceCountable {
public:
	TVortelProgramNameGenerator();

	/// "Adverb Adjective", "Adjective Noun", or an adverb or adjective in front of the latter. A noun may hold a blank.
	TString Generate() const;
	/// A word that does not begin like `previous`; any word when that is empty. The list must have words of different
	/// beginnings.
	static TString PickWord(const TList<TString>& list, const TString& previous);

	const TList<TString>& Adverbs() const noexcept { return mAdverbs; }

	const TList<TString>& Adjectives() const noexcept { return mAdjectives; }

	const TList<TString>& Nouns() const noexcept { return mNouns; }

private:
	TList<TString> mAdverbs;
	TList<TString> mAdjectives;
	TList<TString> mNouns;
};
