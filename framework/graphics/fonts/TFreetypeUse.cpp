// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFreetypeUse.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"

#include <ft2build.h>
#include FT_FREETYPE_H

namespace {

std::mutex sMutex;
FT_Library sLibrary = nullptr;
int sUses = 0;

} // namespace

TFreetypeUse::TFreetypeUse() {
	const auto lock = Lock();
	if (!sLibrary) {
		TLog::Instance()->LogText("GraphPort", "Initializing the Font Engine...");
		if (FT_Init_FreeType(&sLibrary) != 0) {
			sLibrary = nullptr;
			throw TReadableException("Failed to init the font library.");
		}
	}
	++sUses;
}

TFreetypeUse::~TFreetypeUse() {
	const auto lock = Lock();
	if (--sUses > 0)
		return;
	FT_Done_FreeType(sLibrary);
	sLibrary = nullptr;
}

FT_LibraryRec_* TFreetypeUse::Library() {
	return sLibrary;
}

std::unique_lock<std::mutex> TFreetypeUse::Lock() {
	return std::unique_lock(sMutex);
}
