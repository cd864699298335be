// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "platform/TWindowGlueClient.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// The kinds of windows as the toolkit numbers them.
enum TWindowKind : int {
	kTopLevelWindow = 0,
	kSecondTopLevelWindow = 1,
	kModalDialogWindow = 2,
	/// Without a parent: the editor, for TWindowGlue::Embed. With one: a small window inside the parent's area, for a
	/// text that is edited; it takes keys.
	kEmbeddedWindow = 4,
	/// Lies over everything. While it is shown and not passive, it has the pointer and the keys: a press anywhere on
	/// the screen comes to a window of this platform object.
	kPopupWindow = 5,
	/// Lies over everything, never has pointer or keys.
	kToolTipWindow = 6
};

/// A window id as the host or window system knows it; 0 is none.
using TNativeWindow = uint64_t;

/// Where a window's pixels lie: 32 bits each, bytes blue, green, red and one that is not read; rows from the top.
struct TGluePixels {
	const std::byte* mpPixels = nullptr;
	int mRowBytes = 0;
	TPointT<int> mSize;
};

/// A native window, made by TPlatform::CreateWindow for its one client. It exists hidden, 1 by 1 at 0,0, until it is
/// placed and shown.
///
/// GUI thread. All positions and sizes are pixels of the screen; positions are those of the client area, the window
/// system's decorations lie around it. After Close, or after the window was lost, every operation does nothing and
/// every question has a harmless answer. What the window system refuses is not an error: the client learns what came of
/// it.
class TWindowGlue : public TReferenceCountable {
public:
	virtual bool IsOpen() const = 0;
	/// Gives back everything the window holds: grabs, keys, drags, memory at the server. The client hears nothing more.
	virtual void Close() = 0;
	/// For those who must name the window to the system; 0 when it is closed.
	virtual TNativeWindow NativeHandle() const = 0;

	virtual bool IsVisible() const = 0;
	/// `activate` asks for the keys, `front` raises it over its siblings.
	virtual void Show(bool activate, bool front) = 0;
	virtual void Hide() = 0;
	/// Whether the window has the keys.
	virtual bool IsKey() const = 0;

	virtual TString Title() const = 0;
	virtual void SetTitle(const TString& title) = 0;

	virtual TPointT<int> Position() const = 0;
	virtual TPointT<int> ClientSize() const = 0;
	/// At least 1 by 1. The client hears of a change from inside the call.
	virtual void SetClientRect(TPointT<int> position, TPointT<int> size) = 0;
	virtual TPointT<int> MinimumSize() const = 0;
	/// 0,0 for none.
	virtual void SetMinimumSize(TPointT<int> size) = 0;
	virtual bool IsResizable() const = 0;
	virtual void SetResizable(bool resizable) = 0;
	virtual bool HasNativeDecorations() const = 0;
	/// Off at first but for top-level windows.
	virtual void SetHasNativeDecorations(bool decorations) = 0;

	virtual void Minimize() = 0;
	virtual void Maximize() = 0;
	virtual void Restore() = 0;
	virtual bool IsMinimized() const = 0;
	virtual bool IsMaximized() const = 0;

	/// Shows these parts (pixels of the client area) of the picture. They are read before the call returns. Does
	/// nothing while the window is not visible; what appears later is asked for by OnGlueExposed.
	virtual void Present(const TGluePixels& picture, std::span<const TRectT<int>> rects) = 0;

	// The editor in a host's window: kind kEmbeddedWindow without a parent

	/// Lies at the top left corner of the host's window from now on, and follows its place and visibility. Throws
	/// TReadableException when there is no such window.
	virtual void Embed(TNativeWindow host, bool wantsKeyboardInput) = 0;
	/// The host has given this size.
	virtual void Resize(TPointT<int> size) = 0;
	/// The host has refused the size: its top-level window is asked to become that much larger.
	virtual void ForceResize(TPointT<int> oldSize, TPointT<int> newSize) = 0;
	/// With it the window takes the keys, and takes them again with each press of a mouse button in it; without, the
	/// keys go back to where they were and stay the host's.
	virtual void SetWantsKeyboardInput(bool wants) = 0;
	/// A key that nobody here has used.
	virtual void PassKeyToHost(const TGlueKeyEvent& event) = 0;

	// What follows from the above

	void SetPosition(TPointT<int> position) { SetClientRect(position, ClientSize()); }

	void SetClientSize(TPointT<int> size) { SetClientRect(Position(), size); }

	TPointT<int> ScreenToClient(TPointT<int> point) const { return point - Position(); }

	TPointT<int> ClientToScreen(TPointT<int> point) const { return point + Position(); }

	/// In the work area of the screen that it is on, or of its parent's.
	virtual void CenterOnScreen() = 0;
	/// Over the parent, inside the work area; on the screen without a parent.
	virtual void CenterInParent() = 0;
};
