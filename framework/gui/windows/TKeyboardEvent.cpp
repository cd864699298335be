// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TKeyboardEvent.h"

#include "framework/gui/windows/TWindow.h"

TKeyboardEvent::TKeyboardEvent(TWindow* window, const TKeyboardKey& key, bool isRelease, bool isRepeat)
    : TApplicationEvent(kKeyboardEvent),
      mKey(key),
      mIsRelease(isRelease),
      mIsRepeat(isRepeat),
      mWindow(window) {}

TKeyboardEvent::TKeyboardEvent(TWindow* window, const TGlueKeyEvent& event)
    : TApplicationEvent(kKeyboardEvent),
      mKey(event.mCode, event.mModifiers, event.mCharacter),
      mIsRelease(event.mIsRelease),
      mIsRepeat(event.mIsRepeat),
      mGlueEvent(event),
      mWindow(window) {}

TKeyboardEvent::TKeyboardEvent(TWindow* window, const TString& text)
    : TApplicationEvent(kKeyboardEvent),
      mIsRelease(false),
      mIsRepeat(false),
      mText(text),
      mWindow(window) {}
