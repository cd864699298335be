// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TFile.h"

#include "framework/foundation/FileChanges.h"
#include "framework/foundation/TReadableException.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace {

constexpr std::array<const char*, 5> kStreamModes = {"rb", "wb", "ab", "wb+", "ab+"};

bool IsFolder(const TString& path) {
	struct stat status;
	return stat(path.CString(kFileSystemEncoding), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

TFile::~TFile() {
	try {
		Close();
	} catch (const TReadableException&) { // only a listener was not told
	}
}

void TFile::SetPath(const TString& path) {
	Close();
	mPath = path;
}

bool TFile::Open(TMode mode) {
	Close();
	if (IsFolder(mPath))
		return false;
	mpStream = std::fopen(mPath.CString(kFileSystemEncoding), kStreamModes[static_cast<std::size_t>(mode)]);
	mMode = mode;
	mLastTransfer = TTransfer::kNone;
	return IsOpen();
}

void TFile::Close() {
	if (!mpStream)
		return;
	std::fclose(std::exchange(mpStream, nullptr));
	if (mMode != kReadOnly)
		ReportFileChange(mPath);
}

bool TFile::Exists() const {
	struct stat status;
	return stat(mPath.CString(kFileSystemEncoding), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool TFile::Delete() {
	Close();
	if (!Exists() || std::remove(mPath.CString(kFileSystemEncoding)) != 0)
		return false;
	ReportFileChange(mPath);
	return true;
}

int64_t TFile::Size() const {
	if (mpStream && mMode != kReadOnly)
		std::fflush(mpStream); // bytes that still wait in the stream count too
	struct stat status;
	const bool isKnown =
	    mpStream ? fstat(fileno(mpStream), &status) == 0 : stat(mPath.CString(kFileSystemEncoding), &status) == 0;
	return isKnown ? status.st_size : 0;
}

int64_t TFile::Position() const {
	return mpStream ? ftello(mpStream) : 0;
}

bool TFile::Seek(int64_t position) {
	mLastTransfer = TTransfer::kNone;
	return mpStream && fseeko(mpStream, position, SEEK_SET) == 0;
}

bool TFile::Read(void* buffer, int64_t& bytes) {
	const int64_t wanted = std::max<int64_t>(bytes, 0);
	TurnTo(TTransfer::kRead);
	bytes = mpStream ? static_cast<int64_t>(std::fread(buffer, 1, static_cast<std::size_t>(wanted), mpStream)) : 0;
	return bytes == wanted && mpStream;
}

bool TFile::Write(const void* buffer, int64_t& bytes) {
	const int64_t wanted = std::max<int64_t>(bytes, 0);
	TurnTo(TTransfer::kWrite);
	bytes = mpStream ? static_cast<int64_t>(std::fwrite(buffer, 1, static_cast<std::size_t>(wanted), mpStream)) : 0;
	return bytes == wanted && mpStream;
}

void TFile::Flush() {
	if (mpStream && std::fflush(mpStream) != 0)
		throw TReadableException("Failed to flush the file to disk. Probably the disk is full.");
}

void TFile::ReadBytes(TArray<uint8_t>& block) {
	const int32_t length = ReadInt32();
	if (length < 0 || length > Size() - Position())
		throw TReadableException("Unexpected end of file!");
	block.SetSize(length);
	ReadAll(block.Items(), length);
}

void TFile::WriteBytes(const TArray<uint8_t>& block) {
	WriteInt32(block.Size());
	WriteAll(block.Items(), block.Size());
}

void TFile::ReadString(TString& text, int encoding) {
	TArray<uint8_t> block;
	ReadBytes(block);
	const std::string_view bytes(reinterpret_cast<const char*>(block.Items()), static_cast<std::size_t>(block.Size()));
	text.FromBytes(bytes, encoding);
}

void TFile::WriteString(const TString& text, int encoding) {
	std::string bytes;
	text.ToBytes(bytes, encoding);
	WriteInt32(static_cast<int32_t>(bytes.size()));
	WriteAll(bytes.data(), static_cast<int64_t>(bytes.size()));
}

void TFile::ReadAll(void* buffer, int64_t bytes) {
	if (bytes > 0 && !Read(buffer, bytes))
		throw TReadableException("Unexpected end of file!");
}

void TFile::WriteAll(const void* buffer, int64_t bytes) {
	if (bytes > 0 && !Write(buffer, bytes))
		throw TReadableException(
		    "File I/O error: Please make sure that there is enough space available on the device!");
}

void TFile::TurnTo(TTransfer transfer) {
	if (mMode < kReadWriteNew)
		return;
	if (mpStream && mLastTransfer != TTransfer::kNone && mLastTransfer != transfer)
		fseeko(mpStream, 0, SEEK_CUR);
	mLastTransfer = transfer;
}

template <class T>
T TFile::ReadNumber() {
	std::array<std::byte, sizeof(T)> bytes;
	ReadAll(bytes.data(), sizeof(T));
	if (IsSwapped())
		std::ranges::reverse(bytes);
	return std::bit_cast<T>(bytes);
}

template <class T>
void TFile::WriteNumber(T value) {
	auto bytes = std::bit_cast<std::array<std::byte, sizeof(T)>>(value);
	if (IsSwapped())
		std::ranges::reverse(bytes);
	WriteAll(bytes.data(), sizeof(T));
}

bool TFile::IsSwapped() const noexcept {
	return (mByteOrder == kLittleEndian) != (std::endian::native == std::endian::little);
}

template int8_t TFile::ReadNumber();
template int16_t TFile::ReadNumber();
template int32_t TFile::ReadNumber();
template int64_t TFile::ReadNumber();
template float TFile::ReadNumber();
template double TFile::ReadNumber();
template void TFile::WriteNumber(int8_t);
template void TFile::WriteNumber(int16_t);
template void TFile::WriteNumber(int32_t);
template void TFile::WriteNumber(int64_t);
template void TFile::WriteNumber(float);
template void TFile::WriteNumber(double);
