// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/X11KeyCodes.h"

#include "platform/KeyCodes.h"

#include <algorithm>
#include <array>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

struct TNamedKey {
	std::string_view mName;
	int mCode;
};

constexpr auto kNames = std::to_array<TNamedKey>({
    {"TLDE", kKeyGrave},
    {"AE01", kKey0 + 1},
    {"AE02", kKey0 + 2},
    {"AE03", kKey0 + 3},
    {"AE04", kKey0 + 4},
    {"AE05", kKey0 + 5},
    {"AE06", kKey0 + 6},
    {"AE07", kKey0 + 7},
    {"AE08", kKey0 + 8},
    {"AE09", kKey0 + 9},
    {"AE10", kKey0},
    {"AE11", kKeyMinus},
    {"AE12", kKeyEquals},
    {"BKSP", kKeyBack},
    {"TAB", kKeyTab},
    {"AD01", kKeyA + 'q' - 'a'},
    {"AD02", kKeyA + 'w' - 'a'},
    {"AD03", kKeyA + 'e' - 'a'},
    {"AD04", kKeyA + 'r' - 'a'},
    {"AD05", kKeyA + 't' - 'a'},
    {"AD06", kKeyA + 'y' - 'a'},
    {"AD07", kKeyA + 'u' - 'a'},
    {"AD08", kKeyA + 'i' - 'a'},
    {"AD09", kKeyA + 'o' - 'a'},
    {"AD10", kKeyA + 'p' - 'a'},
    {"AD11", kKeyLeftBracket},
    {"AD12", kKeyRightBracket},
    {"BKSL", kKeyBackslash},
    {"AC12", kKeyBackslash},
    {"CAPS", kKeyCapital},
    {"AC01", kKeyA},
    {"AC02", kKeyA + 's' - 'a'},
    {"AC03", kKeyA + 'd' - 'a'},
    {"AC04", kKeyA + 'f' - 'a'},
    {"AC05", kKeyA + 'g' - 'a'},
    {"AC06", kKeyA + 'h' - 'a'},
    {"AC07", kKeyA + 'j' - 'a'},
    {"AC08", kKeyA + 'k' - 'a'},
    {"AC09", kKeyA + 'l' - 'a'},
    {"AC10", kKeySemicolon},
    {"AC11", kKeyApostrophe},
    {"RTRN", kKeyReturn},
    {"LFSH", kKeyLeftShift},
    {"LSGT", kKeyPeakedBracket},
    {"AB01", kKeyA + 'z' - 'a'},
    {"AB02", kKeyA + 'x' - 'a'},
    {"AB03", kKeyA + 'c' - 'a'},
    {"AB04", kKeyA + 'v' - 'a'},
    {"AB05", kKeyA + 'b' - 'a'},
    {"AB06", kKeyA + 'n' - 'a'},
    {"AB07", kKeyA + 'm' - 'a'},
    {"AB08", kKeyComma},
    {"AB09", kKeyPeriod},
    {"AB10", kKeySlash},
    {"RTSH", kKeyRightShift},
    {"LCTL", kKeyLeftCommand},
    {"LALT", kKeyLeftOption},
    {"LWIN", kKeyLeftControl},
    {"LMTA", kKeyLeftControl},
    {"SPCE", kKeySpace},
    {"RALT", kKeyRightOption},
    {"LVL3", kKeyRightOption},
    {"RWIN", kKeyRightControl},
    {"RMTA", kKeyRightControl},
    {"COMP", kKeyApps},
    {"MENU", kKeyApps},
    {"RCTL", kKeyRightCommand},
    {"ESC", kKeyEscape},
    {"FK01", kKeyF1},
    {"FK02", kKeyF1 + 1},
    {"FK03", kKeyF1 + 2},
    {"FK04", kKeyF1 + 3},
    {"FK05", kKeyF1 + 4},
    {"FK06", kKeyF1 + 5},
    {"FK07", kKeyF1 + 6},
    {"FK08", kKeyF1 + 7},
    {"FK09", kKeyF1 + 8},
    {"FK10", kKeyF1 + 9},
    {"FK11", kKeyF1 + 10},
    {"FK12", kKeyF1 + 11},
    {"FK13", kKeyF1 + 12},
    {"FK14", kKeyF1 + 13},
    {"FK15", kKeyF1 + 14},
    {"FK16", kKeyF1 + 15},
    {"FK17", kKeyF1 + 16},
    {"FK18", kKeyF1 + 17},
    {"FK19", kKeyF1 + 18},
    {"SCLK", kKeyScroll},
    {"PAUS", kKeyPause},
    {"INS", kKeyInsert},
    {"HOME", kKeyHome},
    {"PGUP", kKeyPrior},
    {"DELE", kKeyDelete},
    {"END", kKeyEnd},
    {"PGDN", kKeyNext},
    {"UP", kKeyUp},
    {"LEFT", kKeyLeft},
    {"DOWN", kKeyDown},
    {"RGHT", kKeyRight},
    {"NMLK", kKeyNumlock},
    {"KPDV", kKeyNumpadDivide},
    {"KPMU", kKeyNumpadMultiply},
    {"KPSU", kKeyNumpadMinus},
    {"KPAD", kKeyNumpadPlus},
    {"KPEN", kKeyNumpadEnter},
    {"KPDL", kKeyNumpadComma},
    {"KPEQ", kKeyNumpadEqual},
    {"KP0", kKeyNumpad0},
    {"KP1", kKeyNumpad0 + 1},
    {"KP2", kKeyNumpad0 + 2},
    {"KP3", kKeyNumpad0 + 3},
    {"KP4", kKeyNumpad0 + 4},
    {"KP5", kKeyNumpad0 + 5},
    {"KP6", kKeyNumpad0 + 6},
    {"KP7", kKeyNumpad0 + 7},
    {"KP8", kKeyNumpad0 + 8},
    {"KP9", kKeyNumpad0 + 9},
});

