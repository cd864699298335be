// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TBinaryStream.h"

#include <cstdint>
#include <cstdio>

/// A binary file: a path, and a stream while it is open. One thread at a time. Closed by its destructor at the latest.
///
/// Open, Exists, Delete, Read and Write answer with a bool.
class TFile final : public TBinaryStream {
public:
	enum TMode : int32_t { kReadOnly = 0, kWriteOnly = 1, kAppend = 2, kReadWriteNew = 3, kReadAppend = 4 };

	TFile() = default;

	explicit TFile(const TString& path) : mPath(path) {}

	~TFile() override;
	TFile(const TFile&) = delete;
	TFile& operator=(const TFile&) = delete;

	const TString& Path() const noexcept { return mPath; }

	/// Closes the file if it is open.
	void SetPath(const TString& path);

	/// False if the file cannot be opened or is a folder. Closes what was open.
	bool Open(TMode mode = kReadWriteNew);
	/// Reports the file to the listeners for file changes if it was open for writing. False if not all of it got to the
	/// disk.
	bool Close();

	bool IsOpen() const noexcept { return mpStream != nullptr; }

	bool Exists() const;
	bool Delete();
	/// 0 for a file that does not exist.
	int64_t Size() const override;
	int64_t Position() const override;
	bool Seek(int64_t position) override;

	bool Read(void* buffer, int64_t& bytes) override;
	bool Write(const void* buffer, int64_t& bytes) override;
	/// Throws if the disk is full.
	void Flush();

private:
	enum class TTransfer : int8_t { kNone, kRead, kWrite };

	void TurnTo(TTransfer transfer);

	std::FILE* mpStream = nullptr;
	TString mPath;
	TMode mMode = kReadWriteNew;
	TTransfer mLastTransfer = TTransfer::kNone; // the stream needs a seek between a write and a read
};
