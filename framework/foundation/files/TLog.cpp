// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TLog.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/memory/TStlAllocator.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/threads/TCriticalSection.h"
#include "framework/foundation/values/ProductInfo.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>
#include <sys/utsname.h>

namespace {

constexpr int64_t kLargestFile = 0x400000;
constexpr int64_t kKeptOfLargeFile = 0x100000;
constexpr int64_t kPauseInMilliseconds = 2000;
constexpr std::size_t kFormatBuffer = 4096;
constexpr char kRule[] = "============================================================";
static_assert(sizeof kRule == 60 + 1);

using TText = std::basic_string<char, std::char_traits<char>, TStlAllocator<char>>;

/// FNV-1a.
uint64_t Hash(std::string_view text) {
	uint64_t hash = 0xCBF29CE484222325u;
	for (const char character : text)
		hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3u;
	return hash;
}

TText LineOf(const char* category, const char* text) {
	TText line(category);
	if (!line.empty())
		line += ": ";
	return line += text;
}

/// While set, messages of this thread come from logging itself.
constinit thread_local bool sIsLogging = false;

template <class TFunction>
void RunUnlessLogging(TFunction&& function) {
	if (sIsLogging)
		return;
	sIsLogging = true;
	try {
		function();
	} catch (...) { // no failure of logging is the caller's
	}
	sIsLogging = false;
}

/// What KEY="value" gives to the key, without quotes; empty if no line has the key.
std::string_view ValueOf(std::string_view key, std::string_view lines) {
	while (!lines.empty()) {
		std::string_view line = lines.substr(0, lines.find('\n'));
		lines.remove_prefix(std::min(line.size() + 1, lines.size()));
		if (!line.starts_with(key) || line.substr(key.size(), 1) != "=")
			continue;
		line.remove_prefix(key.size() + 1);
		const bool isQuoted = line.size() >= 2 && line.front() == line.back() && line.front() == '"';
		return isQuoted ? line.substr(1, line.size() - 2) : line;
	}
	return {};
}

TText NameAndVersionOfSystem(const utsname& kernel) {
	std::array<char, 4096> buffer;
	int64_t bytes = static_cast<int64_t>(buffer.size());
	TFile release("/etc/os-release");
	if (release.Open(TFile::kReadOnly))
		release.Read(buffer.data(), bytes);
	else
		bytes = 0;
	const std::string_view lines(buffer.data(), static_cast<std::size_t>(bytes));
	const std::string_view name = ValueOf("NAME", lines);
	const std::string_view version = ValueOf("VERSION_ID", lines);
	if (name.empty())
		return TText(kernel.sysname) + " " + kernel.release;
	return version.empty() ? TText(name) : TText(name) + " " + TText(version);
}

/// "Debian GNU/Linux 12 (x86_64)"
TText SystemText() {
	utsname kernel{};
	uname(&kernel);
	const std::string_view machine = kernel.machine;
	return NameAndVersionOfSystem(kernel) + " (" + TText(machine == "aarch64" ? "arm64" : machine) + ")";
}

std::tm LocalTime() {
	const std::time_t now = std::time(nullptr);
	std::tm local{};
	localtime_r(&now, &local);
	return local;
}

/// Keeps the end of a file that has grown too large. False if the file is not there afterwards.
bool CutToItsEnd(TFile& file) {
	try {
		TArray<uint8_t> end(static_cast<int32_t>(kKeptOfLargeFile));
		int64_t bytes = kKeptOfLargeFile;
		if (!file.Open(TFile::kReadOnly) || !file.Seek(file.Size() - bytes) || !file.Read(end.Items(), bytes))
			throw TReadableException("File I/O Error");
		if (!file.Open(TFile::kWriteOnly) || !file.Write(end.Items(), bytes))
			throw TReadableException("File I/O Error");
		file.Flush();
		file.Close();
		return true;
	} catch (const TReadableException&) {
		file.Close();
		file.Delete();
		return false;
	}
}

} // namespace

/// The one log of the process, and what it is to be made with.
class TLog::TProcessLog {
public:
	/// The list of listeners is made first, so that it is still there when the file is closed at the process's end.
	TProcessLog() {
		FileChanges::MakeRegistry();
		TReadableException::SetListener([](const TString& message) {
			if (const TPtr<TLog> log = TLog::Existing())
				log->LogString("Exception", message);
		});
	}

	TPtr<TLog> Existing() {
		const TCriticalSection::TGuard guard(mLock);
		return mpLog;
	}

	TPtr<TLog> Instance() {
		const TCriticalSection::TGuard guard(mLock);
		if (!mpLog)
			mpLog = TPtr<TLog>(new TLog(mDirectory, TString(ProductInfo::kProductName) + ".log"));
		return mpLog;
	}

	void Drop() {
		TPtr<TLog> log;
		const TCriticalSection::TGuard guard(mLock);
		log.Swap(mpLog);
	}

	/// One lock after the other: whoever opens a log holds its lock and may ask for the existing one.
	void SetDirectory(const TDirectory& directory) {
		TPtr<TLog> log;
		{
			const TCriticalSection::TGuard guard(mLock);
			mDirectory = directory;
			log = mpLog;
		}
		if (!log)
			return;
		const std::lock_guard guard(log->mOpenLock);
		log->mDirectory = directory;
	}

