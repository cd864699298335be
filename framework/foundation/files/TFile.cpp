// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TFile.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/text/TReadableException.h"

#include <algorithm>
#include <array>
#include <cstddef>
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

bool TFile::Close() {
	if (!mpStream)
		return true;
	const bool isWritten = std::fclose(std::exchange(mpStream, nullptr)) == 0;
	if (mMode != kReadOnly)
		ReportFileChange(mPath);
	return isWritten;
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

void TFile::TurnTo(TTransfer transfer) {
	if (mMode < kReadWriteNew)
		return;
	if (mpStream && mLastTransfer != TTransfer::kNone && mLastTransfer != transfer)
		fseeko(mpStream, 0, SEEK_CUR);
	mLastTransfer = transfer;
}
