// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TPointT.h"

#include <array>
#include <compare>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// How 8-bit text is meant. On this system the platform and its file names use UTF-8.
enum TEncoding : int32_t {
	kPlatformEncoding = 0,   // surrogate pairs are joined; text that is not valid becomes "???"
	kFileSystemEncoding = 1, // as kPlatformEncoding
	kAsciiEncoding = 2,      // bytes below 127 as they stand, everything else becomes "?"
	kUtf8Encoding = 3        // read leniently; see TString::FromBytes and TString::CString
};

/// Texts that stand once in memory while the framework runs; the order is that of their table.
enum class TSharedText : int32_t {
	kMinusOne,
	kZero,
	kOne,
	kYes,
	kNo,
	kTrue,
	kFalse,
	kZeroPointZero,
	kZeroPointFive,
	kOnePointZero,
	kMacroPrefix,
	kPlaceholder,
	kInfinity,
	kMinusInfinity,
	kNotANumber,
	kIntFormat,
	kLongFormat,
	kLongLongFormat,
	kUnsignedFormat,
	kUnsignedLongFormat,
	kUnsignedLongLongFormat,
	kFloatFormat,
	kDoubleFormat,
	kFixedFloatFormat,
	kFixed3FloatFormat,
	kGeneralFloatFormat,
	kFixedDoubleFormat,
	kFixed3DoubleFormat,
	kGeneralDoubleFormat,
	kCount
};

/// The number types that have a text form.
template <class T>
concept TTextNumber = std::same_as<T, int> || std::same_as<T, long> || std::same_as<T, long long> ||
    std::same_as<T, unsigned> || std::same_as<T, unsigned long> || std::same_as<T, unsigned long long> ||
    std::same_as<T, float> || std::same_as<T, double>;

/// The one text type: a reference to a shared buffer of UTF-16 code units, copied when it is written to.
///
/// Copying shares the buffer. Indices and lengths count units; a character outside the basic plane is two of them.
/// The text ends at its first zero unit, and its length is found by walking there. "Not found" is -1. Forms that
/// ignore case compare unit by unit in lower case.
/// A string belongs to one thread at a time, but strings that share a buffer may live and die on different threads.
/// Everything that makes or changes text throws TOutOfMemoryException; a string that was being changed then stays as
/// it was. Not for the audio thread.
class TString {
public:
	class TStringBuffer;
	class TEmptyStringBuffer;

	static constexpr int32_t kMaximumFormatTexts = 5;

	/// Empty; shares the process's one empty buffer.
	TString();
	/// Zero-terminated ASCII; each byte becomes a unit. Null gives an empty text.
	TString(const char* ascii);
	TString(const char* bytes, int encoding);
	TString(std::string_view bytes, int encoding);
	TString(const char16_t* units, int32_t lengthInBytes);
	explicit TString(std::u16string_view units);
	/// Zero-terminated 32-bit characters; those outside the basic plane become two units, impossible ones "?".
	explicit TString(const char32_t* characters);

	TString(const TString&) noexcept = default;
	TString(TString&&) noexcept = default;
	TString& operator=(const TString&) noexcept = default;
	TString& operator=(TString&&) noexcept = default;
	~TString() = default;

	/// Once at framework start and end; counted, so that several formats in one process may call them.
	static void SetupStrings();
	static void CleanupStrings();
	static TString Shared(TSharedText text);

	// Queries

	int32_t Length() const noexcept;

	bool IsEmpty() const noexcept { return *Units() == 0; }

	/// Zero-terminated; valid until the string is changed or destroyed.
	const char16_t* Units() const noexcept;

	std::u16string_view View() const noexcept { return Units(); }

	/// Not checked; the index may be Length(), where the terminating zero stands.
	char16_t operator[](int32_t index) const noexcept { return Units()[index]; }

	/// Below, equal to or above 0, by the values of the units.
	int Compare(const TString& other) const noexcept;
	int CompareIgnoringCase(const TString& other) const;

	/// -1 also when either text is empty or the start lies outside the text. Backwards walks from the start to 0.
	int32_t Find(const TString& text, int32_t start = 0, bool backwards = false) const;
	int32_t FindIgnoringCase(const TString& text, int32_t start = 0, bool backwards = false) const;
	int32_t FindChar(char16_t unit, int32_t start = 0, bool backwards = false) const;

