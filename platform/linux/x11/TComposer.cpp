// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TComposer.h"

#include <array>
#include <cstdlib>
#include <string>

namespace {

constexpr const char* kCommonLanguage = "en_US.UTF-8";

/// Tables for other encodings would give bytes that are not UTF-8.
std::string LanguageOfUser() {
	for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
		const char* value = std::getenv(variable);
		if (!value || !*value)
			continue;
		const std::string name(value);
		const bool isUtf8 = name.ends_with(".UTF-8") || name.ends_with(".utf8");
		return isUtf8 && !name.starts_with("C.") ? name : kCommonLanguage;
	}
	return kCommonLanguage;
}

} // namespace

void TComposer::ReadTable(xkb_context* context) {
	mHasTried = true;
	for (const std::string& language : {LanguageOfUser(), std::string(kCommonLanguage)}) {
		mpTable.reset(xkb_compose_table_new_from_locale(context, language.c_str(), XKB_COMPOSE_COMPILE_NO_FLAGS));
		if (mpTable)
			break;
	}
	if (mpTable)
		mpState.reset(xkb_compose_state_new(mpTable.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

TComposer::TResult TComposer::Feed(xkb_context* context, xkb_keysym_t symbol) {
	if (!mHasTried)
		ReadTable(context);
	if (!mpState || xkb_compose_state_feed(mpState.get(), symbol) == XKB_COMPOSE_FEED_IGNORED)
		return TResult::kPlain;
	switch (xkb_compose_state_get_status(mpState.get())) {
	case XKB_COMPOSE_COMPOSING:
		return TResult::kComposing;
	case XKB_COMPOSE_COMPOSED: {
		std::array<char, 64> text{};
		xkb_compose_state_get_utf8(mpState.get(), text.data(), text.size());
		mComposed = TString(text.data(), kPlatformEncoding);
		Reset();
		return TResult::kComposed;
	}
	case XKB_COMPOSE_CANCELLED:
		Reset();
		return TResult::kPlain;
	case XKB_COMPOSE_NOTHING:
		break;
	}
	return TResult::kPlain;
}

void TComposer::Reset() {
	if (mpState)
		xkb_compose_state_reset(mpState.get());
}
