// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/dialogs/GuiServices.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TToolTipPresenter.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TEditorFrame.h"
#include "platform/headless/THeadlessClock.h"
#include "tests/support/TGraphicsFixture.h"

#include <chrono>
#include <string>
#include <utility>

/// A test with windows in memory. The clock stands still but for Wait; every tick is a frame.
class TGuiFixture : public TGraphicsFixture {
protected:
	void SetUp() override {
		TGraphicsFixture::SetUp();
		TBaseViewsPrefs::CreateService();
		InitializeGui();
		TToolTipPresenter::SetInstance(nullptr); // there is no skin to draw tips
		Preferences().mApplyFrameRate.Set(false);
	}

	void TearDown() override {
		if (mpEditor)
			mpEditor->Close();
		mpEditor = nullptr;
		FinalizeGui();
		TBaseViewsPrefs::Destroy();
		TGraphicsFixture::TearDown();
	}

	/// Opens a window at a place on the screen, with a main frame of its size.
	static TPtr<TViewWindow>
	OpenWindow(TWindow* parent, int kind, const TRectT<int>& rect, TPtr<TMainFrameView> frame = nullptr) {
		const auto window = MakePtr<TViewWindow>(parent, kind);
		window->SetMainFrame(frame ? frame : MakePtr<TMainFrameView>());
		window->SetClientRect({rect.mLeft, rect.mTop}, {rect.mWidth, rect.mHeight});
		window->Show();
		return window;
	}

	/// The editor: 200 by 100 at the corner of the screen, in a host's window, drawn once.
	TMainFrameView& OpenEditor(TPtr<TMainFrameView> frame = nullptr) {
		mpEditor = OpenWindow(nullptr, kEmbeddedWindow, {0, 0, 200, 100}, std::move(frame));
		mpEditor->Glue()->Embed(1, true);
		Tick();
		return *mpEditor->MainFrame();
	}

	TViewWindow& Editor() { return *mpEditor; }

	void Tick() { mFrame.EditorFrameTick(mpEditor.Get()); }

	/// Ticks every 10 ms.
	void Wait(int milliseconds) {
		for (int time = 0; time < milliseconds; time += 10) {
			mClock.Advance(std::chrono::milliseconds(10));
			Tick();
		}
	}

	// The pointer, in pixels of the screen; each step is worked off.

	void Move(int x, int y) {
		Platform().MovePointer({x, y});
		Tick();
	}

	void Press(TMouseButton button = TMouseButton::kLeft, int clickCount = 1) {
		Platform().Press(button, clickCount);
		Tick();
	}

	void Release(TMouseButton button = TMouseButton::kLeft) {
		Platform().Release(button);
		Tick();
	}

	void Click(int x, int y) {
		Move(x, y);
		Press();
		Release();
	}

	void KeyDown(int code) {
		Platform().KeyDown(code);
		Tick();
	}

	void KeyUp(int code) {
		Platform().KeyUp(code);
		Tick();
	}

	THeadlessClock mClock;
	TPtr<TViewWindow> mpEditor;
	TEditorFrame mFrame;
};

/// Writes down what it is told, behind its name: "a:down ".
class TProbeView : public TFocusRootView {
public:
	TProbeView(std::string& journal, std::string name, const TRectT<int>& rect)
	    : mJournal(journal),
	      mName(std::move(name)) {
		SetFocusMode(kFocusNever);
		SetRect(rect);
	}

	bool WantsMouseCapture(int /*x*/, int /*y*/, int /*modifiers*/) override { return mWantsCapture; }

	void OnMouseCaptureTaken(int, int, int) override { Note("taken"); }

	void OnMouseCaptureReleased(int, int, int) override { Note("released"); }

	bool OnLeftMouseDown(int, int, int) override { return Note("down"); }

	bool OnRightMouseDown(int, int, int) override { return Note("rdown"); }

	bool OnRightMouseUp(int, int, int) override { return Note("rup"); }

	bool OnLeftMouseUp(int, int, int modifiers) override {
		return Note((modifiers & kMouseAutoRepeat) != 0 ? "repeat" : "up");
	}

	bool OnLeftDoubleClick(int, int, int) override { return Note("double"); }

	bool OnMouseDrag(int, int, int) override { return Note("drag"); }

	bool OnMouseHover(int, int, int) override { return Note("hover"); }

	void OnMouseEnter(int, int, int) override { Note("enter"); }

	void OnMouseLeave(int, int, int) override { Note("leave"); }

	bool OnWheelUp(int, int, int) override { return Note("wheel"); }

	bool HandleKey(const TKeyboardKey&, bool isRelease, bool isRepeat) override {
		return Note(std::string(isRepeat ? "*" : "") + (isRelease ? "keyup" : "key"));
	}

	void OnFocusChanged(TView* lost, TView* gained, bool focused) override {
		if (lost == this || gained == this)
			Note(focused ? "focus" : "blur");
	}

	void Draw(TSurface&) override {
		if (mTellsDraws)
			Note("draw");
	}

	bool mWantsCapture = false;
	bool mUses = false; // what it answers
	bool mTellsDraws = false;
	std::function<void(const std::string&)> mOnEvent;

protected:
	bool Note(const std::string& what) {
		mJournal += mName + ":" + what + " ";
		if (mOnEvent)
			mOnEvent(what);
		return mUses;
	}

private:
	std::string& mJournal;
	const std::string mName;
};