	std::atomic<bool> mEchoToConsole{true};

private:
	TCriticalSection mLock; // recursive: an exception that is thrown inside asks for the existing log
	TPtr<TLog> mpLog;
	TDirectory mDirectory;
};

TLog::TProcessLog& TLog::ProcessLog() {
	static TProcessLog sLog;
	return sLog;
}

TPtr<TLog> TLog::Instance() {
	return ProcessLog().Instance();
}

TPtr<TLog> TLog::Existing() {
	return ProcessLog().Existing();
}

void TLog::Drop() {
	ProcessLog().Drop();
}

void TLog::SetDirectory(const TDirectory& directory) {
	ProcessLog().SetDirectory(directory);
}

void TLog::SetEchoToConsole(bool echo) {
	ProcessLog().mEchoToConsole.store(echo, std::memory_order_relaxed);
}

bool TLog::EchoesToConsole() {
	return ProcessLog().mEchoToConsole.load(std::memory_order_relaxed);
}

TLog::TLog(const TDirectory& directory, const TString& fileName, TClock clock)
    : mDirectory(directory),
      mFileName(fileName),
      mClock(clock),
      mLastCategory(Hash("")) {}

TLog::~TLog() {
	if (mIsOpen)
		LogText("", "Closing log file...");
}

void TLog::Log(const char* category, const char* format, ...) {
	std::array<char, kFormatBuffer> text;
	std::va_list arguments;
	va_start(arguments, format);
	std::vsnprintf(text.data(), text.size(), format, arguments);
	va_end(arguments);
	LogText(category, text.data());
}

void TLog::LogText(const char* category, const char* text) {
	RunUnlessLogging([&] {
		// Composed first: opening the file makes CStrings, and the texts may be older ones that these would overwrite.
		const TText line = LineOf(category, text);
		const uint64_t subject = Hash(category);
		WriteLine(OpenIfClosed(), subject, line);
	});
}

void TLog::LogString(const char* category, const TString& text) {
	RunUnlessLogging([&] {
		const TText line = LineOf(category, text.CString(kPlatformEncoding));
		const uint64_t subject = Hash(category);
		WriteLine(OpenIfClosed(), subject, line);
	});
}

int64_t TLog::SteadyMilliseconds() {
	using namespace std::chrono;
	return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool TLog::OpenIfClosed() {
	if (mIsOpen.load(std::memory_order_acquire))
		return true;
	const std::lock_guard guard(mOpenLock);
	if (!mIsOpen.load(std::memory_order_relaxed))
		mIsOpen.store(Open(), std::memory_order_release);
	return mIsOpen.load(std::memory_order_relaxed);
}

bool TLog::Open() {
	if (mDirectory.IsEmpty())
		return false;
	mFile.SetPath(mDirectory.FilePath(mFileName));
	bool isNew = !mFile.Exists();
	if (!isNew && !mTruncate && mFile.Size() > kLargestFile)
		isNew = !CutToItsEnd(mFile);
	if (!mDirectory.Create(true) || !mFile.Open(mTruncate ? TFile::kWriteOnly : TFile::kAppend))
		return false;
	mLastLineTime = mClock();
	if (!mWriteHeader)
		return true;
	if (!isNew && !mTruncate)
		WriteToFile("\n\n\n\n");
	WriteHeader();
	return true;
}

void TLog::WriteHeader() {
	const std::tm now = LocalTime();
	const auto write = [this](const char* format, auto... values) {
		std::array<char, 256> line;
		std::snprintf(line.data(), line.size(), format, values...);
		WriteLine(true, Hash(""), line.data());
	};
	write("%s", kRule);
	write(
	    "Version : %s V%d.%d.%d (%s)", ProductInfo::kProductName, ProductInfo::kMajorVersion,
	    ProductInfo::kMinorVersion, ProductInfo::kPatchVersion, ProductInfo::BuildDate());
	write("Date    : %04d-%02d-%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
	write("Time    : %02d:%02d:%02d", now.tm_hour, now.tm_min, now.tm_sec);
	write("OS      : %s", SystemText().c_str());
	write("%s", kRule);
}

void TLog::WriteLine(bool toFile, uint64_t subject, std::string_view line) {
	if (toFile)
		WriteToFile(TText(StartsParagraph(subject) ? "\n" : "").append(line).append("\n"));
	if (EchoesToConsole())
		std::puts(TText(ProductInfo::kProductName).append(" LOG> ").append(line).c_str());
}

bool TLog::StartsParagraph(uint64_t subject) {
	const int64_t now = mClock();
	const bool isNewSubject = mLastCategory.exchange(subject, std::memory_order_relaxed) != subject;
	const bool isAfterPause = now - mLastLineTime.exchange(now, std::memory_order_relaxed) > kPauseInMilliseconds;
	return isNewSubject || isAfterPause;
}

void TLog::WriteToFile(std::string_view bytes) {
	int64_t count = static_cast<int64_t>(bytes.size());
	mFile.Write(bytes.data(), count);
	mFile.Flush();
}
