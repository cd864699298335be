// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/values/CharacterClasses.h"

#include <algorithm>

namespace {

enum class TKind : int32_t { kWord, kPunctuation, kDelimiter, kOther };

TKind KindOf(char16_t unit) {
	constexpr std::u16string_view kDelimiters = u"\"'()[]{}";
	if (CharacterClasses::IsAlphanumeric(unit) || unit == u'_')
		return TKind::kWord;
	if (kDelimiters.find(unit) != kDelimiters.npos)
		return TKind::kDelimiter;
	return CharacterClasses::IsPunctuation(unit) ? TKind::kPunctuation : TKind::kOther;
}

bool IsWord(char16_t unit) {
	return KindOf(unit) == TKind::kWord;
}

bool IsPlainPunctuation(char16_t unit) {
	return KindOf(unit) == TKind::kPunctuation;
}

std::size_t SkipForward(std::u16string_view text, std::size_t position, bool (*matches)(char16_t)) {
	while (position < text.size() && matches(text[position]))
		++position;
	return position;
}

std::size_t SkipBackward(std::u16string_view text, std::size_t position, bool (*matches)(char16_t)) {
	while (position > 0 && matches(text[position - 1]))
		--position;
	return position;
}

/// At least one step, so that a caret never sticks at a unit of no class.
std::size_t Boundary(std::u16string_view text, std::size_t position) {
	using CharacterClasses::IsWhiteSpace;
	switch (KindOf(text[position])) {
	case TKind::kPunctuation:
		return SkipForward(text, SkipForward(text, position, IsPlainPunctuation), IsWhiteSpace);
	case TKind::kWord:
		return SkipForward(text, SkipForward(text, position, IsWord), IsWhiteSpace);
	case TKind::kDelimiter:
		return position + 1;
	case TKind::kOther:
		break;
	}
	return std::max(position + 1, SkipForward(text, position, IsWhiteSpace));
}

std::size_t BoundaryBefore(std::u16string_view text, std::size_t position) {
	using CharacterClasses::IsWhiteSpace;
	switch (KindOf(text[position - 1])) {
	case TKind::kPunctuation:
		return SkipBackward(text, SkipBackward(text, position, IsPlainPunctuation), IsWhiteSpace);
	case TKind::kWord:
		return SkipBackward(text, position, IsWord);
	case TKind::kDelimiter:
		return position - 1;
	case TKind::kOther:
		break;
	}
	const std::size_t end = std::min(position - 1, SkipBackward(text, position, IsWhiteSpace));
	const std::size_t wordBegin = SkipBackward(text, end, CharacterClasses::IsAlphanumeric);
	return wordBegin < end ? wordBegin : SkipBackward(text, end, IsPlainPunctuation);
}

class TWildcard {
public:
	TWildcard(std::u16string_view pattern, bool ignoreCase) : mPattern(pattern), mIgnoreCase(ignoreCase) {}

	/// A "*" takes as little as it can, and only the last one passed is ever made longer: what an earlier one could
	/// still take, the last one can take as well.
	bool Matches(std::u16string_view text) const {
		std::size_t at = 0;
		std::size_t starEnd = kNone;
		std::size_t starText = 0;
		for (std::size_t index = 0; index < text.size();) {
			if (at < mPattern.size() && mPattern[at] == u'*') {
				starEnd = ++at;
				starText = index;
			} else if (const std::size_t next = MatchElement(at, text[index]); next != kNone) {
				at = next;
				++index;
			} else if (starEnd != kNone) {
				at = starEnd;
				index = ++starText;
			} else {
				return false;
			}
		}
		return mPattern.find_first_not_of(u'*', at) == kNone;
	}

private:
	static constexpr std::size_t kNone = std::u16string_view::npos;

	/// The position behind the element that stands at `at` if the unit matches it, else kNone.
	std::size_t MatchElement(std::size_t at, char16_t unit) const {
		if (at >= mPattern.size())
			return kNone;
		if (mPattern[at] == u'?')
			return at + 1;
		if (mPattern[at] == u'[')
			return MatchSet(at + 1, unit);
		const char16_t plain = TakePlain(at);
		return IsInRange(unit, plain, plain) ? at : kNone;
	}

	std::size_t MatchSet(std::size_t at, char16_t unit) const {
		const bool isNegated = at < mPattern.size() && (mPattern[at] == u'^' || mPattern[at] == u'!');
		at += isNegated;
		bool isFound = false;
		for (const std::size_t begin = at; at < mPattern.size();) {
			if (mPattern[at] == u']' && at > begin)
				return isFound != isNegated ? at + 1 : kNone;
			const char16_t first = TakePlain(at);
			const bool isRange = at + 1 < mPattern.size() && mPattern[at] == u'-' && mPattern[at + 1] != u']';
			at += isRange;
			isFound |= IsInRange(unit, first, isRange ? TakePlain(at) : first);
		}
		return kNone;
	}

	char16_t TakePlain(std::size_t& at) const {
		at += mPattern[at] == u'\\' && at + 1 < mPattern.size();
		return mPattern[at++];
	}

	bool IsInRange(char16_t unit, char16_t first, char16_t last) const {
		using namespace CharacterClasses;
		if (IsBetween(unit, first, last))
			return true;
		return mIgnoreCase && (IsBetween(ToLower(unit), first, last) || IsBetween(ToUpper(unit), first, last));
	}

	std::u16string_view mPattern;
	bool mIgnoreCase;
};

} // namespace

bool TString::WildcardMatches(const TString& pattern, bool ignoreCase) const {
	return TWildcard(pattern.View(), ignoreCase).Matches(View());
}

int32_t TString::NextWordBoundary(int32_t position, bool backwards) const {
	const std::u16string_view text = View();
	const auto length = static_cast<int32_t>(text.size());
	if (backwards) {
		const int32_t from = std::min(position, length);
		return from < 2 ? 0 : static_cast<int32_t>(BoundaryBefore(text, static_cast<std::size_t>(from)));
	}
	if (position >= length)
		return length;
	return static_cast<int32_t>(Boundary(text, static_cast<std::size_t>(std::max(position, 0))));
}

bool TString::IsWordSeparator(char16_t unit) {
	constexpr std::u16string_view kSeparators = u"(){}[]<>;:/\\|,.\"'@";
	return CharacterClasses::IsWhiteSpace(unit) || kSeparators.find(unit) != kSeparators.npos;
}
