// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"

#include <cstdint>
#include <span>

enum class TMouseButton : uint8_t { kLeft, kRight, kMiddle };

struct TGlueMouseEvent {
	enum class TType : uint8_t { kMove, kPress, kRelease, kWheel };

	TType mType = TType::kMove;
	/// Pixels from the corner of the client area. A pointer that has left all windows moves to -1,-1 once.
	TPointT<int> mPosition{};
	TMouseButton mButton = TMouseButton::kLeft; // of a press or release
	/// Of a press and its release: 1, 2, 3 and so on for presses of one button in quick succession at one place.
	int mClickCount = 1;
	/// Whole notches: x above 0 to the left, y above 0 upward.
	TPointT<int> mWheel{};
	int mModifiers = 0; // TKeyModifier, also while another window has the keys
};

/// A press or release of one key. What a dead key, a compose sequence or an input method takes comes as text instead.
struct TGlueKeyEvent {
	int mCode = -1;     // TKeyCode
	int mModifiers = 0; // TKeyModifier, behind the event
	bool mIsRelease = false;
	bool mIsRepeat = false; // the platform's own repeat of a held key
	/// The one UTF-16 unit that this press writes, by layout and locks as they were at the press; 0 for none. A held
	/// Command, Option that chooses no character, or Control writes nothing.
	char16_t mCharacter = 0;
	uint64_t mNative = 0; // for TWindowGlue::PassKeyToHost
};

/// What a native window tells its owner. GUI thread, from inside TPlatform::ProcessEvents or from inside an operation
/// of the window. Any of them may close the window. Positions and sizes are pixels of the screen, not logical ones.
class TWindowGlueClient {
public:
	virtual void OnGlueMouse(const TGlueMouseEvent&) {}

	virtual void OnGlueKey(const TGlueKeyEvent&) {}

	/// From dead keys, compose sequences or an input method.
	virtual void OnGlueText(const TString&) {}

	/// Whether a text is being edited that takes characters, and where its caret stands in the client area. Only then
	/// are dead keys composed and an input method asked.
	virtual bool IsGlueEditingText(TRectT<int>& /*caret*/) { return false; }

	/// The size of the client area, by whoever changed it.
	virtual void OnGlueResized(TPointT<int>) {}

	/// The client area's corner on the screen.
	virtual void OnGlueMoved(TPointT<int>) {}

	/// Whether there is anything to be seen: also false while a host hides what the window is embedded in.
	virtual void OnGlueVisibilityChanged(bool) {}

	/// The window has the keys now, or not any more; with who had them or has them next, if that is a window of the
	/// same platform object, else null.
	virtual void OnGlueBecameKey(TWindowGlueClient* /*previous*/) {}

	virtual void OnGlueLostKey(TWindowGlueClient* /*next*/) {}

	/// The window manager's close button.
	virtual void OnGlueCloseAsked() {}

	/// These parts of the client area have lost their pixels and want to be presented again.
	virtual void OnGlueExposed(std::span<const TRectT<int>>) {}

	/// The native window has gone, by somebody else's doing or with the connection. The glue is closed already.
	virtual void OnGlueLost(const TString& /*reason*/) {}

	/// Files dragged from another program; true accepts them at this place.
	virtual bool OnGlueFilesDragged(TPointT<int>, const TList<TString>& /*paths*/) { return false; }

	virtual void OnGlueFilesDragLeft() {}

	/// Only where the last answer to a drag was true.
	virtual void OnGlueFilesDropped(TPointT<int>, const TList<TString>& /*paths*/) {}

protected:
	~TWindowGlueClient() = default;
};
