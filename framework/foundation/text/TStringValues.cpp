// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/values/ProductInfo.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is of POSIX
#include <mutex>
#include <optional>
#include <type_traits>

namespace {

constexpr auto kNumberOfSharedTexts = static_cast<std::size_t>(TSharedText::kCount);

constexpr std::array<const char*, kNumberOfSharedTexts> kSharedTexts{
    "-1", "0",   "1",    "YES", "NO",  "true", "false", "0.0",    "0.5", "1.0",  "$M", "%s",  "INF",   "-INF", "NaN",
    "%d", "%ld", "%lld", "%u",  "%lu", "%llu", "%.9g",  "%.17lg", "%f",  "%.3f", "%g", "%lf", "%.3lf", "%lg"};

constexpr const char* TextOf(TSharedText text) {
	return kSharedTexts[static_cast<std::size_t>(text)];
}

using TSharedStrings = std::array<TString, kNumberOfSharedTexts>;

std::mutex sSharedStringsLock;
int sSharedStringsUsers = 0;
std::atomic<const TSharedStrings*> spSharedStrings{nullptr};

/// The "C" locale for the calling thread; the process's locale belongs to the host.
class TCLocaleScope {
public:
	TCLocaleScope() : mPrevious(uselocale(CLocale())) {}

	TCLocaleScope(const TCLocaleScope&) = delete;
	TCLocaleScope& operator=(const TCLocaleScope&) = delete;

	~TCLocaleScope() { uselocale(mPrevious); }

private:
	static locale_t CLocale() {
		static const locale_t sLocale = newlocale(LC_ALL_MASK, "C", nullptr);
		return sLocale;
	}

	locale_t mPrevious;
};

template <class T>
constexpr TSharedText DefaultFormat() {
	if constexpr (std::is_same_v<T, int>)
		return TSharedText::kIntFormat;
	else if constexpr (std::is_same_v<T, long>)
		return TSharedText::kLongFormat;
	else if constexpr (std::is_same_v<T, long long>)
		return TSharedText::kLongLongFormat;
	else if constexpr (std::is_same_v<T, unsigned>)
		return TSharedText::kUnsignedFormat;
	else if constexpr (std::is_same_v<T, unsigned long>)
		return TSharedText::kUnsignedLongFormat;
	else if constexpr (std::is_same_v<T, unsigned long long>)
		return TSharedText::kUnsignedLongLongFormat;
	else if constexpr (std::is_same_v<T, float>)
		return TSharedText::kFloatFormat;
	else
		return TSharedText::kDoubleFormat;
}

/// Text as the C library reads it. What is not ASCII becomes "~", which belongs to no number.
std::string NarrowText(const TString& text) {
	const std::u16string_view units = text.View();
	std::string bytes(units.size(), '\0');
	std::transform(units.begin(), units.end(), bytes.begin(), [](char16_t unit) {
		return static_cast<char>(std::min<char16_t>(unit, 126));
	});
	return bytes;
}

/// A format taken apart at its one conversion: "%", flags and width, precision, length, conversion.
class TNumberFormat {
public:
	explicit TNumberFormat(const TString& format) : mText(NarrowText(format)) {
		const std::size_t begin = FindConversion(0);
		mPrecisionBegin = SkipAny("-+ #0123456789", begin);
		mPrecisionEnd = At(mPrecisionBegin) == '.' ? SkipAny("0123456789", mPrecisionBegin + 1) : mPrecisionBegin;
		const std::size_t lengthEnd = SkipAny("l", mPrecisionEnd);
		mLength = lengthEnd - mPrecisionEnd;
		mConversion = FindConversion(lengthEnd + 1) == mText.npos ? At(lengthEnd) : '\0';
	}

	/// Whether a T can be written. Everything else would make the C library read what is not there.
	template <class T>
	bool Writes() const {
		return std::is_floating_point_v<T> ? mLength <= 1 && HasConversion("aAeEfFgG") : Reads<T>();
	}