struct TSymbolKey {
	xkb_keysym_t mSymbol;
	int mCode;
};

constexpr auto kSymbols = std::to_array<TSymbolKey>({
    {XKB_KEY_BackSpace, kKeyBack},
    {XKB_KEY_Tab, kKeyTab},
    {XKB_KEY_ISO_Left_Tab, kKeyTab},
    {XKB_KEY_Return, kKeyReturn},
    {XKB_KEY_Escape, kKeyEscape},
    {XKB_KEY_Delete, kKeyDelete},
    {XKB_KEY_Home, kKeyHome},
    {XKB_KEY_Left, kKeyLeft},
    {XKB_KEY_Up, kKeyUp},
    {XKB_KEY_Right, kKeyRight},
    {XKB_KEY_Down, kKeyDown},
    {XKB_KEY_Prior, kKeyPrior},
    {XKB_KEY_Next, kKeyNext},
    {XKB_KEY_End, kKeyEnd},
    {XKB_KEY_Insert, kKeyInsert},
    {XKB_KEY_Help, kKeyInsert},
    {XKB_KEY_Menu, kKeyApps},
    {XKB_KEY_Shift_L, kKeyLeftShift},
    {XKB_KEY_Shift_R, kKeyRightShift},
    {XKB_KEY_Control_L, kKeyLeftCommand},
    {XKB_KEY_Control_R, kKeyRightCommand},
    {XKB_KEY_Alt_L, kKeyLeftOption},
    {XKB_KEY_Meta_L, kKeyLeftOption},
    {XKB_KEY_Alt_R, kKeyRightOption},
    {XKB_KEY_ISO_Level3_Shift, kKeyRightOption},
    {XKB_KEY_Mode_switch, kKeyRightOption},
    {XKB_KEY_Super_L, kKeyLeftControl},
    {XKB_KEY_Super_R, kKeyRightControl},
    {XKB_KEY_Caps_Lock, kKeyCapital},
    {XKB_KEY_Scroll_Lock, kKeyScroll},
    {XKB_KEY_Num_Lock, kKeyNumlock},
    {XKB_KEY_Pause, kKeyPause},
    {XKB_KEY_XF86MyComputer, kKeyMyComputer},
    {XKB_KEY_XF86Mail, kKeyMyComputer + 1},
    {XKB_KEY_XF86Calculator, kKeyMyComputer + 2},
    {XKB_KEY_XF86AudioPlay, kKeyPlayPause},
    {XKB_KEY_XF86AudioPause, kKeyPlayPause},
    {XKB_KEY_Cancel, kKeyStop},
    {XKB_KEY_XF86AudioMute, kKeyMute},
    {XKB_KEY_XF86AudioNext, kKeyMute + 1},
    {XKB_KEY_XF86AudioPrev, kKeyMute + 2},
    {XKB_KEY_XF86AudioLowerVolume, kKeyMute + 3},
    {XKB_KEY_XF86AudioRaiseVolume, kKeyMute + 4},
    {XKB_KEY_XF86AudioStop, kKeyMute + 5},
    {XKB_KEY_XF86AudioMedia, kKeyMute + 6},
    {XKB_KEY_XF86HomePage, kKeyWebHome},
    {XKB_KEY_XF86Search, kKeyWebHome + 1},
    {XKB_KEY_XF86Favorites, kKeyWebHome + 2},
    {XKB_KEY_XF86Refresh, kKeyWebHome + 3},
    {XKB_KEY_XF86Reload, kKeyWebHome + 3},
    {XKB_KEY_XF86Stop, kKeyWebHome + 4},
    {XKB_KEY_XF86Forward, kKeyWebHome + 5},
    {XKB_KEY_XF86Back, kKeyWebBack},
});

