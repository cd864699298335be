// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/values/CharacterClasses.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace {

// The units of all texts without memory of their own; never written.
char16_t sEmptyUnit = 0;

constexpr std::size_t kMaximumLength = std::numeric_limits<int32_t>::max() - 1;

using TUnitEquality = bool (*)(char16_t, char16_t);

bool AreSame(char16_t a, char16_t b) {
	return a == b;
}

bool AreSameIgnoringCase(char16_t a, char16_t b) {
	return CharacterClasses::ToLower(a) == CharacterClasses::ToLower(b);
}

int32_t ToIndex(std::size_t position) {
	return position == std::u16string_view::npos ? -1 : static_cast<int32_t>(position);
}

bool BeginsWith(std::u16string_view text, std::u16string_view beginning, TUnitEquality equal) {
	return text.size() >= beginning.size() && std::equal(beginning.begin(), beginning.end(), text.begin(), equal);
}

bool FinishesWith(std::u16string_view text, std::u16string_view end, TUnitEquality equal) {
	return text.size() >= end.size() && BeginsWith(text.substr(text.size() - end.size()), end, equal);
}

int32_t
FindText(std::u16string_view text, std::u16string_view pattern, int32_t start, bool backwards, TUnitEquality equal) {
	const auto length = static_cast<int32_t>(text.size());
	if (pattern.empty() || start < 0 || start >= length)
		return -1;
	const int32_t step = backwards ? -1 : 1;
	for (int32_t index = start; index >= 0 && index < length; index += step) {
		if (BeginsWith(text.substr(static_cast<std::size_t>(index)), pattern, equal))
			return index;
	}
	return -1;
}

std::size_t LineBreakLengthAt(std::u16string_view text) {
	if (text.starts_with(u"\r\n"))
		return 2;
	return text.starts_with(u'\r') || text.starts_with(u'\n') ? 1 : 0;
}

bool IsTrimmed(char16_t unit) {
	return unit == u'\t' || CharacterClasses::IsWhiteSpace(unit);
}

} // namespace

class TString::TEmptyStringBuffer final : public TString::TStringBuffer {
public:
	/// Lives in static memory and is never destroyed, since static strings of any source file may outlive all others.
	static TStringBuffer* Instance() {
		alignas(TEmptyStringBuffer) static std::byte sMemory[sizeof(TEmptyStringBuffer)];
		static TStringBuffer* const spInstance = [] {
			TStringBuffer* instance = ::new (sMemory) TEmptyStringBuffer;
			instance->Retain();
			return instance;
		}();
		return spInstance;
	}
};

TString::TStringBuffer::TStringBuffer() noexcept : mpData(&sEmptyUnit), mCapacity(0) {}

TString::TStringBuffer::TStringBuffer(uint32_t capacity) noexcept : TStringBuffer() {
	try {
		mpData = static_cast<char16_t*>(Memory::Allocate("#StringBuffer", capacity * sizeof(char16_t)));
		mCapacity = capacity;
		mpData[capacity - 1] = 0;
	} catch (const TOutOfMemoryException&) {
		mpData = &sEmptyUnit;
	}
}

TString::TStringBuffer::~TStringBuffer() {
	if (mCapacity > 0)
		Memory::Free(mpData);
}

void* TString::TStringBuffer::operator new(std::size_t size) {
	return Memory::Allocate("TString::TStringBuffer", size);
}

void TString::TStringBuffer::operator delete(void* memory) noexcept {
	Memory::Free(memory);
}

TString::TString() : mpBuffer(TEmptyStringBuffer::Instance()) {}

TString::TString(const char* ascii) {
	const std::string_view bytes = ascii ? ascii : "";
	mpBuffer = NewBuffer(bytes.size());
	std::transform(bytes.begin(), bytes.end(), mpBuffer->mpData, [](char byte) {
		return static_cast<char16_t>(static_cast<unsigned char>(byte));
	});
}

TString::TString(const char* bytes, int encoding) {
	FromBytes(bytes ? bytes : "", encoding);
}

TString::TString(std::string_view bytes, int encoding) {
	FromBytes(bytes, encoding);
}

TString::TString(const char16_t* units, int32_t lengthInBytes)
    : TString(std::u16string_view(units, static_cast<std::size_t>(std::max(lengthInBytes, 0)) / sizeof(char16_t))) {}

TString::TString(std::u16string_view units) {
	Assign(units);
}