	/// Whether exactly a T can be read; scanning does not widen float to double.
	template <class T>
	bool Reads() const {
		if constexpr (std::is_floating_point_v<T>)
			return mLength == sizeof(T) / sizeof(double) && HasConversion("aAeEfFgG");
		else
			return (mLength > 0) == (sizeof(T) > sizeof(int)) && mLength <= 2 && HasConversion("dixXuo");
	}

	const char* Text() const { return mText.c_str(); }

	std::string WithoutPrecision() const {
		return mText.substr(0, mPrecisionBegin) + mText.substr(std::min(mPrecisionEnd, mText.size()));
	}

private:
	char At(std::size_t index) const { return index < mText.size() ? mText[index] : '\0'; }

	bool HasConversion(std::string_view conversions) const {
		return mConversion != 0 && conversions.find(mConversion) != conversions.npos;
	}

	std::size_t SkipAny(const char* characters, std::size_t from) const {
		return std::min(mText.find_first_not_of(characters, from), mText.size());
	}

	/// The position behind the next "%" that is not doubled.
	std::size_t FindConversion(std::size_t from) const {
		for (std::size_t at = mText.find('%', from); at != mText.npos; at = mText.find('%', at + 2)) {
			if (At(at + 1) != '%')
				return at + 1;
		}
		return mText.npos;
	}

