// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/TTestSystem.h"

#include "platform/headless/THeadlessPlatform.h"

#include <cstdio>

namespace {

class THeadlessSystem final : public TTestSystem {
public:
	TPlatform& Platform() override { return mPlatform; }

	void MovePointer(TPointT<int> position) override { mPlatform.MovePointer(position); }

	/// Scripts say themselves which click this is.
	void Button(TMouseButton button, bool press) override {
		if (press)
			mPlatform.Press(button, ++mClicks);
		else
			mPlatform.Release(button);
	}

	void Wheel(TPointT<int> notches) override { mPlatform.Wheel(notches); }

	void Key(int code, bool press) override { press ? mPlatform.KeyDown(code) : mPlatform.KeyUp(code); }

	TNativeWindow OpenHost(TPointT<int> corner) override {
		mPlatform.MoveHost(corner);
		return 1;
	}

	void MoveHost(TPointT<int> corner) override { mPlatform.MoveHost(corner); }

	void ShowHost(bool visible) override { mPlatform.ShowHost(visible); }

	void DestroyHost() override {
		for (THeadlessWindow* window : std::vector(mPlatform.Windows()))
			if (window->IsEmbedded())
				window->Lose("The window was destroyed from outside.");
	}

	bool HasHostKeys() override { return mPlatform.KeyWindow() == nullptr; }

	uint32_t PixelAt(TWindowGlue& window, TPointT<int> point) override {
		const auto& memory = static_cast<THeadlessWindow&>(window);
		return memory.Pixels()[static_cast<std::size_t>(point.mY * memory.ClientSize().mX + point.mX)];
	}

	void Settle() override {
		mClicks = 0;
		mPlatform.ProcessEvents();
	}

private:
	THeadlessPlatform mPlatform;
	int mClicks = 0;
};

} // namespace

std::unique_ptr<TTestSystem> MakeHeadlessSystem() {
	return std::make_unique<THeadlessSystem>();
}

void TWindowJournal::Write(const char* format, auto... values) {
	if constexpr (sizeof...(values) == 0) {
		mLines.emplace_back(format);
	} else {
		char line[256];
		std::snprintf(line, sizeof line, format, values...);
		mLines.emplace_back(line);
	}
}

std::vector<std::string> TWindowJournal::Take(const std::string& beginning) {
	std::vector<std::string> lines = Take();
	std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(beginning); });
	return lines;
}

void TWindowJournal::OnGlueMouse(const TGlueMouseEvent& event) {
	constexpr const char* kNames[]{"move", "press", "release", "wheel"};
	const auto [x, y] = event.mPosition;
	const char* name = kNames[static_cast<int>(event.mType)];
	if (event.mType == TGlueMouseEvent::TType::kMove)
		Write("%s %d,%d", name, x, y);
	else if (event.mType == TGlueMouseEvent::TType::kWheel)
		Write("%s %d,%d", name, event.mWheel.mX, event.mWheel.mY);
	else
		Write("%s %d at %d,%d count %d", name, static_cast<int>(event.mButton), x, y, event.mClickCount);
	if (mOnMouse)
		mOnMouse();
}

void TWindowJournal::OnGlueKey(const TGlueKeyEvent& event) {
	mLastKey = event;
	Write(
	    "%s %d modifiers %d%s character %d", event.mIsRelease ? "up" : "down", event.mCode, event.mModifiers,
	    event.mIsRepeat ? " repeated" : "", event.mCharacter);
}

void TWindowJournal::OnGlueText(const TString& text) {
	Write("text %s", text.CString(kPlatformEncoding));
}

bool TWindowJournal::IsGlueEditingText(TRectT<int>& caret) {
	caret = {10, 10, 1, 12};
	return mIsEditing;
}

void TWindowJournal::OnGlueResized(TPointT<int> size) {
	Write("size %d,%d", size.mX, size.mY);
}

void TWindowJournal::OnGlueMoved(TPointT<int> position) {
	Write("place %d,%d", position.mX, position.mY);
}

void TWindowJournal::OnGlueVisibilityChanged(bool visible) {
	Write(visible ? "visible" : "hidden");
}

void TWindowJournal::OnGlueBecameKey(TWindowGlueClient* previous) {
	Write(previous ? "key from another" : "key");
}

void TWindowJournal::OnGlueLostKey(TWindowGlueClient* next) {
	Write(next ? "lost key to another" : "lost key");
}

void TWindowJournal::OnGlueCloseAsked() {
	Write("close");
}

void TWindowJournal::OnGlueExposed(std::span<const TRectT<int>> rects) {
	mExposed = rects.back();
	Write("exposed");
}

void TWindowJournal::OnGlueLost(const TString& reason) {
	Write("lost: %s", reason.CString(kPlatformEncoding));
}

bool TWindowJournal::OnGlueFilesDragged(TPointT<int> point, const TList<TString>& paths) {
	Write("files over %d,%d: %s", point.mX, point.mY, TString::Join(paths, "|").CString(kPlatformEncoding));
	return mAcceptsFiles;
}

void TWindowJournal::OnGlueFilesDragLeft() {
	Write("files left");
}

void TWindowJournal::OnGlueFilesDropped(TPointT<int> point, const TList<TString>& paths) {
	Write("files dropped %d,%d: %s", point.mX, point.mY, TString::Join(paths, "|").CString(kPlatformEncoding));
}
