// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <xkbcommon/xkbcommon.h>

/// From the keyboard extension's names to logical keys (TKeyCode); -1 for what has none.
namespace X11KeyCodes {

/// By the place on the keyboard, such as "AC01".
int OfKeyName(std::string_view name) noexcept;
/// By what is written on keys that have no common place: media keys, keys of servers without names.
int OfSymbol(xkb_keysym_t symbol) noexcept;
/// The key that an unlocked number pad stands in for; -1 for all but these symbols.
int OfUnlockedPad(xkb_keysym_t symbol) noexcept;

} // namespace X11KeyCodes