	std::string mText;
	std::size_t mPrecisionBegin;
	std::size_t mPrecisionEnd;
	std::size_t mLength;
	char mConversion;
};

template <class T>
TString PrintNumber(T value, const TString& format) {
	std::array<char, std::is_same_v<T, double> ? 512 : 256> text{};
	const TNumberFormat numberFormat(format);
	if (!numberFormat.Writes<T>())
		return {};
	const TCLocaleScope scope;
	std::snprintf(text.data(), text.size(), numberFormat.Text(), value);
	return text.data();
}

template <class T>
bool ScanNumber(const std::string& text, T& value, const char* format) {
	const TCLocaleScope scope;
	T result{};
	if (std::sscanf(text.c_str(), format, &result) < 1)
		return false;
	value = result;
	return true;
}

/// What stands in the table, for values that come often or are no digits.
template <class T>
std::optional<TSharedText> SharedTextOf(T value) {
	constexpr bool kIsFloat = std::is_floating_point_v<T>;
	if (value == T(0))
		return kIsFloat ? TSharedText::kZeroPointZero : TSharedText::kZero;
	if (value == T(1))
		return kIsFloat ? TSharedText::kOnePointZero : TSharedText::kOne;
	if constexpr (kIsFloat) {
		if (value == T(0.5))
			return TSharedText::kZeroPointFive;
		if (std::isnan(value))
			return TSharedText::kNotANumber;
		if (std::isinf(value))
			return value > 0 ? TSharedText::kInfinity : TSharedText::kMinusInfinity;
	} else if (std::is_signed_v<T> && value == static_cast<T>(-1)) {
		return TSharedText::kMinusOne;
	}
	return std::nullopt;
}

/// Zero-terminated too.
template <class T>
std::string_view PrintDigits(T value, TString::TNumberBuffer& buffer) {
	char* const begin = buffer.data();
	char* end = begin + buffer.size() - 1;
	if constexpr (std::is_integral_v<T>)
		end = std::to_chars(begin, end, value).ptr;
	else // the same digits as those of printf's "g" in the "C" locale
		end = std::to_chars(begin, end, value, std::chars_format::general, std::numeric_limits<T>::max_digits10).ptr;
	*end = '\0';
	return {begin, end};
}

/// As "%d" and "%u" scan: white space, a sign, digits. The minus of an unsigned number wraps it.
template <class T>
bool ReadInteger(std::string_view text, T& value) {
	text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
	const bool isWrapped = std::is_unsigned_v<T> && text.starts_with('-');
	const bool isSignTaken = isWrapped || text.starts_with('+');
	text.remove_prefix(isSignTaken);
	if (isSignTaken && text.starts_with('-'))
		return false;
	T result{};
	if (std::from_chars(text.data(), text.data() + text.size(), result).ec != std::errc{})
		return false;
	value = isWrapped ? T(0) - result : result;
	return true;
}

/// What is a plain decimal number from end to end is read here; the rest, such as white space in front, text behind,
/// hexadecimal digits, numbers beyond the range and those that are not finite, is left to sscanf.
template <class T>
bool ReadFloat(const std::string& text, T& value) {
	const bool isPlain = text.find_first_not_of("+-.0123456789eE") == text.npos;
	const char* end = text.data() + text.size();
	T result{};
	if (const auto [read, error] = std::from_chars(text.data(), end, result);
	    isPlain && read == end && error == std::errc{}) {
		value = result;
		return true;
	}
	return ScanNumber(text, value, std::is_same_v<T, float> ? "%f" : "%lf");
}

template <class T>
std::string NarrowNumber(const TString& text) {
	std::string bytes = NarrowText(text);
	if (std::is_floating_point_v<T>)
		std::replace(bytes.begin(), bytes.end(), ',', '.');
	return bytes;
}

bool ReadIntegers(const TString& text, std::span<int> values) {
	const TList<TString> parts = text.Split(u',');
	if (static_cast<std::size_t>(parts.Count()) != values.size())
		return false;
	for (int32_t index = 0; index < parts.Count(); ++index) {
		if (!TString::FromString(parts[index], values[static_cast<std::size_t>(index)]))
			return false;
	}
	return true;
}

struct TMacro {
	const char* mName;
	std::string mValue;
};

/// In the order in which they are replaced.
std::array<TMacro, 8> Macros() {
	const std::string product = ProductInfo::kProductName;
	const std::string version = ProductInfo::PrefixedVersionText();
	const std::string tag = ProductInfo::kPreReleaseTag;
	const std::string taggedVersion = tag.empty() ? version : version + " " + tag;
	return {{
	    {"$MProductString", product},
	    {"$MVersionString", version},
	    {"$MAlphaOrBetaVersionString", tag},
	    {"$MBuildNumberString", taggedVersion + " (Built: " + ProductInfo::BuildDate() + ")"},
	    {"$MProductNameAndVersionString", product + " " + version},
	    {"$MBugReportEMailAddress", ProductInfo::kBugReportEMailAddress},
	    {"$MSupportEMailAddress", ProductInfo::kSupportEMailAddress},
	    {"$MProductHomeURL", ProductInfo::kProductHomeUrl},
	}};
}

} // namespace

void TString::SetupStrings() {
	const std::lock_guard guard(sSharedStringsLock);
	if (sSharedStringsUsers++ > 0)
		return;
	auto strings = std::make_unique<TSharedStrings>();
	std::copy(kSharedTexts.begin(), kSharedTexts.end(), strings->begin());
	spSharedStrings.store(strings.release(), std::memory_order_release);
}

void TString::CleanupStrings() {
	const std::lock_guard guard(sSharedStringsLock);
	if (sSharedStringsUsers == 0 || --sSharedStringsUsers > 0)
		return;
	delete spSharedStrings.exchange(nullptr, std::memory_order_acq_rel);
}

TString TString::Shared(TSharedText text) {
	const TSharedStrings* strings = spSharedStrings.load(std::memory_order_acquire);
	return strings ? (*strings)[static_cast<std::size_t>(text)] : TString(TextOf(text));
}

TString TString::FillIn(const TString& format, const TList<TString>& texts) {
	TString result = ExpandMacros(format);
	const int32_t rounds = std::max(texts.Count(), std::min(result.Count("%s"), kMaximumFormatTexts));
	for (int32_t index = 0; index < rounds; ++index) {
		const std::size_t at = result.View().find(u"%s");
		if (at == std::u16string_view::npos)
			break;
		result.Replace(at, 2, index < texts.Count() ? texts[index].View() : std::u16string_view{});
	}
	return result;
}

