// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <span>

/// What files and byte blocks have in common: bytes at a position, and the typed forms on top of them. One thread at a
/// time.
///
/// The typed reads and writes throw a TReadableException on a short transfer.
class TBinaryStream {
public:
	enum TByteOrder : int32_t { kBigEndian = 0, kLittleEndian = 1 };

	virtual ~TBinaryStream() = default;

	/// Of the 16, 32 and 64-bit numbers; little-endian at first.
	void SetByteOrder(TByteOrder order) noexcept { mByteOrder = order; }

	/// Bytes.
	virtual int64_t Size() const = 0;
	virtual int64_t Position() const = 0;
	virtual bool Seek(int64_t position) = 0;

	/// `bytes` is how many are wanted, and then how many were transferred. True if that is all of them.
	virtual bool Read(void* buffer, int64_t& bytes) = 0;
	virtual bool Write(const void* buffer, int64_t& bytes) = 0;

	int8_t ReadInt8() { return ReadNumber<int8_t>(); }

	int16_t ReadInt16() { return ReadNumber<int16_t>(); }

	int32_t ReadInt32() { return ReadNumber<int32_t>(); }

	int64_t ReadInt64() { return ReadNumber<int64_t>(); }

	float ReadFloat() { return ReadNumber<float>(); }

	double ReadDouble() { return ReadNumber<double>(); }

	void WriteInt8(int8_t value) { WriteNumber(value); }

	void WriteInt16(int16_t value) { WriteNumber(value); }

	void WriteInt32(int32_t value) { WriteNumber(value); }

	void WriteInt64(int64_t value) { WriteNumber(value); }

	void WriteFloat(float value) { WriteNumber(value); }

	void WriteDouble(double value) { WriteNumber(value); }

	/// The bytes alone.
	void WriteAll(const void* buffer, int64_t bytes);
	/// A 32-bit length and the bytes. A length that the rest of the stream cannot hold counts as its unexpected end.
	void ReadBytes(TArray<uint8_t>& block);
	void WriteBytes(std::span<const uint8_t> bytes);
	/// A byte block in the given encoding.
	void ReadString(TString& text, int encoding);
	void WriteString(const TString& text, int encoding);

private:
	template <class T>
	T ReadNumber();
	template <class T>
	void WriteNumber(T value);

	void ReadAll(void* buffer, int64_t bytes);
	bool IsSwapped() const noexcept;

	TByteOrder mByteOrder = kLittleEndian;
};
