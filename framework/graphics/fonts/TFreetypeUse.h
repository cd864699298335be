// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <mutex>

struct FT_LibraryRec_;

/// FreeType: one library object for the process, there as long as somebody uses it.
///
/// Each instance draws its text on a thread of its own, with faces of its own; but faces share the library's memory
/// when they are opened, closed and when they render. That is done under the lock.
class TFreetypeUse {
public:
	/// Throws TReadableException.
	TFreetypeUse();
	~TFreetypeUse();
	TFreetypeUse(const TFreetypeUse&) = delete;
	TFreetypeUse& operator=(const TFreetypeUse&) = delete;

	static FT_LibraryRec_* Library();
	static std::unique_lock<std::mutex> Lock();
};
