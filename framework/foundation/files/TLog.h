// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string_view>

/// The log file: one for the process, over all plug-in instances. Any thread; not for the audio thread's steady state.
/// No failure in logging reaches the caller. A message that logging itself gives rise to is dropped.
///
/// The program says where the file lies (SetDirectory); until it has, messages are only echoed.
class TLog final : public TReferenceCountable {
public:
	/// Milliseconds of a clock that never goes back.
	using TClock = int64_t (*)();

	/// Made on first use.
	static TPtr<TLog> Instance();
	/// Null if nothing has been logged yet.
	static TPtr<TLog> Existing();
	/// Closes the process's log; the next message makes a new one.
	static void Drop();

	/// The folder for the file of the process's log; takes effect when the file is next opened.
	static void SetDirectory(const TDirectory& directory);
	/// Whether every message also goes to standard output. On at first; off in programs whose output is their result.
	static void SetEchoToConsole(bool echo);
	static bool EchoesToConsole();

	/// A log of one's own. Nothing is opened before the first message.
	TLog(const TDirectory& directory, const TString& fileName, TClock clock = &SteadyMilliseconds);
	~TLog() override;

	/// Formats into at most 4,095 bytes.
	[[gnu::format(printf, 3, 4)]] void Log(const char* category, const char* format, ...);
	/// A line of its own, in kPlatformEncoding. An empty category leaves the ": " out.
	void LogText(const char* category, const char* text);
	void LogString(const char* category, const TString& text);

	/// Start a fresh file at each opening. Off at first.
	void SetTruncate(bool truncate) { mTruncate = truncate; }

	/// Whether an opening writes the header block. On at first.
	void SetWriteHeader(bool write) { mWriteHeader = write; }

	bool IsDeletedOnMainThread() const override { return false; }

private:
	class TProcessLog;

	static TProcessLog& ProcessLog();
	static int64_t SteadyMilliseconds();

	bool OpenIfClosed();
	bool Open();
	void WriteHeader();
	void WriteLine(bool toFile, uint64_t subject, std::string_view line);
	bool StartsParagraph(uint64_t subject);
	void WriteToFile(std::string_view bytes);

	TDirectory mDirectory;
	TString mFileName;
	TClock mClock;
	bool mTruncate = false;
	bool mWriteHeader = true;
	std::atomic<uint64_t> mLastCategory; // its hash, so that any thread may read and write it
	std::atomic<int64_t> mLastLineTime{0};
	std::mutex mOpenLock; // taken for the opening only
	TFile mFile;
	std::atomic<bool> mIsOpen{false};
};
