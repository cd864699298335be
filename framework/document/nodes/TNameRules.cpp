// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TNameRules.h"

#include <array>
#include <cstdlib>
#include <cxxabi.h>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <utility>

namespace {

/// Results by source name, filled on first use. Any thread.
template <class TUnit>
class TNameCache {
public:
	using TView = std::basic_string_view<TUnit>;

	template <class TMake>
	TString Get(TView name, const TMake& make) {
		const std::lock_guard guard(mLock);
		const auto known = mResults.find(name);
		if (known != mResults.end())
			return known->second;
		return mResults.emplace(name, make()).first->second;
	}

private:
	struct THash : std::hash<TView> {
		using is_transparent = void;
	};

	std::mutex mLock;
	std::unordered_map<std::basic_string<TUnit>, TString, THash, std::equal_to<>> mResults;
};

using TRule = TString (*)(const TString&);

template <TRule rule>
TString Cached(const TString& name) {
	static TNameCache<char16_t> sCache;
	return sCache.Get(name.View(), [&] { return rule(name); });
}

struct TSuffix {
	const char* mText;
	const char* mReplacement;
	const char* mLowerCaseReplacement;
};

// The first that matches wins.
constexpr std::array kSuffixes{
    TSuffix{"Indices", "Index", "index"}, TSuffix{"Sequence", "", ""}, TSuffix{"List", "", ""}, TSuffix{"Map", "", ""},
    TSuffix{"Palette", "", ""},           TSuffix{"ies", "y", "y"},    TSuffix{"s", "", ""},
};

bool IsLowerCase(const TString& name) {
	TString lower = name;
	lower.ToLower();
	return lower == name;
}

TString WithoutSuffix(const TString& name) {
	for (const TSuffix& suffix : kSuffixes) {
		const TString text = suffix.mText;
		if (name.Length() <= text.Length() || !name.EndsWithIgnoringCase(text))
			continue;
		TString result = name;
		result.RemoveLastIgnoringCase(text);
		return result + (IsLowerCase(name) ? suffix.mLowerCaseReplacement : suffix.mReplacement);
	}
	return name + (IsLowerCase(name) ? "_item" : "Item");
}

TString Singular(const TString& name) {
	const TString result = WithoutSuffix(name);
	return result.EndsWithChar(u'_') ? result.SubString(0, result.Length() - 1) : result;
}

TString ElementNameOfMember(const TString& name) {
	TString result = name;
	const int32_t bracket = name.FindChar(u'[');
	if (bracket >= 0) {
		const TString inner = name.SubString(bracket + 1, name.FindChar(u']', bracket));
		result = TNameRules::ListNameToItemName(name.SubString(0, bracket)) + inner;
	}
	if (result.StartsWith("mp"))
		return result.SubString(2);
	result.RemoveFirstIgnoringCase("m");
	return result;
}

TString PlainClassName(const TString& name) {
	TString result = name.StartsWithChar(u'T') ? name.SubString(1) : name;
	result.ReplaceAll("::T", ".");
	return result;
}

TString ElementNameOfClass(const TString& name) {
	TString result = PlainClassName(name);
	result.ReplaceAll("<T", "_of_");
	result.ReplaceAll(">", "_");
	return result;
}

TString TypeNameOfClass(const TString& name) {
	TString result = PlainClassName(name);
	result.ReplaceAll("<T", "<");
	return result;
}

TString Demangled(const std::type_info& type) {
	int status = 0;
	const std::unique_ptr<char, decltype(&std::free)> name(
	    abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
	return status == 0 && name ? TString(name.get()) : TString("unknown Type");
}

} // namespace

TString TNameRules::MemberNameToElementName(const TString& name) {
	return Cached<&ElementNameOfMember>(name);
}

TString TNameRules::MemberNameToElementName(const char* name) {
	static TNameCache<char> sCache;
	return sCache.Get(name, [&] { return MemberNameToElementName(TString(name)); });
}

TString TNameRules::ListNameToItemName(const TString& name) {
	return Cached<&Singular>(name);
}

TString TNameRules::ClassNameToElementName(const TString& name) {
	return Cached<&ElementNameOfClass>(name);
}

TString TNameRules::ClassNameToTypeName(const TString& name) {
	return Cached<&TypeNameOfClass>(name);
}

TString TNameRules::ClassNameOf(const std::type_info& type) {
	static std::mutex sLock;
	static std::unordered_map<std::type_index, TString> sNames;
	const std::lock_guard guard(sLock);
	const auto known = sNames.find(type);
	return known != sNames.end() ? known->second : sNames.emplace(type, Demangled(type)).first->second;
}
