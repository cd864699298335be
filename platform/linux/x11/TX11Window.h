// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "platform/TWindowGlue.h"
#include "platform/linux/x11/TX11Host.h"

#include <optional>
#include <vector>

class TX11Platform;

/// A window on an X server. Top-level windows and dialogs are the window manager's, where there is one; pop-ups and
/// tool tips are not; an editor's window is made a child of the host's window, and a window inside an editor its child.
class TX11Window final : public TWindowGlue {
public:
	/// The connection must be there; the platform closes all windows before it goes.
	TX11Window(TX11Platform& platform, TWindowGlueClient& client, int kind, TX11Window* parent);
	~TX11Window() override;

	xcb_window_t Id() const { return mId; }

	int Kind() const { return mKind; }

	TX11Window* Parent() const { return mpParent; }

	TWindowGlueClient& Client() const { return *mpClient; }

	/// The window that this one belongs to in the end.
	TX11Window& Root();
	/// What the window manager knows of this window's family: the host's window around an editor, else the window
	/// itself.
	xcb_window_t TopLevel() const;

	// What the platform passes on

	/// The native window has gone without having been asked.
	void Lose(const TString& reason);
	/// True for an event of this window's own.
	bool HandleEvent(const xcb_generic_event_t& event);
	/// True for one of the windows around it, which are the host's or the window manager's.
	bool HandleOutsideEvent(const xcb_generic_event_t& event);

	/// When all events that had come have been handled.
	void Settle();
	/// Before a press is delivered to it.
	void OnPress();

	/// Whether keys that come to it are the client's, not the host's.
	bool TakesKeys() const { return !mpHost || mWantsKeyboardInput; }

	/// An embedder has said that its keys are ours.
	bool HasEmbedderFocus() const { return mHasEmbedderFocus; }

	bool HostHolds(xcb_window_t window) const { return mpHost && mpHost->Holds(window); }

	// The glue

	bool IsOpen() const override { return mpPlatform != nullptr; }

	void Close() override;

	TNativeWindow NativeHandle() const override { return IsOpen() ? mId : 0; }

	bool IsVisible() const override;
	void Show(bool activate, bool front) override;
	void Hide() override;
	bool IsKey() const override;

	TString Title() const override { return mTitle; }

	void SetTitle(const TString& title) override;

	TPointT<int> Position() const override { return mPosition; }

	TPointT<int> ClientSize() const override { return mSize; }

	void SetClientRect(TPointT<int> position, TPointT<int> size) override;

	TPointT<int> MinimumSize() const override { return mMinimumSize; }

	void SetMinimumSize(TPointT<int> size) override;

	bool IsResizable() const override { return mIsResizable; }

	void SetResizable(bool resizable) override;

	bool HasNativeDecorations() const override { return mHasDecorations; }

	void SetHasNativeDecorations(bool decorations) override;
	void Minimize() override;
	void Maximize() override;
	void Restore() override;

	bool IsMinimized() const override { return mIsMinimized; }

	bool IsMaximized() const override { return mIsMaximized; }

	void Present(const TGluePixels& picture, std::span<const TRectT<int>> rects) override;

	void Embed(TNativeWindow host, bool wantsKeyboardInput) override;
	void Resize(TPointT<int> size) override;
	void ForceResize(TPointT<int> oldSize, TPointT<int> newSize) override;
	void SetWantsKeyboardInput(bool wants) override;
	void PassKeyToHost(const TGlueKeyEvent& event) override;
	void SendKeyToHost(const xcb_key_press_event_t& event);

	void CenterOnScreen() override;
	void CenterInParent() override;

private:
	const TX11Connection& Connection() const;
	xcb_connection_t* Xcb() const { return Connection().Xcb(); }

	/// Under a window manager's rule, where there is one.
	bool IsManaged() const { return mKind <= kModalDialogWindow; }

	bool IsInsideParent() const { return mKind == kEmbeddedWindow && mpParent; }

	bool IsEditor() const { return mKind == kEmbeddedWindow && !mpParent; }

	void Create();
	void Describe();
	void WriteTransience();
	void WriteSizeHints();
	void WriteDecorations();
	void AskForState(bool set, TX11Atom first, TX11Atom second);
	void ReadState();
	bool HasWindowManager() const;
	void Map(bool activate, bool front);
	void Unmap();
	void Leave();
	void Forget();
	void UpdateVisibility();
	void SetPlace(TPointT<int> position);
	void SetSize(TPointT<int> size);
	void FindPlace();
	void OnConfigure(const xcb_configure_notify_event_t& event);
	void OnExpose(const xcb_expose_event_t& event);
	void OnUnmap(const xcb_unmap_notify_event_t& event);
	void OnReparent(const xcb_reparent_notify_event_t& event);
	void OnMessage(const xcb_client_message_event_t& event);
	void OnProtocol(const xcb_client_message_event_t& event);
	void OnEmbedderMessage(const xcb_client_message_event_t& event);
	void TakeFocus();
	void GiveFocusBack();

	TX11Platform* mpPlatform; // null when closed
	TWindowGlueClient* mpClient;
	TX11Window* mpParent;
	const int mKind;
	xcb_window_t mId = 0;
	TOwnerPtr<TX11Host> mpHost;
	xcb_window_t mFrame = 0; // of the window manager, around this window
	bool mIsShown = false;
	bool mIsUnmapped = false; // by somebody else although it is shown
	bool mIsMinimized = false;
	bool mIsMaximized = false;
	bool mIsResizable = false;
	bool mHasDecorations;
	bool mWasVisible = false;
	bool mWantsKeyboardInput = false;
	bool mHasEmbedderFocus = false;
	bool mMustFindPlace = false;
	TString mTitle;
	TPointT<int> mPosition;
	TPointT<int> mSize{1, 1};
	TPointT<int> mMinimumSize;
	std::optional<TRectT<int>> mRestoredRect; // of a window maximized without a window manager
	uint32_t mConfigured = 0;                 // the last request for another size
	uint32_t mMapped = 0;                     // the last request to map
	xcb_window_t mFocusBefore = 0;            // who had the focus that this window has taken
	std::vector<TRectT<int>> mExposed;
};
