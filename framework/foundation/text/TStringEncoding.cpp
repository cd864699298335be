// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <pthread.h>

namespace {

constexpr bool IsHighSurrogate(char16_t unit) {
	return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(char16_t unit) {
	return unit >= 0xDC00 && unit < 0xE000;
}

char* PutUtf8(char* target, char32_t character) {
	const auto put = [&](char32_t byte) { *target++ = static_cast<char>(static_cast<unsigned char>(byte)); };
	const auto putFollower = [&](int shift) { put(0x80 | ((character >> shift) & 0x3F)); };
	if (character < 0x80) {
		put(character);
	} else if (character < 0x800) {
		put(0xC0 | (character >> 6));
		putFollower(0);
	} else if (character < 0x10000) {
		put(0xE0 | (character >> 12));
		putFollower(6);
		putFollower(0);
	} else {
		put(0xF0 | (character >> 18));
		putFollower(12);
		putFollower(6);
		putFollower(0);
	}
	return target;
}

constexpr std::size_t kBytesPerUnit = 3; // at most, in every encoding

char* EncodeAscii(std::u16string_view units, char* target) {
	return std::transform(
	    units.begin(), units.end(), target, [](char16_t unit) { return unit < 127 ? static_cast<char>(unit) : '?'; });
}

char* EncodeUnits(std::u16string_view units, char* target) {
	for (const char16_t unit : units)
		target = PutUtf8(target, unit);
	return target;
}

char* EncodeCharacters(std::u16string_view units, char* target) {
	for (std::size_t index = 0; index < units.size(); ++index) {
		const char16_t unit = units[index];
		if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit)) {
			target = PutUtf8(target, unit);
		} else if (IsHighSurrogate(unit) && index + 1 < units.size() && IsLowSurrogate(units[index + 1])) {
			const auto high = static_cast<char32_t>(unit - 0xD800);
			const auto low = static_cast<char32_t>(units[++index] - 0xDC00);
			target = PutUtf8(target, 0x10000 + (high << 10) + low);
		} else {
			*target++ = '?';
		}
	}
	return target;
}

unsigned ByteAt(std::string_view bytes, std::size_t index) {
	return static_cast<unsigned char>(bytes[index]);
}

std::size_t NumberOfFollowers(unsigned lead) {
	if (lead < 0xC0 || lead >= 0xFE)
		return 0;
	if (lead < 0xE0)
		return 1;
	if (lead < 0xF0)
		return 2;
	if (lead < 0xF8)
		return 3;
	return lead < 0xFC ? 4 : 5;
}

/// Followers are counted but not checked, so that every sequence of bytes gives some text.
std::u16string DecodeLeniently(std::string_view bytes) {
	std::u16string units;
	units.reserve(bytes.size());
	for (std::size_t index = 0; index < bytes.size(); ++index) {
		const unsigned lead = ByteAt(bytes, index);
		const std::size_t followers = NumberOfFollowers(lead);
		const auto follower = [&](std::size_t number) { return ByteAt(bytes, index + number) & 0x3F; };
		const std::size_t left = bytes.size() - index - 1;
		if (lead < 0x80) {
			units += static_cast<char16_t>(lead);
		} else if (followers == 1 && left >= 1) {
			units += static_cast<char16_t>(((lead & 0x1F) << 6) | follower(1));
			index += followers;
		} else if (followers == 2 && left >= 2) {
			units += static_cast<char16_t>(((lead & 0x0F) << 12) | (follower(1) << 6) | follower(2));
			index += followers;
		} else {
			units += u'?';
			index += followers > 2 ? std::min(followers, left) : 0;
		}
	}
	return units;
}

