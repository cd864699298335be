// SPDX-License-Identifier: GPL-3.0-or-later
// The pointer and the keyboard of the system in memory.

#include "platform/headless/THeadlessPlatform.h"
#include "platform/headless/UsKeyboard.h"

namespace {

int BitOf(TMouseButton button) {
	return 1 << static_cast<int>(button);
}

bool IsHighSurrogate(char16_t unit) {
	return (unit & 0xFC00) == 0xD800;
}

} // namespace

THeadlessWindow* THeadlessPlatform::PointerTarget() const {
	if (mHeldButtons != 0 && mpPressWindow)
		return mpPressWindow;
	if (THeadlessWindow* window = WindowAt(mPointer))
		return window;
	THeadlessWindow* popup = Topmost(kPopupWindow, false);
	return popup ? &popup->Root() : nullptr;
}

void THeadlessPlatform::SendMouse(THeadlessWindow* target, TGlueMouseEvent event) {
	const TPtr<THeadlessWindow> keep(target);
	if (!target || !target->IsOpen())
		return;
	event.mPosition = target->ScreenToClient(mPointer);
	event.mModifiers = mKeyboard.Modifiers();
	target->Client().OnGlueMouse(event);
}

void THeadlessPlatform::MovePointer(TPointT<int> position) {
	mPointer = position;
	THeadlessWindow* target = PointerTarget();
	const TPtr<THeadlessWindow> left(target ? nullptr : mpPointerWindow);
	mpPointerWindow = target;
	if (left && left->IsOpen())
		left->Client().OnGlueMouse({.mPosition = {-1, -1}});
	SendMouse(target, {});
}

void THeadlessPlatform::Press(TMouseButton button, int clickCount) {
	THeadlessWindow* target = PointerTarget();
	if (mHeldButtons == 0)
		mpPressWindow = target;
	mHeldButtons |= BitOf(button);
	SendMouse(target, {.mType = TGlueMouseEvent::TType::kPress, .mButton = button, .mClickCount = clickCount});
}

void THeadlessPlatform::Release(TMouseButton button) {
	THeadlessWindow* target = PointerTarget();
	mHeldButtons &= ~BitOf(button);
	if (mHeldButtons == 0)
		mpPressWindow = nullptr;
	SendMouse(target, {.mType = TGlueMouseEvent::TType::kRelease, .mButton = button});
}

void THeadlessPlatform::Wheel(TPointT<int> notches) {
	SendMouse(PointerTarget(), {.mType = TGlueMouseEvent::TType::kWheel, .mWheel = notches});
}

void THeadlessPlatform::SendKey(int code, bool release, bool repeat) {
	if (!mpKeyWindow)
		return;
	const TPtr<THeadlessWindow> target(mpKeyWindow);
	const int modifiers = mKeyboard.Modifiers();
	const char16_t character = release ? char16_t{0} : mKeyboard.TextCharacterOf(code, modifiers);
	target->Client().OnGlueKey({code, modifiers, release, repeat, character, 0});
}

void THeadlessPlatform::KeyDown(int code) {
	const auto bit = static_cast<std::size_t>(code);
	const bool isRepeat = mKeyboard.mHeld.test(bit);
	mKeyboard.mHeld.set(bit);
	SendKey(code, false, isRepeat);
}

void THeadlessPlatform::KeyUp(int code) {
	const auto bit = static_cast<std::size_t>(code);
	if (!mKeyboard.mHeld.test(bit))
		return;
	mKeyboard.mHeld.reset(bit);
	SendKey(code, true, false);
}

void THeadlessPlatform::LoseKey(int code) {
	mKeyboard.mHeld.reset(static_cast<std::size_t>(code));
}

void THeadlessPlatform::Type(const TString& text) {
	for (int i = 0; i < text.Length(); ++i) {
		const auto [code, shift] = UsKeyboard::StrokeOf(text[i]);
		if (code == kNoKey) {
			const int units = IsHighSurrogate(text[i]) && i + 1 < text.Length() ? 2 : 1;
			TRectT<int> caret;
			const TPtr<THeadlessWindow> target(mpKeyWindow);
			if (target && target->Client().IsGlueEditingText(caret))
				target->Client().OnGlueText(text.SubString(i, i + units));
			i += units - 1;
			continue;
		}
		if (shift)
			KeyDown(kKeyLeftShift);
		KeyDown(code);
		KeyUp(code);
		if (shift)
			KeyUp(kKeyLeftShift);
	}
}

void THeadlessPlatform::TMemoryCursor::Define(int id, const TCursorImage& image) {
	mPictures[id] = {image.mSize, image.mHotSpot, {image.mPixels.begin(), image.mPixels.end()}};
}

TCursorImage THeadlessPlatform::TMemoryCursor::Image(int id) const {
	const auto picture = mPictures.find(id);
	return picture == mPictures.end()
	           ? TCursorImage{}
	           : TCursorImage{picture->second.mSize, picture->second.mHotSpot, picture->second.mPixels};
}

void THeadlessPlatform::TMemoryCursor::SetMousePosition(TPointT<int> position) {
	mPlatform.mPointer = position;
	mPlatform.mHasWarped = true;
}

bool THeadlessPlatform::TMemoryCursor::IsButtonDown(TMouseButton button) const {
	return (mPlatform.mHeldButtons & BitOf(button)) != 0;
}