	/// Every text starts and ends with the empty text.
	bool StartsWith(const TString& text) const;
	bool EndsWith(const TString& text) const;
	bool StartsWithIgnoringCase(const TString& text) const;
	bool EndsWithIgnoringCase(const TString& text) const;
	bool StartsWithChar(char16_t unit) const;
	bool EndsWithChar(char16_t unit) const;

	int32_t CountChar(char16_t unit) const;
	/// Occurrences that do not overlap.
	int32_t Count(const TString& text) const;
	/// As many as SplitLines gives: at least 1.
	int32_t LineCount() const;
	/// All units below 127.
	bool IsAscii() const;

	/// "*" any run, "?" one unit, "[a-z_]" a set, "[^...]" or "[!...]" its opposite, a backslash makes the next unit
	/// plain. A "]" directly behind the opening belongs to the set; a set without end matches nothing.
	bool WildcardMatches(const TString& pattern, bool ignoreCase = false) const;
	/// Where a text field's caret goes when it moves by words.
	int32_t NextWordBoundary(int32_t position, bool backwards = false) const;
	/// White space, brackets, quotes and the punctuation at which a double click's selection ends.
	static bool IsWordSeparator(char16_t unit);

	// Changes

	/// The index is clamped to the text; Length() appends.
	void Insert(int32_t index, const TString& text);
	void Append(const TString& text);
	void Append(char16_t unit);
	/// Cuts out what SubString(from, to) would give.
	void Remove(int32_t from, int32_t to);

	/// Goes on behind each replacement, so new text is not searched again. Empty or equal texts change nothing.
	void ReplaceAll(const TString& oldText, const TString& newText);
	void ReplaceFirst(const TString& oldText, const TString& newText);
	void ReplaceLast(const TString& oldText, const TString& newText);
	void ReplaceChar(char16_t oldUnit, char16_t newUnit);
	/// Does nothing outside the text.
	void SetChar(int32_t index, char16_t unit);

	void ToLower();
	void ToUpper();
	void RemoveAllIgnoringCase(const TString& text);
	void RemoveFirstIgnoringCase(const TString& text);
	void RemoveLastIgnoringCase(const TString& text);
	/// CR, LF and CR LF each become one blank.
	void LineBreaksToBlanks();
	/// Each tab becomes `width` blanks.
	void TabsToBlanks(int32_t width);
	void TrimLeft();
	void TrimRight();
	/// Tabs become two blanks first, also those inside the text.
	void Trim();

	// New strings

	/// `to` is exclusive. A negative `from` counts as 0, a negative `to` or one above the length as the length.
	/// The whole text shares the buffer.
	TString SubString(int32_t from, int32_t to = -1) const;
	TString Concat(const TString& text) const;
	TString Repeat(int32_t count) const;
	/// Cuts at every separator: neighbours give an empty part, and there is always a part behind the last one.
	TList<TString> Split(char16_t separator) const;
	/// The first of the separators that matches at a place wins.
	TList<TString> SplitAtAny(const TList<TString>& separators) const;
	/// CR, LF and CR LF end a line.
	TList<TString> SplitLines() const;
	static TString Join(const TList<TString>& list, const TString& separator);

	TString& operator+=(const TString& text) {
		Append(text);
		return *this;
	}

	friend TString operator+(const TString& a, const TString& b) { return a.Concat(b); }

	friend bool operator==(const TString& a, const TString& b) noexcept {
		return a.mpBuffer == b.mpBuffer || a.Compare(b) == 0;
	}

	friend bool operator==(const TString& a, const char* ascii) noexcept { return a.EqualsAscii(ascii); }

	friend std::strong_ordering operator<=>(const TString& a, const TString& b) noexcept { return a.Compare(b) <=> 0; }

	// 8-bit forms

	/// Zero-terminated, for use at once as an argument: valid until the same thread in the same role has made four
	/// more. kUtf8Encoding encodes each unit on its own, so that half a surrogate pair takes three bytes. Units that
	/// the encoding does not know become "?".
	const char* CString(int encoding = kUtf8Encoding) const;
	/// As CString, but kUtf8Encoding joins surrogate pairs.
	void ToBytes(std::string& bytes, int encoding) const;
	/// Reading kUtf8Encoding knows one to three bytes for a unit; a longer form or a lone byte above 127 is one "?".
	void FromBytes(std::string_view bytes, int encoding);