TString::TString(const char32_t* characters) {
	std::u16string units;
	for (; *characters; ++characters) {
		const char32_t character = *characters > 0x10FFFF ? U'?' : *characters;
		if (character < 0x10000) {
			units += static_cast<char16_t>(character);
			continue;
		}
		units += static_cast<char16_t>(0xD7C0 + (character >> 10));
		units += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
	}
	Assign(units);
}

TPtr<TString::TStringBuffer> TString::NewBuffer(std::size_t length) {
	if (length == 0)
		return TEmptyStringBuffer::Instance();
	if (length > kMaximumLength)
		throw TOutOfMemoryException();
	TPtr<TStringBuffer> buffer = MakePtr<TStringBuffer>(static_cast<uint32_t>(length + 1));
	if (buffer->mCapacity == 0)
		throw TOutOfMemoryException();
	return buffer;
}

void TString::Assign(std::u16string_view units) {
	TPtr<TStringBuffer> buffer = NewBuffer(units.size());
	std::copy(units.begin(), units.end(), buffer->mpData);
	mpBuffer.Swap(buffer);
}

char16_t* TString::MakePrivate() {
	if (mpBuffer->ReferenceCount() > 1)
		Assign(View());
	return mpBuffer->mpData;
}

const char16_t* TString::Units() const noexcept {
	return mpBuffer ? mpBuffer->mpData : &sEmptyUnit;
}

int32_t TString::Length() const noexcept {
	return static_cast<int32_t>(View().size());
}

int TString::Compare(const TString& other) const noexcept {
	const char16_t* a = Units();
	const char16_t* b = other.Units();
	for (; *a != 0 && *a == *b; ++a)
		++b;
	return *a - *b;
}

int TString::CompareIgnoringCase(const TString& other) const {
	const auto lowerOrder = [](char16_t a, char16_t b) {
		return CharacterClasses::ToLower(a) <=> CharacterClasses::ToLower(b);
	};
	const std::u16string_view a = View();
	const std::u16string_view b = other.View();
	const auto order = std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end(), lowerOrder);
	return std::is_lt(order) ? -1 : std::is_gt(order) ? 1 : 0;
}

bool TString::EqualsAscii(const char* ascii) const noexcept {
	const std::string_view bytes = ascii ? ascii : "";
	const std::u16string_view units = View();
	return std::equal(units.begin(), units.end(), bytes.begin(), bytes.end(), [](char16_t unit, char byte) {
		return unit == static_cast<unsigned char>(byte);
	});
}

int32_t TString::Find(const TString& text, int32_t start, bool backwards) const {
	if (!backwards && start >= 0 && !text.IsEmpty())
		return ToIndex(View().find(text.View(), static_cast<std::size_t>(start)));
	return FindText(View(), text.View(), start, backwards, AreSame);
}

int32_t TString::FindIgnoringCase(const TString& text, int32_t start, bool backwards) const {
	return FindText(View(), text.View(), start, backwards, AreSameIgnoringCase);
}

int32_t TString::FindChar(char16_t unit, int32_t start, bool backwards) const {
	return FindText(View(), {&unit, 1}, start, backwards, AreSame);
}

bool TString::StartsWith(const TString& text) const {
	return BeginsWith(View(), text.View(), AreSame);
}

bool TString::EndsWith(const TString& text) const {
	return FinishesWith(View(), text.View(), AreSame);
}

bool TString::StartsWithIgnoringCase(const TString& text) const {
	return BeginsWith(View(), text.View(), AreSameIgnoringCase);
}

bool TString::EndsWithIgnoringCase(const TString& text) const {
	return FinishesWith(View(), text.View(), AreSameIgnoringCase);
}

bool TString::StartsWithChar(char16_t unit) const {
	return View().starts_with(unit);
}

bool TString::EndsWithChar(char16_t unit) const {
	return View().ends_with(unit);
}

int32_t TString::CountChar(char16_t unit) const {
	const std::u16string_view text = View();
	return static_cast<int32_t>(std::count(text.begin(), text.end(), unit));
}

int32_t TString::Count(const TString& text) const {
	const std::u16string_view pattern = text.View();
	if (pattern.empty())
		return 0;
	int32_t count = 0;
	const std::u16string_view units = View();
	for (std::size_t at = units.find(pattern); at != units.npos; at = units.find(pattern, at + pattern.size()))
		++count;
	return count;
}

