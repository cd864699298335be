// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst2/Vst2Text.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

/// Without the beginning of a character that is not all there.
std::string_view WholeCharacters(std::string_view text) {
	for (std::size_t back = 1; back <= std::min<std::size_t>(text.size(), 3); ++back) {
		const auto byte = static_cast<unsigned char>(text[text.size() - back]);
		if ((byte & 0xC0) == 0x80)
			continue;
		const std::size_t needed = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
		return needed > back ? text.substr(0, text.size() - back) : text;
	}
	return text;
}

} // namespace

void Vst2Text::Write(const TString& text, void* target, std::size_t limit) {
	if (!target)
		return;
	std::string bytes;
	text.ToBytes(bytes, kPlatformEncoding);
	const std::string_view fitting = WholeCharacters(std::string_view(bytes).substr(0, limit - 1));
	auto* out = static_cast<char*>(target);
	std::memcpy(out, fitting.data(), fitting.size());
	out[fitting.size()] = 0;
}

TString Vst2Text::Read(const void* source, std::size_t limit) {
	const auto* bytes = static_cast<const char*>(source);
	return {WholeCharacters({bytes, strnlen(bytes, limit)}), kPlatformEncoding};
}
