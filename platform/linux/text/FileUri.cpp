// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/text/FileUri.h"

#include "platform/linux/text/Utf8Text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

namespace {

/// Empty also where a zero is hidden in it.
std::string Unescaped(std::string_view text) {
	std::string bytes;
	for (std::size_t i = 0; i < text.size(); ++i) {
		if (text[i] != '%') {
			bytes += text[i];
			continue;
		}
		uint8_t value = 0;
		const char* digits = text.data() + i + 1;
		if (i + 2 >= text.size() || std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2 || value == 0)
			return {};
		bytes += static_cast<char>(value);
		i += 2;
	}
	return bytes;
}

} // namespace

TString PathOfUri(std::string_view uri) {
	constexpr std::string_view kScheme = "file:";
	if (!uri.starts_with(kScheme))
		return {};
	uri.remove_prefix(kScheme.size());
	if (uri.starts_with("//")) // a host's name, of this machine or none
		uri.remove_prefix(std::min(uri.find('/', 2), uri.size()));
	return uri.starts_with('/') ? TextOfUtf8(Unescaped(uri)) : TString();
}