int32_t TString::LineCount() const {
	int32_t count = 1;
	for (std::u16string_view text = View(); !text.empty();) {
		const std::size_t lineBreak = LineBreakLengthAt(text);
		count += lineBreak > 0;
		text.remove_prefix(std::max<std::size_t>(lineBreak, 1));
	}
	return count;
}

bool TString::IsAscii() const {
	const std::u16string_view text = View();
	return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 127; });
}

void TString::Insert(int32_t index, const TString& text) {
	Replace(static_cast<std::size_t>(std::clamp(index, 0, Length())), 0, text.View());
}

void TString::Append(const TString& text) {
	Replace(View().size(), 0, text.View());
}

void TString::Append(char16_t unit) {
	Replace(View().size(), 0, {&unit, 1});
}

void TString::Remove(int32_t from, int32_t to) {
	const int32_t length = Length();
	const int32_t begin = std::max(from, 0);
	const int32_t end = to < 0 ? length : std::min(to, length);
	if (begin < end)
		Replace(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin), {});
}

/// The one place where units are moved. Works in the buffer when it is ours and large enough, unless the new text lies
/// in the same buffer.
void TString::Replace(std::size_t from, std::size_t count, std::u16string_view newText) {
	if (count == 0 && newText.empty())
		return;
	const std::u16string_view text = View();
	const std::size_t newLength = text.size() - count + newText.size();
	const std::u16string_view tail = text.substr(from + count);
	const bool isInside = newText.data() == text.data();
	if (mpBuffer && mpBuffer->ReferenceCount() == 1 && newLength + 1 <= mpBuffer->mCapacity && !isInside) {
		char16_t* target = mpBuffer->mpData + from;
		std::memmove(target + newText.size(), tail.data(), (tail.size() + 1) * sizeof(char16_t));
		std::copy(newText.begin(), newText.end(), target);
		return;
	}
	TPtr<TStringBuffer> buffer = NewBuffer(newLength);
	char16_t* target = std::copy_n(text.begin(), from, buffer->mpData);
	target = std::copy(newText.begin(), newText.end(), target);
	std::copy(tail.begin(), tail.end(), target);
	mpBuffer.Swap(buffer);
}

void TString::ReplaceAll(const TString& oldText, const TString& newText) {
	const auto found = static_cast<std::size_t>(Count(oldText));
	if (found == 0 || oldText == newText)
		return;
	const std::u16string_view text = View();
	const std::u16string_view from = oldText.View();
	const std::u16string_view to = newText.View();
	TPtr<TStringBuffer> buffer = NewBuffer(text.size() - found * from.size() + found * to.size());
	char16_t* target = buffer->mpData;
	std::size_t done = 0;
	for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, done)) {
		target = std::copy(
		    text.begin() + static_cast<std::ptrdiff_t>(done), text.begin() + static_cast<std::ptrdiff_t>(at), target);
		target = std::copy(to.begin(), to.end(), target);
		done = at + from.size();
	}
	std::copy(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(), target);
	mpBuffer.Swap(buffer);
}

void TString::ReplaceFirst(const TString& oldText, const TString& newText) {
	const std::size_t at = View().find(oldText.View());
	if (at != std::u16string_view::npos && !oldText.IsEmpty())
		Replace(at, oldText.View().size(), newText.View());
}

void TString::ReplaceLast(const TString& oldText, const TString& newText) {
	const std::size_t at = View().rfind(oldText.View());
	if (at != std::u16string_view::npos && !oldText.IsEmpty())
		Replace(at, oldText.View().size(), newText.View());
}

void TString::ReplaceChar(char16_t oldUnit, char16_t newUnit) {
	const std::size_t length = View().size();
	if (length > 0 && oldUnit != newUnit && View().find(oldUnit) != std::u16string_view::npos) {
		char16_t* units = MakePrivate();
		std::replace(units, units + length, oldUnit, newUnit);
	}
}

void TString::SetChar(int32_t index, char16_t unit) {
	if (index >= 0 && index < Length())
		MakePrivate()[index] = unit;
}

void TString::ToLower() {
	if (const std::size_t length = View().size()) {
		char16_t* units = MakePrivate();
		std::transform(units, units + length, units, CharacterClasses::ToLower);
	}
}

void TString::ToUpper() {
	if (const std::size_t length = View().size()) {
		char16_t* units = MakePrivate();
		std::transform(units, units + length, units, CharacterClasses::ToUpper);
	}
}

void TString::RemoveAllIgnoringCase(const TString& text) {
	const TString pattern = text; // NOLINT(performance-unnecessary-copy-initialization): it may be this very string
	const int32_t length = pattern.Length();
	for (int32_t at = FindIgnoringCase(pattern); at >= 0; at = FindIgnoringCase(pattern, at))
		Remove(at, at + length);
}