/// One character of valid UTF-8 from the front of the bytes; nothing when they don't begin with one.
std::optional<char32_t> TakeCharacter(std::string_view& bytes) {
	static constexpr std::array<char32_t, 4> kSmallestOfLength{0, 0x80, 0x800, 0x10000};
	const unsigned lead = ByteAt(bytes, 0);
	const std::size_t followers = NumberOfFollowers(lead);
	if ((lead >= 0x80 && followers == 0) || followers > 3 || bytes.size() <= followers)
		return std::nullopt;
	char32_t character = followers == 0 ? lead : lead & (0x3Fu >> followers);
	for (std::size_t number = 1; number <= followers; ++number) {
		const unsigned follower = ByteAt(bytes, number);
		if ((follower & 0xC0) != 0x80)
			return std::nullopt;
		character = (character << 6) | (follower & 0x3F);
	}
	const bool isSurrogate = character >= 0xD800 && character < 0xE000;
	if (character < kSmallestOfLength[followers] || character > 0x10FFFF || isSurrogate)
		return std::nullopt;
	bytes.remove_prefix(followers + 1);
	return character;
}

std::u16string DecodeStrictly(std::string_view bytes) {
	std::u16string units;
	units.reserve(bytes.size());
	while (!bytes.empty()) {
		const std::optional<char32_t> character = TakeCharacter(bytes);
		if (!character)
			return u"???";
		if (*character < 0x10000) {
			units += static_cast<char16_t>(*character);
		} else {
			units += static_cast<char16_t>(0xD7C0 + (*character >> 10));
			units += static_cast<char16_t>(0xDC00 + (*character & 0x3FF));
		}
	}
	return units;
}

std::u16string DecodeAscii(std::string_view bytes) {
	std::u16string units(bytes.size(), u'?');
	std::transform(bytes.begin(), bytes.end(), units.begin(), [](char byte) {
		return static_cast<unsigned char>(byte) < 127 ? static_cast<char16_t>(byte) : u'?';
	});
	return units;
}

/// The buffers behind CString(): per thread of the process, since threads of two instances may play the same role at
/// the same time, and within it per role, four in turn.
class TCStringRings {
public:
	static constexpr std::size_t kUnknownRole = 7;

	TArray<char>& NextBuffer(std::size_t role) {
		TRing& ring = mRings[role];
		ring.mNext = (ring.mNext + 1) % kDepth;
		return ring.mBuffers[ring.mNext];
	}

private:
	static constexpr std::size_t kDepth = 4;

	struct TRing {
		std::array<TArray<char>, kDepth> mBuffers;
		std::size_t mNext = 0;
	};

	friend class TCStringRegistry;

	std::array<TRing, kUnknownRole + 1> mRings;
	TCStringRings* mpNext = nullptr;
	TCStringRings* mpPrevious = nullptr;
};

/// Frees a thread's rings when the thread ends, and those of all threads when the library is unloaded. A thread_local
/// object with a destructor would keep the library from being unloaded before its threads end, so a key does it.
class TCStringRegistry {
public:
	TCStringRegistry() {
		if (pthread_key_create(&mKey, &OnThreadEnd) != 0)
			throw TOutOfMemoryException();
	}

	~TCStringRegistry() {
		sIsGone.store(true, std::memory_order_release);
		pthread_key_delete(mKey);
		while (mpFirst)
			Delete(mpFirst);
	}

	/// The calling thread's rings; null once the library's static objects have gone.
	static TCStringRings* CurrentRings() {
		if (sIsGone.load(std::memory_order_acquire))
			return nullptr;
		TCStringRegistry& registry = Instance();
		if (void* rings = pthread_getspecific(registry.mKey))
			return static_cast<TCStringRings*>(rings);
		return registry.AddCurrentThread();
	}

private:
	static TCStringRegistry& Instance() {
		static TCStringRegistry sInstance;
		return sInstance;
	}

	static void OnThreadEnd(void* rings) { Instance().Delete(static_cast<TCStringRings*>(rings)); }

	TCStringRings* AddCurrentThread() {
		auto rings = std::make_unique<TCStringRings>();
		if (pthread_setspecific(mKey, rings.get()) != 0)
			throw TOutOfMemoryException();
		const std::lock_guard guard(mLock);
		rings->mpNext = mpFirst;
		if (mpFirst)
			mpFirst->mpPrevious = rings.get();
		mpFirst = rings.get();
		return rings.release();
	}

	void Delete(TCStringRings* rings) {
		{
			const std::lock_guard guard(mLock);
			(rings->mpPrevious ? rings->mpPrevious->mpNext : mpFirst) = rings->mpNext;
			if (rings->mpNext)
				rings->mpNext->mpPrevious = rings->mpPrevious;
		}
		delete rings;
	}

