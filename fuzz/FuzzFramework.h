// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/text/TString.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What the fuzzers share: the framework runs in one instance, its log and its dialogs are silent.
namespace FuzzFramework {

/// Ends the program as a failure: something that must hold for every input does not.
inline void Require(bool condition) {
	if (!condition)
		std::abort();
}

TString TextOf(const uint8_t* data, std::size_t size);
TStream StreamOf(const uint8_t* data, std::size_t size);

/// Whether the node can be read at all from the bytes. If so, a save of it, loaded again, saves to the same bytes, in
/// the form of files or, for every other length of the input, in that of chunks.
bool LoadAndCheck(TDocumentNode& node, const TStream& bytes);
/// Every index that the document follows, and every text that it shows, after whatever was loaded.
void UseEverything(TVortelDocument& document);

} // namespace FuzzFramework
