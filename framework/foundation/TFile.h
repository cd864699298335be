// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TArray.h"
#include "framework/foundation/TString.h"

#include <cstdint>
#include <cstdio>

/// A binary file: a path, and a stream while it is open. One thread at a time. Closed by its destructor at the latest.
///
/// Open, Exists, Delete, Read and Write answer with a bool. The typed reads and writes throw a TReadableException on a
/// short transfer.
class TFile {
public:
	enum TMode : int32_t { kReadOnly = 0, kWriteOnly = 1, kAppend = 2, kReadWriteNew = 3, kReadAppend = 4 };

	enum TByteOrder : int32_t { kBigEndian = 0, kLittleEndian = 1 };

	TFile() = default;

	explicit TFile(const TString& path) : mPath(path) {}

	~TFile();
	TFile(const TFile&) = delete;
	TFile& operator=(const TFile&) = delete;

	const TString& Path() const noexcept { return mPath; }

	/// Closes the file if it is open.
	void SetPath(const TString& path);

	/// Of the 16, 32 and 64-bit numbers in the file; little-endian at first.
	void SetByteOrder(TByteOrder order) noexcept { mByteOrder = order; }

	/// False if the file cannot be opened or is a folder. Closes what was open.
	bool Open(TMode mode = kReadWriteNew);
	/// Reports the file to the listeners for file changes if it was open for writing.
	void Close();

	bool IsOpen() const noexcept { return mpStream != nullptr; }

	bool Exists() const;
	bool Delete();
	/// Bytes; 0 for a file that does not exist.
	int64_t Size() const;
	int64_t Position() const;
	bool Seek(int64_t position);

	/// `bytes` is how many are wanted, and then how many were transferred. True if that is all of them.
	bool Read(void* buffer, int64_t& bytes);
	bool Write(const void* buffer, int64_t& bytes);
	/// Throws if the disk is full.
	void Flush();

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

	/// A 32-bit length and the bytes. A length that the file cannot hold counts as its unexpected end.
	void ReadBytes(TArray<uint8_t>& block);
	void WriteBytes(const TArray<uint8_t>& block);
	/// A byte block in the given encoding.
	void ReadString(TString& text, int encoding);
	void WriteString(const TString& text, int encoding);

private:
	enum class TTransfer : int8_t { kNone, kRead, kWrite };

	template <class T>
	T ReadNumber();
	template <class T>
	void WriteNumber(T value);

	void ReadAll(void* buffer, int64_t bytes);
	void WriteAll(const void* buffer, int64_t bytes);
	void TurnTo(TTransfer transfer);
	bool IsSwapped() const noexcept;

	std::FILE* mpStream = nullptr;
	TString mPath;
	TMode mMode = kReadWriteNew;
	TByteOrder mByteOrder = kLittleEndian;
	TTransfer mLastTransfer = TTransfer::kNone; // the stream needs a seek between a write and a read
};
