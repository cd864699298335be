// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Keyboard.h"

#include "platform/linux/x11/X11KeyCodes.h"
#include "platform/linux/x11/XcbXkb.h"

#include <xkbcommon/xkbcommon-x11.h>

namespace {

constexpr uint32_t kShiftBit = XCB_MOD_MASK_SHIFT;
constexpr uint32_t kControlBit = XCB_MOD_MASK_CONTROL;
constexpr uint32_t kAltBit = XCB_MOD_MASK_1;
constexpr uint32_t kLogoBit = XCB_MOD_MASK_4;
constexpr uint32_t kThirdLevelBit = XCB_MOD_MASK_5;
constexpr uint32_t kCommandBits = kControlBit | kAltBit | kLogoBit; // with them a key writes nothing

bool IsRelease(const xcb_key_press_event_t& event) {
	return (event.response_type & 0x7F) == XCB_KEY_RELEASE;
}

uint32_t BitOf(int code) {
	switch (code) {
	case kKeyLeftShift:
	case kKeyRightShift:
		return kShiftBit;
	case kKeyLeftCommand:
	case kKeyRightCommand:
		return kControlBit;
	case kKeyLeftOption:
		return kAltBit;
	case kKeyRightOption:
		return kAltBit | kThirdLevelBit;
	case kKeyLeftControl:
	case kKeyRightControl:
		return kLogoBit;
	default:
		return 0;
	}
}

/// Makes the modifier keys agree with the modifiers: a key whose press was not heard counts as the left one, and one
/// whose release was not heard as up.
void AdjustModifierKeys(TKeyFlags& held, uint32_t state) {
	struct TPair {
		uint32_t mBits;
		std::size_t mLeft;
		std::size_t mRight;
	};
	constexpr std::array<TPair, 4> kPairs{{
	    {kShiftBit, kKeyLeftShift, kKeyRightShift},
	    {kControlBit, kKeyLeftCommand, kKeyRightCommand},
	    {kAltBit | kThirdLevelBit, kKeyLeftOption, kKeyRightOption},
	    {kLogoBit, kKeyLeftControl, kKeyRightControl},
	}};
	for (const auto& [bits, left, right] : kPairs) {
		if ((state & bits) == 0)
			held.reset(left).reset(right);
		else if (!held[left] && !held[right])
			held.set((state & bits) == kThirdLevelBit ? right : left);
	}
}

bool IsPad(int code) {
	return code >= kKeyNumpad0 && code <= kKeyNumpadComma;
}

/// 0 for control characters, which keys such as Return give.
char32_t Printable(char32_t character) {
	return character < 0x20 || (character >= 0x7F && character < 0xA0) ? char32_t{0} : character;
}

char16_t OneUnit(char32_t character) {
	return character > 0xFFFF ? char16_t{0} : static_cast<char16_t>(character);
}

} // namespace

void TX11Keyboard::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	mpContext.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
	const TBrokenPipeGuard guard;
	uint8_t firstEvent = 0;
	if (xkb_x11_setup_xkb_extension(
	        connection.Xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
	        XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr)) {
		mFirstEvent = firstEvent;
		mDevice = xkb_x11_get_core_keyboard_device_id(connection.Xcb());
		SelectEvents();
	}
	LoadLayout();
}

void TX11Keyboard::Disconnect() {
	mQuestion.Drop();
	mpConnection = nullptr;
	mpState.reset();
	mpKeymap.reset();
	mComposer = {};
	mpContext.reset();
	mFirstEvent = -1;
	mDevice = -1;
	mState = 0;
	mGroup = 0;
	mDown.reset();
	mSwallowed.reset();
	mHasNewLayout = mMustLoadLayout = false;
}

void TX11Keyboard::SelectEvents() {
	constexpr uint16_t kMapParts = 0xFF;
	constexpr uint16_t kEvents =
	    XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
	xcb_xkb_select_events_details_t details{};
	details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
	details.affectState = details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_STATE | XCB_XKB_STATE_PART_GROUP_STATE;
	xcb_xkb_select_events_aux(
	    mpConnection->Xcb(), static_cast<xcb_xkb_device_spec_t>(mDevice), kEvents, 0, 0, kMapParts, kMapParts,
	    &details);
	const uint32_t kDetectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
	xcb_discard_reply(
	    mpConnection->Xcb(),
	    xcb_xkb_per_client_flags(mpConnection->Xcb(), XCB_XKB_ID_USE_CORE_KBD, kDetectable, kDetectable, 0, 0, 0)
	        .sequence);
}

