// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TStream.h"

#include <string>
#include <string_view>

inline TStream StreamOf(std::string_view text) {
	return TStream(std::as_bytes(std::span(text)));
}

inline std::string TextOf(const TStream& stream) {
	return {reinterpret_cast<const char*>(stream.Bytes().data()), stream.Bytes().size()};
}
