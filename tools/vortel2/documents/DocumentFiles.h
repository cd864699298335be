// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/foundation/files/TStream.h"
#include "tools/vortel2/options/TOptionText.h"

#include <cstdint>
#include <span>
#include <string>

/// Program and bank files as the command line names them. GUI thread. A file that cannot be read or written is a
/// TWorkError that names it.
namespace DocumentFiles {

enum class EKind : uint8_t { kProgram, kBank };

/// Told by the extension, v2prg or v2bnk; a TUsageError for any other.
EKind KindOf(const std::string& path);
/// The same for an option, which the message names.
EKind KindOf(const TOptionText& path);

void LoadBank(TVortelDocument& document, const std::string& path);
/// Into the active program.
void LoadProgram(TVortelDocument& document, const std::string& path);
/// One of the two, by the extension.
EKind Load(TVortelDocument& document, const std::string& path);
/// The bank, or the active program, by the extension. Written beside the target and renamed.
void Save(TVortelDocument& document, const std::string& path);
/// The same for bytes that are written later.
TStream Saved(TVortelDocument& document, const std::string& path);
void WriteBytes(const std::string& path, std::span<const uint8_t> bytes);

/// The version that the file itself gives.
int32_t VersionOf(const std::string& path);

} // namespace DocumentFiles
