// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#if defined(__SSE__)
#	include <xmmintrin.h>
#endif

/// Results too small for a normal float become 0 for the guard's life, so that a fading tail costs no more than sound.
/// The thread belongs to the host: its mode comes back at the end.
class [[nodiscard]] TFlushToZeroScope {
public:
	TFlushToZeroScope(const TFlushToZeroScope&) = delete;
	TFlushToZeroScope& operator=(const TFlushToZeroScope&) = delete;

#if defined(__SSE__)
	TFlushToZeroScope() noexcept : mPrevious(_mm_getcsr()) {
		_mm_setcsr(mPrevious | _MM_FLUSH_ZERO_ON);
	}

	~TFlushToZeroScope() {
		_mm_setcsr(mPrevious);
	}

private:
	unsigned int mPrevious;
#else
	TFlushToZeroScope() noexcept {}

	~TFlushToZeroScope() {}
#endif
};