TString TString::ExpandMacros(const TString& text) {
	if (text.View().find(u"$M") == std::u16string_view::npos)
		return text;
	TString result = text;
	for (const TMacro& macro : Macros())
		result.ReplaceAll(macro.mName, macro.mValue.c_str());
	return result;
}

template <TTextNumber T>
TString TString::ToString(T value) {
	if (const auto shared = SharedTextOf(value))
		return Shared(*shared);
	TNumberBuffer buffer;
	return PrintDigits(value, buffer).data();
}

template <TTextNumber T>
std::string_view TString::NumberText(T value, TNumberBuffer& buffer) {
	const auto shared = SharedTextOf(value);
	return shared ? TextOf(*shared) : PrintDigits(value, buffer);
}

template <TTextNumber T>
TString TString::ToString(T value, const TString& format) {
	if (format == TextOf(DefaultFormat<T>()))
		return ToString(value);
	if constexpr (std::is_floating_point_v<T>) {
		if (!std::isfinite(value))
			return ToString(value);
	}
	return PrintNumber(value, format);
}

TString TString::ToString(const TColor& color) {
	return Join({ToString(color.mRed), ToString(color.mGreen), ToString(color.mBlue)}, ",");
}

TString TString::ToString(const TPointT<int>& point) {
	return Join({ToString(point.mX), ToString(point.mY)}, ",");
}

template <TTextNumber T>
bool TString::FromString(const TString& text, T& value) {
	if constexpr (std::is_integral_v<T>)
		return ReadInteger(NarrowNumber<T>(text), value);
	else
		return ReadFloat(NarrowNumber<T>(text), value);
}

template <TTextNumber T>
bool TString::FromString(const TString& text, T& value, const TString& format) {
	if (format == TextOf(DefaultFormat<T>()))
		return FromString(text, value);
	const TNumberFormat numberFormat(format);
	return numberFormat.Reads<T>() && ScanNumber(NarrowNumber<T>(text), value, numberFormat.WithoutPrecision().c_str());
}

bool TString::FromString(const TString& text, bool& value) {
	const auto isAny = [&](std::initializer_list<const char*> names) {
		return std::any_of(
		    names.begin(), names.end(), [&](const char* name) { return !text.CompareIgnoringCase(name); });
	};
	if (isAny({"true", "yes", "1"}))
		value = true;
	else if (isAny({"false", "no", "0"}))
		value = false;
	else
		return false;
	return true;
}

bool TString::FromString(const TString& text, TColor& color) {
	std::array<int, 3> values{};
	if (!ReadIntegers(text, values))
		return false;
	color = {std::clamp(values[0], 0, 255), std::clamp(values[1], 0, 255), std::clamp(values[2], 0, 255)};
	return true;
}

bool TString::FromString(const TString& text, TPointT<int>& point) {
	std::array<int, 2> values{};
	if (!ReadIntegers(text, values))
		return false;
	point = {values[0], values[1]};
	return true;
}

#define VORTEL_TEXT_NUMBER(T)                                                                                          \
	template TString TString::ToString(T);                                                                             \
	template TString TString::ToString(T, const TString&);                                                             \
	template std::string_view TString::NumberText(T, TNumberBuffer&);                                                  \
	template bool TString::FromString(const TString&, T&);                                                             \
	template bool TString::FromString(const TString&, T&, const TString&);

VORTEL_TEXT_NUMBER(int)
VORTEL_TEXT_NUMBER(long)
VORTEL_TEXT_NUMBER(long long)
VORTEL_TEXT_NUMBER(unsigned)
VORTEL_TEXT_NUMBER(unsigned long)
VORTEL_TEXT_NUMBER(unsigned long long)
VORTEL_TEXT_NUMBER(float)
VORTEL_TEXT_NUMBER(double)