	/// RFC 4648 with padding and without line breaks.
	static void Base64Encode(std::span<const uint8_t> bytes, TString& text);
	/// Skips CR and LF. False, with `bytes` unchanged, when the text is not Base64.
	static bool Base64Decode(const TString& text, std::vector<uint8_t>& bytes);

	// Messages

	/// Expands the macros of `format`, then replaces "%s" by the next of at most five texts, each time the first "%s"
	/// from the front; so a "%s" inside a text is filled by the next one. A "%s" of the format for which there is no
	/// text is filled with nothing. There is no escape.
	template <std::convertible_to<TString>... TTexts>

	requires(sizeof...(TTexts) <= kMaximumFormatTexts) static TString
	    Format(const TString& format, const TTexts&... texts) {
		return FillIn(format, TList<TString>{texts...});
	}

	template <TTextNumber T>
	static TString Format(const TString& format, T number) {
		return ToString(number, format);
	}

	/// Replaces "$MProductString" and its kin (see their table) by what they stand for.
	static TString ExpandMacros(const TString& text);

	// Values
	//
	// The decimal point is "." whatever the host's locale is. Formats are those of printf with one conversion, which
	// must suit the type: with any other format ToString is empty and FromString fails. Floating-point numbers that
	// are not finite are "NaN", "INF" and "-INF" in every format.

	/// The shortest road: integers in decimal, floats as "%.9g", doubles as "%.17g", but 0, 1 and 0.5 as "0.0", "1.0"
	/// and "0.5".
	template <TTextNumber T>
	static TString ToString(T value);
	template <TTextNumber T>
	static TString ToString(T value, const TString& format);

	using TNumberBuffer = std::array<char, 32>;
	/// The bytes of ToString(value), for those who write many: in the buffer, or in a table that stays.
	template <TTextNumber T>
	static std::string_view NumberText(T value, TNumberBuffer& buffer);

	/// "true" or "false".
	template <std::same_as<bool> T>
	static TString ToString(T value) {
		return Shared(value ? TSharedText::kTrue : TSharedText::kFalse);
	}

	/// "red,green,blue".
	static TString ToString(const TColor& color);
	/// "x,y".
	static TString ToString(const TPointT<int>& point);

	/// Reads as much of the text as is a number; false, with `value` unchanged, when it does not begin with one or
	/// when an integer is too large. A "," counts as a ".". The precision of a format has no meaning here.
	template <TTextNumber T>
	static bool FromString(const TString& text, T& value);
	template <TTextNumber T>
	static bool FromString(const TString& text, T& value, const TString& format);
	/// "true", "yes", "1", "false", "no" and "0" in any case.
	static bool FromString(const TString& text, bool& value);
	/// Exactly three integers; each is clamped to 0 to 255.
	static bool FromString(const TString& text, TColor& color);
	static bool FromString(const TString& text, TPointT<int>& point);

	/// 0 for what FromString does not read.
	template <TTextNumber T>
	static T FromStringOrZero(const TString& text) {
		T value{};
		FromString(text, value);
		return value;
	}

private:
	explicit TString(TPtr<TStringBuffer> buffer) noexcept : mpBuffer(std::move(buffer)) {}

	static TString FillIn(const TString& format, const TList<TString>& texts);
	static TPtr<TStringBuffer> NewBuffer(std::size_t length);
	bool EqualsAscii(const char* ascii) const noexcept;
	void Assign(std::u16string_view units);
	char16_t* MakePrivate();
	void Replace(std::size_t from, std::size_t count, std::u16string_view newText);
	TList<TString> SplitBy(auto separatorLengthAt) const;

	// Null only after the text has been moved away, which reads as empty.
	TPtr<TStringBuffer> mpBuffer;
};

/// The shared units of a TString. Dies where its last string goes.
class TString::TStringBuffer : public TReferenceCountable {
public:
	/// Does not throw: when there is no memory for the units, the capacity is 0.
	explicit TStringBuffer(uint32_t capacity) noexcept;
	~TStringBuffer() override;

	bool IsDeletedOnMainThread() const override { return false; }

	static void* operator new(std::size_t size);
	static void operator delete(void* memory) noexcept;

	char16_t* mpData;   // zero-terminated
	uint32_t mCapacity; // units, terminator included

protected:
	TStringBuffer() noexcept;
};
