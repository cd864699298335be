// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Watches what real-time code must not do. A program that links TRealTimeWatch.cpp has the allocator and the mutex
/// calls replaced; while a TRealTimeWatch exists on a thread, each allocation, each release and each lock that was
/// not named to it counts as an offence of that thread.
///
/// Not available under the sanitizers, which replace the same calls: IsAvailable() says so.
class TRealTimeWatch {
public:
	/// The mutexes that may be taken, by address.
	explicit TRealTimeWatch(std::vector<const void*> allowedLocks = {});
	~TRealTimeWatch();

	TRealTimeWatch(const TRealTimeWatch&) = delete;
	TRealTimeWatch& operator=(const TRealTimeWatch&) = delete;

	static bool IsAvailable();

	/// Of the calling thread, since the process began.
	static std::size_t NumberOfOffences();
	/// What the first offence was, with its call stack.
	static std::string FirstOffence();

private:
	const std::vector<const void*> mAllowedLocks;
};
