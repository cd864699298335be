// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TRealTimeWatch.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#	define VORTEL_SANITIZED 1
#elif defined(__has_feature)
#	if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#		define VORTEL_SANITIZED 1
#	endif
#endif

namespace {

constexpr int kMaximumDepth = 40;

struct TWatched {
	bool mIsOn = false;
	const std::vector<const void*>* mpAllowedLocks = nullptr;
	std::size_t mOffences = 0;
	const char* mFirstCall = nullptr;
	std::array<void*, kMaximumDepth> mFirstStack{};
	int mFirstDepth = 0;
};

thread_local TWatched tWatched;

[[maybe_unused]] void Record(const char* call) {
	TWatched& watched = tWatched;
	if (!watched.mIsOn)
		return;
	watched.mIsOn = false; // taking the call stack may itself allocate
	if (watched.mOffences++ == 0) {
		watched.mFirstCall = call;
		watched.mFirstDepth = backtrace(watched.mFirstStack.data(), kMaximumDepth);
	}
	watched.mIsOn = true;
}

[[maybe_unused]] bool IsAllowed(const void* lock) {
	const auto* allowed = tWatched.mpAllowedLocks;
	return allowed && std::find(allowed->begin(), allowed->end(), lock) != allowed->end();
}

} // namespace

TRealTimeWatch::TRealTimeWatch(std::vector<const void*> allowedLocks) : mAllowedLocks(std::move(allowedLocks)) {
	tWatched.mpAllowedLocks = &mAllowedLocks;
	tWatched.mIsOn = true;
}

TRealTimeWatch::~TRealTimeWatch() {
	tWatched.mIsOn = false;
	tWatched.mpAllowedLocks = nullptr;
}

bool TRealTimeWatch::IsAvailable() {
#ifdef VORTEL_SANITIZED
	return false;
#else
	return true;
#endif
}

std::size_t TRealTimeWatch::NumberOfOffences() {
	return tWatched.mOffences;
}

std::string TRealTimeWatch::FirstOffence() {
	const TWatched& watched = tWatched;
	if (watched.mOffences == 0)
		return {};
	std::string text = watched.mFirstCall;
	char** symbols = backtrace_symbols(watched.mFirstStack.data(), watched.mFirstDepth);
	for (int i = 0; symbols && i < watched.mFirstDepth; ++i)
		text += std::string("\n  ") + symbols[i];
	std::free(symbols);
	return text;
}

#ifndef VORTEL_SANITIZED

// glibc's own entry points, which the replacements below stand in front of.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t size) {
	Record("malloc");
	return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
	Record("calloc");
	return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
	Record("realloc");
	return __libc_realloc(memory, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
	Record("memalign");
	return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
	Record("aligned_alloc");
	return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
	Record("posix_memalign");
	*memory = __libc_memalign(alignment, size);
	return *memory ? 0 : ENOMEM;
}

void free(void* memory) {
	if (memory)
		Record("free");
	__libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
	using TLock = int (*)(pthread_mutex_t*);
	static std::atomic<TLock> sLock{nullptr};
	TLock lock = sLock.load(std::memory_order_relaxed);
	if (!lock) {
		lock = reinterpret_cast<TLock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
		sLock.store(lock, std::memory_order_relaxed);
	}
	if (!IsAllowed(mutex))
		Record("pthread_mutex_lock");
	return lock(mutex);
}
}

#endif