/// Without the extension, or when the server's layout cannot be read, the one that the environment names.
void TX11Keyboard::LoadLayout() {
	mMustLoadLayout = false;
	const TBrokenPipeGuard guard;
	if (mDevice >= 0)
		mpKeymap.reset(
		    xkb_x11_keymap_new_from_device(mpContext.get(), mpConnection->Xcb(), mDevice, XKB_KEYMAP_COMPILE_NO_FLAGS));
	if (mDevice < 0 || !mpKeymap)
		mpKeymap.reset(xkb_keymap_new_from_names(mpContext.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
	mpState.reset(mpKeymap ? xkb_state_new(mpKeymap.get()) : nullptr);
	mCodes.fill(kNoKey);
	mKeycodes.fill(XKB_KEYCODE_INVALID);
	if (!mpState)
		return;
	for (xkb_keycode_t keycode = xkb_keymap_min_keycode(mpKeymap.get()); keycode < kKeycodes; ++keycode) {
		const char* name = xkb_keymap_key_get_name(mpKeymap.get(), keycode);
		int code = name ? X11KeyCodes::OfKeyName(name) : int{kNoKey};
		if (code == kNoKey)
			code = X11KeyCodes::OfSymbol(SymbolAt(keycode, 0));
		mCodes[keycode] = code;
		if (code >= 0 && mKeycodes[static_cast<std::size_t>(code)] == XKB_KEYCODE_INVALID)
			mKeycodes[static_cast<std::size_t>(code)] = keycode;
	}
}

xkb_keysym_t TX11Keyboard::SymbolAt(xkb_keycode_t keycode, xkb_layout_index_t layout) const {
	const xkb_keysym_t* symbols = nullptr;
	const int count = xkb_keymap_key_get_syms_by_level(mpKeymap.get(), keycode, layout, 0, &symbols);
	return count == 1 ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

int TX11Keyboard::CodeOf(xkb_keycode_t keycode, xkb_keysym_t symbol) const {
	const int code = mCodes[keycode];
	const int unlocked = IsPad(code) ? X11KeyCodes::OfUnlockedPad(symbol) : int{kNoKey};
	return unlocked == kNoKey ? code : unlocked;
}

TX11Keyboard::TStroke TX11Keyboard::Translate(const xcb_key_press_event_t& event, bool composes) {
	if (mMustLoadLayout)
		LoadLayout();
	const xkb_keycode_t keycode = event.detail;
	mLastSequence = FullSequence(event);
	TStroke stroke;
	stroke.mKey.mNative = event.detail | uint64_t{event.state} << 8 | uint64_t{event.time} << 32;
	if (IsRelease(event)) {
		NoteState(event.state);
		return Release(keycode, std::move(stroke));
	}
	NoteState(event.state | BitOf(mCodes[keycode]));

	stroke.mKey.mIsRepeat = mDown.test(keycode);
	if (stroke.mKey.mIsRepeat && mSwallowed.test(keycode))
		return {};
	mDown.set(keycode);
	mSwallowed.reset(keycode);
	xkb_keysym_t symbol = XKB_KEY_NoSymbol;
	char32_t character = 0;
	if (mpState) {
		xkb_state_update_mask(mpState.get(), event.state & 0xFF, 0, 0, 0, 0, (event.state >> 13) & 3u);
		symbol = xkb_state_key_get_one_sym(mpState.get(), keycode);
		character = Printable(xkb_state_key_get_utf32(mpState.get(), keycode));
	}
	const int code = CodeOf(keycode, symbol);
	mPressedAs[keycode] = code;
	stroke.mKey.mCode = code == kNoKey ? int{kCharacterKey} : code;
	stroke.mKey.mModifiers = Modifiers();
	const bool writes = (event.state & kCommandBits) == 0;
	if (composes && writes && !stroke.mKey.mIsRepeat && Compose(keycode, symbol, stroke))
		return stroke;
	stroke.mKey.mCharacter = writes ? OneUnit(character) : char16_t{0};
	if (composes && writes && character > 0xFFFF) {
		const char32_t text[]{character, 0};
		stroke.mText = TString(text);
		mSwallowed.set(keycode);
		return stroke;
	}
	stroke.mIsKey = code != kNoKey || stroke.mKey.mCharacter != 0;
	return stroke;
}

TX11Keyboard::TStroke TX11Keyboard::Release(xkb_keycode_t keycode, TStroke stroke) {
	const int code = mDown.test(keycode) ? mPressedAs[keycode] : mCodes[keycode];
	const bool isOurs = !mSwallowed.test(keycode) && code != kNoKey;
	mDown.reset(keycode);
	mSwallowed.reset(keycode);
	mState &= ~BitOf(code);
	for (std::size_t other = 0; BitOf(code) != 0 && other < kKeycodes; ++other)
		if (mDown.test(other))
			mState |= BitOf(mPressedAs[other]); // the same modifier's other key
	stroke.mIsKey = isOurs;
	stroke.mKey.mCode = code;
	stroke.mKey.mIsRelease = true;
	stroke.mKey.mModifiers = Modifiers();
	return stroke;
}

/// Whether a sequence has taken the key.
bool TX11Keyboard::Compose(xkb_keycode_t keycode, xkb_keysym_t symbol, TStroke& stroke) {
	const TComposer::TResult result = mComposer.Feed(mpContext.get(), symbol);
	if (result == TComposer::TResult::kPlain)
		return false;
	mSwallowed.set(keycode);
	if (result == TComposer::TResult::kComposed)
		stroke.mText = mComposer.Composed();
	return true;
}

bool TX11Keyboard::HandleEvent(const xcb_generic_event_t& event) {
	if (mFirstEvent < 0 || (event.response_type & 0x7F) != mFirstEvent)
		return false;
	const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
	switch (state.xkbType) {
	case XCB_XKB_NEW_KEYBOARD_NOTIFY:
	case XCB_XKB_MAP_NOTIFY:
		mMustLoadLayout = mHasNewLayout = true;
		break;
	case XCB_XKB_STATE_NOTIFY:
		NoteState(state.mods);
		mHasNewLayout = mHasNewLayout || mGroup != state.group;
		mGroup = state.group;
		break;
	default:
		break;
	}
	return true;
}

bool TX11Keyboard::TakeLayoutChange() {
	if (mMustLoadLayout)
		LoadLayout();
	return std::exchange(mHasNewLayout, false);
}

void TX11Keyboard::SetDown(const uint8_t* bits, std::size_t bytes, std::size_t firstKeycode) {
	for (std::size_t i = 0; i < bytes * 8; ++i) {
		const bool isDown = ((bits[i / 8] >> (i % 8)) & 1) != 0;
		const std::size_t keycode = firstKeycode + i;
		if (isDown && !mDown.test(keycode))
			mPressedAs[keycode] = mCodes[keycode];
		mDown.set(keycode, isDown);
	}
	mSwallowed &= mDown;
}

void TX11Keyboard::OnKeymapNotify(const xcb_keymap_notify_event_t& event) {
	SetDown(event.keys, sizeof event.keys, 8);
}

void TX11Keyboard::Refresh() {
	if (const auto answer = mQuestion.TakeAnswer(mLastSequence))
		SetDown(answer->keys, sizeof answer->keys, 0);
	if (mDown.any() && mQuestion.IsDue())
		mQuestion.Ask(mpConnection->Xcb(), xcb_query_keymap(mpConnection->Xcb()).sequence);
}

TKeyFlags TX11Keyboard::HeldKeys() const {
	TKeyFlags held;
	for (std::size_t keycode = 0; mDown.any() && keycode < kKeycodes; ++keycode)
		if (mDown.test(keycode) && !mSwallowed.test(keycode) && mPressedAs[keycode] > 0)
			held.set(static_cast<std::size_t>(mPressedAs[keycode]));
	AdjustModifierKeys(held, mState);
	return held;
}

char16_t TX11Keyboard::CharacterOf(int code, bool withCommand) const {
	if (!mpKeymap || code <= 0 || code >= kKeyCodeCount)
		return 0;
	const xkb_keycode_t keycode = mKeycodes[static_cast<std::size_t>(code)];
	if (keycode == XKB_KEYCODE_INVALID)
		return 0;
	const char16_t plain = OneUnit(Printable(xkb_keysym_to_utf32(SymbolAt(keycode, mGroup))));
	if (!withCommand || plain < 0x80)
		return plain;
	for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(mpKeymap.get(), keycode); ++layout) {
		const char32_t latin = Printable(xkb_keysym_to_utf32(SymbolAt(keycode, layout)));
		if (latin != 0 && latin < 0x80)
			return static_cast<char16_t>(latin);
	}
	const bool isLetter = code >= kKeyA && code < kKeyA + 26;
	return isLetter ? static_cast<char16_t>(u'a' + code - kKeyA) : plain;
}

char16_t TX11Keyboard::TextCharacterOf(int code, int modifiers) const {
	if (!mpState || code <= 0 || code >= kKeyCodeCount || (modifiers & (kCommandModifier | kControlModifier)) != 0)
		return 0;
	const xkb_keycode_t keycode = mKeycodes[static_cast<std::size_t>(code)];
	const bool chooses = (mState & kThirdLevelBit) != 0;
	if (keycode == XKB_KEYCODE_INVALID || ((modifiers & kOptionModifier) != 0 && !chooses))
		return 0;
	const uint32_t state = (mState & ~(kShiftBit | kCommandBits)) | ((modifiers & kShiftModifier) != 0 ? kShiftBit : 0);
	xkb_state_update_mask(mpState.get(), state, 0, 0, 0, 0, mGroup);
	return OneUnit(Printable(xkb_state_key_get_utf32(mpState.get(), keycode)));
}

bool TX11Keyboard::IsRightToLeft() const {
	for (int code = kKeyA; code < kKeyA + 26; ++code) {
		const char16_t character = CharacterOf(code, false);
		if (character >= 0x590 && character < 0x900)
			return true;
	}
	return false;
}
