// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TPlatform.h"
#include "platform/headless/THeadlessWindow.h"

#include <deque>
#include <functional>
#include <map>
#include <vector>

/// A system in memory: windows that nobody sees, a pointer and a keyboard that a script moves, a clipboard, screens,
/// and file dialogs whose answers are known beforehand.
///
/// What the script does reaches the windows at once, not with the next ProcessEvents; the toolkit queues it anyway.
/// Keys and texts go to the topmost pop-up, else to the modal dialog, else to a window inside an editor, else to the
/// editor or top-level window shown last. The pointer's events go to the window under it, while a button is held to the
/// window of the press; beyond all windows a press belongs to the root of the topmost pop-up, if there is one. Of the
/// keys, Control is Command, Alt is Option and the logo key is Control.
class THeadlessPlatform final : public TPlatform {
public:
	/// One screen of 2400 by 1500 at 96 DPI.
	THeadlessPlatform();
	~THeadlessPlatform() override;

	// The script's side

	/// In pixels. Warns the client.
	void SetScreens(const TList<TScreen>& screens);
	/// Where a host shows its editors; moves those that are embedded.
	void MoveHost(TPointT<int> corner);
	void ShowHost(bool visible);

	TPointT<int> HostCorner() const { return mHostCorner; }

	bool IsHostVisible() const { return mIsHostVisible; }

	void MovePointer(TPointT<int> position);
	void Press(TMouseButton button, int clickCount = 1);
	void Release(TMouseButton button);
	/// Whole notches: x above 0 to the left, y above 0 upward.
	void Wheel(TPointT<int> notches);

	/// A key that is down already gives the platform's repeat.
	void KeyDown(int code);
	void KeyUp(int code);
	/// Up without an event.
	void LoseKey(int code);
	/// Each character as a US keyboard gives it, else as an input method does while a text is being edited.
	void Type(const TString& text);

	/// Another program's content.
	void PutClipboard(const TString& text);
	void SetActive(bool active);

	/// The next dialog's answers, in order; a dialog without one is cancelled.
	void AnswerDialog(const TString& path);
	void CancelDialog();
	/// No dialogs of the system from now on.
	void SetHasDialogs(bool has) { mHasDialogs = has; }

	/// The dialogs so far.
	const std::vector<TFileDialogSettings>& Dialogs() const { return mDialogs; }

	/// What goes on while somebody waits for a tick; false when nothing will come any more, as without such a function.
	void SetOnWait(std::function<bool()> onWait) { mOnWait = std::move(onWait); }

	/// Keys that were passed to the host.
	const std::vector<TGlueKeyEvent>& HostKeys() const { return mHostKeys; }

	/// What the toolkit has defined for a cursor; empty for nothing. Valid until it defines or forgets one.
	TCursorImage CursorImage(int id) const { return mCursor.Image(id); }

	/// All open windows in the order of their making.
	const std::vector<THeadlessWindow*>& Windows() const { return mWindows; }

	/// Who has the keys; null without a window.
	THeadlessWindow* KeyWindow() const { return mpKeyWindow; }

	// The toolkit's side

	void SetClient(TPlatformClient* client) override { mpClient = client; }

	TPtr<TWindowGlue> CreateWindow(TWindowGlueClient& client, int kind, TWindowGlue* parent) override;
	TWindowGlueClient* WindowUnderPointer() const override;
	void ProcessEvents() override;

	int EventDescriptor() const override { return -1; }

	bool WaitForTick() override;

	TCursorImpl& Cursor() override { return mCursor; }

	TKeyboardImpl& Keyboard() override { return mKeyboard; }

	TClipboardImpl& Clipboard() override { return mClipboard; }

	const TScreens& Screens() const override { return mScreens; }

	/// Knows no fonts, until others are given.
	TFontLookup& Fonts() override { return *mpFonts; }

	void SetFonts(TFontLookup& fonts) { mpFonts = &fonts; }