constexpr auto kUnlockedPad = std::to_array<TSymbolKey>({
    {XKB_KEY_KP_Home, kKeyHome},
    {XKB_KEY_KP_Left, kKeyLeft},
    {XKB_KEY_KP_Up, kKeyUp},
    {XKB_KEY_KP_Right, kKeyRight},
    {XKB_KEY_KP_Down, kKeyDown},
    {XKB_KEY_KP_Prior, kKeyPrior},
    {XKB_KEY_KP_Next, kKeyNext},
    {XKB_KEY_KP_End, kKeyEnd},
    {XKB_KEY_KP_Insert, kKeyInsert},
    {XKB_KEY_KP_Delete, kKeyDelete},
});

int CodeIn(const auto& table, auto member, const auto& key) {
	const auto found =
	    std::find_if(table.begin(), table.end(), [&](const auto& entry) { return entry.*member == key; });
	return found == table.end() ? int{kNoKey} : found->mCode;
}

} // namespace

int X11KeyCodes::OfKeyName(std::string_view name) noexcept {
	return CodeIn(kNames, &TNamedKey::mName, name);
}

int X11KeyCodes::OfSymbol(xkb_keysym_t symbol) noexcept {
	if (symbol >= XKB_KEY_a && symbol <= XKB_KEY_z)
		return kKeyA + static_cast<int>(symbol - XKB_KEY_a);
	if (symbol >= XKB_KEY_0 && symbol <= XKB_KEY_9)
		return kKey0 + static_cast<int>(symbol - XKB_KEY_0);
	if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F19)
		return kKeyF1 + static_cast<int>(symbol - XKB_KEY_F1);
	return CodeIn(kSymbols, &TSymbolKey::mSymbol, symbol);
}

int X11KeyCodes::OfUnlockedPad(xkb_keysym_t symbol) noexcept {
	return CodeIn(kUnlockedPad, &TSymbolKey::mSymbol, symbol);
}
