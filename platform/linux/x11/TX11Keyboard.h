// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TKeyboardImpl.h"
#include "platform/TWindowGlueClient.h"
#include "platform/linux/x11/TComposer.h"
#include "platform/linux/x11/TX11Connection.h"
#include "platform/linux/x11/TX11Question.h"

#include <array>
#include <bitset>
#include <memory>
#include <xkbcommon/xkbcommon.h>

/// Layout, modifiers and held keys of the server's keyboard. It learns of them from events alone, so that asking costs
/// no round trip; while keys seem to be held it compares with the server in the background, because releases that go
/// to other programs are not heard. GUI thread.
class TX11Keyboard final : public TKeyboardImpl {
public:
	TX11Keyboard() = default;

	void Connect(TX11Connection& connection);
	void Disconnect();

	/// What an event means for the window that gets it.
	struct TStroke {
		bool mIsKey = false; // else there may be a text
		TGlueKeyEvent mKey;
		TString mText;
	};

	/// `composes`: dead keys and compose sequences are put together.
	TStroke Translate(const xcb_key_press_event_t& event, bool composes);
	/// A new place for texts: a sequence that was begun is forgotten.
	void ForgetSequence() { mComposer.Reset(); }

	/// True for an event of the keyboard extension.
	bool HandleEvent(const xcb_generic_event_t& event);
	void OnKeymapNotify(const xcb_keymap_notify_event_t& event);
	/// From an event that carries the modifiers: the core's bits.
	void NoteState(uint32_t state) { mState = state & 0xFF; }

	/// Compares with the server; once in each tick, when all events have been handled.
	void Refresh();
	/// Whether the layout has changed since the last call. Loads the new one.
	bool TakeLayoutChange();

	TKeyFlags HeldKeys() const override;
	char16_t CharacterOf(int code, bool withCommand) const override;
	char16_t TextCharacterOf(int code, int modifiers) const override;
	bool IsRightToLeft() const override;

private:
	static constexpr std::size_t kKeycodes = 256;
	using TKeycodes = std::bitset<kKeycodes>;

	struct TRelease {
		void operator()(xkb_context* context) const { xkb_context_unref(context); }

		void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }

		void operator()(xkb_state* state) const { xkb_state_unref(state); }
	};

	void SelectEvents();
	void LoadLayout();
	int CodeOf(xkb_keycode_t keycode, xkb_keysym_t symbol) const;
	xkb_keysym_t SymbolAt(xkb_keycode_t keycode, xkb_layout_index_t layout) const;
	TStroke Release(xkb_keycode_t keycode, TStroke stroke);
	bool Compose(xkb_keycode_t keycode, xkb_keysym_t symbol, TStroke& stroke);
	void SetDown(const uint8_t* bits, std::size_t bytes, std::size_t firstKeycode);

	TX11Connection* mpConnection = nullptr;
	std::unique_ptr<xkb_context, TRelease> mpContext;
	std::unique_ptr<xkb_keymap, TRelease> mpKeymap;
	std::unique_ptr<xkb_state, TRelease> mpState; // set to what is asked, has no state of its own
	TComposer mComposer;
	int32_t mDevice = -1;
	int mFirstEvent = -1;
	bool mHasNewLayout = false;
	bool mMustLoadLayout = false;
	xkb_layout_index_t mGroup = 0;
	uint32_t mState = 0;
	std::array<int, kKeycodes> mCodes{};
	std::array<int, kKeycodes> mPressedAs{}; // of the keys that are down
	std::array<xkb_keycode_t, kKeyCodeCount> mKeycodes{};
	TKeycodes mDown;
	TKeycodes mSwallowed;
	uint32_t mLastSequence = 0; // of the last key's event
	TX11Question<xcb_query_keymap_reply_t> mQuestion;
};
