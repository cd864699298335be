// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TStructuredExceptionHandler.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"

#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <optional>
#include <span>

namespace {

constexpr int kMaximumFrames = 100;
constexpr int kOwnFrames = 2; // CaptureStack and ReportCrash

std::optional<TStructuredExceptionHandler> sHandler;

using TStack = std::array<void*, kMaximumFrames + kOwnFrames>;

[[gnu::noinline]] std::span<void* const> CaptureStack(TStack& stack) {
	const int count = backtrace(stack.data(), static_cast<int>(stack.size()));
	return std::span<void* const>(stack.data(), static_cast<std::size_t>(count)).subspan(kOwnFrames);
}

/// As the compiler's runtime gives it; the raw name when that fails.
struct TReadableSymbol {
	explicit TReadableSymbol(const char* raw) : mRaw(raw) {
		int status = 0;
		mDemangled = abi::__cxa_demangle(raw, nullptr, nullptr, &status);
	}

	~TReadableSymbol() { std::free(mDemangled); }

	TReadableSymbol(const TReadableSymbol&) = delete;
	TReadableSymbol& operator=(const TReadableSymbol&) = delete;

	const char* Text() const { return mDemangled ? mDemangled : mRaw; }

	const char* mRaw;
	char* mDemangled;
};

void LogFrame(TLog& log, int number, void* address) {
	const std::uintptr_t position = reinterpret_cast<std::uintptr_t>(address);
	Dl_info info{};
	if (!dladdr(address, &info) || !info.dli_sname) {
		log.Log("CrashLog", "%3d 0x%" PRIxPTR " - ???", number, position);
		return;
	}
	const TReadableSymbol symbol(info.dli_sname);
	const std::uintptr_t offset = position - reinterpret_cast<std::uintptr_t>(info.dli_saddr);
	log.Log(
	    "CrashLog", "%3d 0x%" PRIxPTR " - %s + 0x%" PRIxPTR " %s", number, position, symbol.Text(), offset,
	    info.dli_fname);
}

} // namespace

TStructuredExceptionHandler::TStructuredExceptionHandler() {
	// No clean-up at a thread's end: the stacks are freed together with the handler.
	if (pthread_key_create(&mFramesKey, nullptr) != 0)
		throw TReadableException("Failed to create the storage for guard frames.");
}

TStructuredExceptionHandler::~TStructuredExceptionHandler() {
	pthread_key_delete(mFramesKey);
}

void TStructuredExceptionHandler::Create() {
	if (!sHandler)
		sHandler.emplace();
}

void TStructuredExceptionHandler::Destroy() {
	sHandler.reset();
}

TStructuredExceptionHandler* TStructuredExceptionHandler::Instance() noexcept {
	return sHandler ? &*sHandler : nullptr;
}

TStructuredExceptionHandler::TSigJmpBuffer* TStructuredExceptionHandler::PushFrame() {
	return &FramesOfThisThread().emplace_back();
}

void TStructuredExceptionHandler::PopFrame() {
	FramesOfThisThread().pop_back();
}

TStructuredExceptionHandler::TSigJmpBuffer* TStructuredExceptionHandler::TopFrame() noexcept {
	TFrames* frames = static_cast<TFrames*>(pthread_getspecific(mFramesKey));
	return frames && !frames->empty() ? &frames->back() : nullptr;
}

bool TStructuredExceptionHandler::ReportCrash() {
	TStack stack;
	const TPtr<TLog> log = TLog::Instance();
	int number = 0;
	for (void* address : CaptureStack(stack))
		LogFrame(*log, number++, address);
	return true;
}

TStructuredExceptionHandler::TFrames& TStructuredExceptionHandler::FramesOfThisThread() {
	if (void* frames = pthread_getspecific(mFramesKey))
		return *static_cast<TFrames*>(frames);
	const std::lock_guard guard(mAllFramesLock);
	TFrames& made = mAllFrames.emplace_back();
	pthread_setspecific(mFramesKey, &made);
	return made;
}