	static inline std::atomic<bool> sIsGone{false};

	pthread_key_t mKey{};
	std::mutex mLock;
	TCStringRings* mpFirst = nullptr;
};

std::size_t CurrentRole() {
	const TThreadManager* manager = TThreadManager::Instance();
	const int32_t thread = manager ? manager->CurrentThread() : kNoThread;
	return thread == kNoThread ? TCStringRings::kUnknownRole : static_cast<std::size_t>(thread);
}

/// Grows in steps that spare most calls an allocation, and gives back what one long text took.
void FitBuffer(TArray<char>& buffer, std::size_t size) {
	constexpr int32_t kUsualSize = 256;
	constexpr int32_t kLargestKept = 65536;
	const auto wanted = std::max(static_cast<int32_t>(size), kUsualSize);
	if (buffer.Size() < wanted || buffer.Size() > kLargestKept)
		buffer.SetSize(wanted);
}

constexpr std::string_view kBase64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

const char* TString::CString(int encoding) const {
	TCStringRings* rings = TCStringRegistry::CurrentRings();
	if (!rings)
		return "";
	const std::u16string_view units = View();
	TArray<char>& buffer = rings->NextBuffer(CurrentRole());
	FitBuffer(buffer, units.size() * kBytesPerUnit + 1);
	const auto encode = encoding == kAsciiEncoding  ? EncodeAscii
	                    : encoding == kUtf8Encoding ? EncodeUnits
	                                                : EncodeCharacters;
	*encode(units, buffer.Items()) = 0;
	return buffer.Items();
}

void TString::ToBytes(std::string& bytes, int encoding) const {
	const std::u16string_view units = View();
	std::string result(units.size() * kBytesPerUnit, '\0');
	const auto encode = encoding == kAsciiEncoding ? EncodeAscii : EncodeCharacters;
	result.resize(static_cast<std::size_t>(encode(units, result.data()) - result.data()));
	bytes = std::move(result);
}

void TString::FromBytes(std::string_view bytes, int encoding) {
	const auto decode = encoding == kAsciiEncoding  ? DecodeAscii
	                    : encoding == kUtf8Encoding ? DecodeLeniently
	                                                : DecodeStrictly;
	Assign(decode(bytes));
}

void TString::Base64Encode(std::span<const uint8_t> bytes, TString& text) {
	TPtr<TStringBuffer> buffer = NewBuffer((bytes.size() + 2) / 3 * 4);
	char16_t* target = buffer->mpData;
	for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(bytes.size(), 3))) {
		const std::size_t count = std::min<std::size_t>(bytes.size(), 3);
		uint32_t group = 0;
		for (std::size_t index = 0; index < 3; ++index)
			group = (group << 8) | (index < count ? bytes[index] : 0u);
		for (std::size_t index = 0; index < 4; ++index) {
			const auto digit = static_cast<char16_t>(kBase64Alphabet[(group >> (18 - 6 * index)) & 63]);
			*target++ = index <= count ? digit : u'=';
		}
	}
	text = TString(std::move(buffer));
}

bool TString::Base64Decode(const TString& text, std::vector<uint8_t>& bytes) {
	std::vector<uint8_t> result;
	uint32_t group = 0;
	std::size_t digits = 0;
	std::size_t padding = 0;
	for (const char16_t unit : text.View()) {
		if (unit == u'\r' || unit == u'\n')
			continue;
		const std::size_t value = unit < 128 ? kBase64Alphabet.find(static_cast<char>(unit)) : std::string_view::npos;
		const bool isDigit = value != std::string_view::npos;
		if (isDigit ? padding > 0 : unit != u'=')
			return false;
		padding += !isDigit;
		group = (group << 6) | (isDigit ? static_cast<uint32_t>(value) : 0u);
		if (++digits % 4 != 0)
			continue;
		if (padding > 2)
			return false;
		for (std::size_t index = 0; index + padding < 3; ++index)
			result.push_back(static_cast<uint8_t>(group >> (16 - 8 * index)));
	}
	if (digits % 4 != 0)
		return false;
	bytes = std::move(result);
	return true;
}