	TOwnerPtr<TFileDialogImpl> StartFileDialog(const TFileDialogSettings& settings, TWindowGlue* parent) override;

private:
	friend class THeadlessWindow;

	class TMemoryCursor final : public TCursorImpl {
	public:
		explicit TMemoryCursor(THeadlessPlatform& platform) : mPlatform(platform) {}

		bool IsDefined(int id) const override { return mPictures.contains(id); }

		void Define(int id, const TCursorImage& image) override;

		void ForgetAll() override { mPictures.clear(); }

		TCursorImage Image(int id) const;

		int Current() const override { return mCurrent; }

		void SetCurrent(int id) override { mCurrent = id; }

		TPointT<int> MousePosition() const override { return mPlatform.mPointer; }

		void SetMousePosition(TPointT<int> position) override;
		bool IsButtonDown(TMouseButton button) const override;

	private:
		struct TPicture {
			TPointT<int> mSize;
			TPointT<int> mHotSpot;
			std::vector<uint32_t> mPixels;
		};

		THeadlessPlatform& mPlatform;
		std::map<int, TPicture> mPictures;
		int mCurrent = 0;
	};

	class TUsKeyboard final : public TKeyboardImpl {
	public:
		TKeyFlags HeldKeys() const override { return mHeld; }

		char16_t CharacterOf(int code, bool withCommand) const override;
		char16_t TextCharacterOf(int code, int modifiers) const override;

		bool IsRightToLeft() const override { return false; }

		TKeyFlags mHeld;
	};

	class TMemoryClipboard final : public TClipboardImpl {
	public:
		bool HasText() const override { return !mText.IsEmpty(); }

		TString Text() override { return mText; }

		void SetText(const TString& text) override { mText = text; }

		TString PrimaryText() override { return mPrimaryText; }

		void SetPrimaryText(const TString& text) override { mPrimaryText = text; }

	private:
		TString mText;
		TString mPrimaryText;
	};

	class TMemoryScreens final : public TScreens {
	public:
		const TList<TScreen>& All() const override { return mScreens; }

		TList<TScreen> mScreens;
	};

	class TNoFonts final : public TFontLookup {
	public:
		TFontFile Find(const TString&, const TString&, bool, bool) override { return {}; }
	};

	void OnWindowShown(THeadlessWindow& window, bool front);
	void OnWindowClosed(THeadlessWindow& window);
	void UpdateKeyWindow();
	THeadlessWindow* Topmost(int kind, bool withParent) const;
	THeadlessWindow* WantedKeyWindow() const;
	THeadlessWindow* WindowAt(TPointT<int> point) const;
	THeadlessWindow* PointerTarget() const;
	void SendMouse(THeadlessWindow* target, TGlueMouseEvent event);
	void SendKey(int code, bool release, bool repeat);

	TPlatformClient* mpClient = nullptr;
	TMemoryCursor mCursor{*this};
	TUsKeyboard mKeyboard;
	TMemoryClipboard mClipboard;
	TMemoryScreens mScreens;
	TNoFonts mNoFonts;
	TFontLookup* mpFonts = &mNoFonts;
	std::vector<THeadlessWindow*> mWindows;
	std::vector<THeadlessWindow*> mStack; // the last lies on top of its layer
	THeadlessWindow* mpKeyWindow = nullptr;
	THeadlessWindow* mpPressWindow = nullptr; // has the pointer while a button is held
	THeadlessWindow* mpPointerWindow = nullptr;
	TPointT<int> mPointer;
	bool mHasWarped = false;
	int mHeldButtons = 0; // a bit for each
	TPointT<int> mHostCorner;
	bool mIsHostVisible = true;
	bool mIsActive = true;
	bool mHasDialogs = true;
	TNativeWindow mLastHandle = 0;
	std::deque<TString> mAnswers; // empty: cancelled
	std::vector<TFileDialogSettings> mDialogs;
	std::vector<TGlueKeyEvent> mHostKeys;
	std::function<bool()> mOnWait;
};
