// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TPlatform.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A platform together with what a user and a host do to it, so that one test says what holds on every platform.
class TTestSystem {
public:
	virtual ~TTestSystem() = default;

	virtual TPlatform& Platform() = 0;

	// The user
	virtual void MovePointer(TPointT<int> position) = 0;
	virtual void Button(TMouseButton button, bool press) = 0;
	virtual void Wheel(TPointT<int> notches) = 0;
	/// Only keys that stand in KeycodeOf of the X11 system.
	virtual void Key(int code, bool press) = 0;

	// The host
	virtual TNativeWindow OpenHost(TPointT<int> corner) = 0;
	virtual void MoveHost(TPointT<int> corner) = 0;
	virtual void ShowHost(bool visible) = 0;
	virtual void DestroyHost() = 0;
	virtual bool HasHostKeys() = 0;

	/// 0xRRGGBB as it stands on the screen.
	virtual uint32_t PixelAt(TWindowGlue& window, TPointT<int> point) = 0;

	/// Lets everything happen that is under way.
	virtual void Settle() = 0;

	void Click(TMouseButton button) {
		Button(button, true);
		Button(button, false);
	}

	void Type(int code) {
		Key(code, true);
		Key(code, false);
	}
};

/// Null where the environment has none.
using TMakeSystem = std::unique_ptr<TTestSystem> (*)();
std::unique_ptr<TTestSystem> MakeHeadlessSystem();
std::unique_ptr<TTestSystem> MakeX11System();

/// Writes down what a window hears, a line for each event.
class TWindowJournal : public TWindowGlueClient {
public:
	void OnGlueMouse(const TGlueMouseEvent& event) override;
	void OnGlueKey(const TGlueKeyEvent& event) override;
	void OnGlueText(const TString& text) override;
	bool IsGlueEditingText(TRectT<int>& caret) override;
	void OnGlueResized(TPointT<int> size) override;
	void OnGlueMoved(TPointT<int> position) override;
	void OnGlueVisibilityChanged(bool visible) override;
	void OnGlueBecameKey(TWindowGlueClient* previous) override;
	void OnGlueLostKey(TWindowGlueClient* next) override;
	void OnGlueCloseAsked() override;
	void OnGlueExposed(std::span<const TRectT<int>> rects) override;
	void OnGlueLost(const TString& reason) override;
	bool OnGlueFilesDragged(TPointT<int> point, const TList<TString>& paths) override;
	void OnGlueFilesDragLeft() override;
	void OnGlueFilesDropped(TPointT<int> point, const TList<TString>& paths) override;

	/// The lines so far; they are forgotten.
	std::vector<std::string> Take() { return std::exchange(mLines, {}); }
	/// Only those that begin so.
	std::vector<std::string> Take(const std::string& beginning);

	bool mIsEditing = false;
	bool mAcceptsFiles = true;
	std::function<void()> mOnMouse;
	TGlueKeyEvent mLastKey;
	TRectT<int> mExposed; // the last

private:
	void Write(const char* format, auto... values);

	std::vector<std::string> mLines;
};