void TString::RemoveFirstIgnoringCase(const TString& text) {
	if (const int32_t at = FindIgnoringCase(text); at >= 0)
		Remove(at, at + text.Length());
}

void TString::RemoveLastIgnoringCase(const TString& text) {
	if (const int32_t at = FindIgnoringCase(text, Length() - 1, true); at >= 0)
		Remove(at, at + text.Length());
}

void TString::LineBreaksToBlanks() {
	ReplaceAll("\r\n", " ");
	ReplaceChar(u'\r', u' ');
	ReplaceChar(u'\n', u' ');
}

void TString::TabsToBlanks(int32_t width) {
	ReplaceAll("\t", TString(" ").Repeat(width));
}

void TString::TrimLeft() {
	const std::u16string_view text = View();
	const auto kept = std::find_if_not(text.begin(), text.end(), IsTrimmed);
	Replace(0, static_cast<std::size_t>(kept - text.begin()), {});
}

void TString::TrimRight() {
	const std::u16string_view text = View();
	const auto kept = std::find_if_not(text.rbegin(), text.rend(), IsTrimmed);
	const auto trimmed = static_cast<std::size_t>(kept - text.rbegin());
	if (trimmed > 0)
		std::fill_n(MakePrivate() + text.size() - trimmed, trimmed, u'\0');
}

void TString::Trim() {
	TabsToBlanks(2);
	TrimRight();
	TrimLeft();
}

TString TString::SubString(int32_t from, int32_t to) const {
	const std::u16string_view text = View();
	const auto length = static_cast<int32_t>(text.size());
	const int32_t begin = std::max(from, 0);
	const int32_t end = to < 0 ? length : std::min(to, length);
	if (begin >= end)
		return {};
	if (begin == 0 && end == length)
		return *this;
	return TString(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

TString TString::Concat(const TString& text) const {
	TString result = *this;
	result.Append(text);
	return result;
}

TString TString::Repeat(int32_t count) const {
	const std::u16string_view text = View();
	if (count <= 0 || text.empty())
		return {};
	TPtr<TStringBuffer> buffer = NewBuffer(text.size() * static_cast<std::size_t>(count));
	for (char16_t* target = buffer->mpData; count > 0; --count)
		target = std::copy(text.begin(), text.end(), target);
	return TString(std::move(buffer));
}

/// `separatorLengthAt` gives the length of the separator at the beginning of a text, 0 if there is none.
TList<TString> TString::SplitBy(auto separatorLengthAt) const {
	TList<TString> parts;
	std::u16string_view rest = View();
	std::size_t partLength = 0;
	while (partLength < rest.size()) {
		const std::size_t separatorLength = separatorLengthAt(rest.substr(partLength));
		if (separatorLength == 0) {
			++partLength;
			continue;
		}
		parts.Append(TString(rest.substr(0, partLength)));
		rest.remove_prefix(partLength + separatorLength);
		partLength = 0;
	}
	parts.Append(TString(rest));
	return parts;
}

TList<TString> TString::Split(char16_t separator) const {
	return SplitBy([&](std::u16string_view text) -> std::size_t { return text.front() == separator ? 1 : 0; });
}

TList<TString> TString::SplitAtAny(const TList<TString>& separators) const {
	return SplitBy([&](std::u16string_view text) -> std::size_t {
		for (const TString& separator : separators) {
			if (!separator.IsEmpty() && text.starts_with(separator.View()))
				return separator.View().size();
		}
		return 0;
	});
}

TList<TString> TString::SplitLines() const {
	return SplitBy(LineBreakLengthAt);
}

TString TString::Join(const TList<TString>& list, const TString& separator) {
	if (list.IsEmpty())
		return {};
	std::size_t length = static_cast<std::size_t>(list.Count() - 1) * separator.View().size();
	for (const TString& part : list)
		length += part.View().size();
	TPtr<TStringBuffer> buffer = NewBuffer(length);
	char16_t* target = buffer->mpData;
	for (int32_t index = 0; index < list.Count(); ++index) {
		const std::u16string_view between = index > 0 ? separator.View() : std::u16string_view{};
		const std::u16string_view part = list[index].View();
		target = std::copy(between.begin(), between.end(), target);
		target = std::copy(part.begin(), part.end(), target);
	}
	return TString(std::move(buffer));
}
