// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TMouseEvent.h"

#include "framework/gui/windows/TWindow.h"

TMouseEvent::TMouseEvent(TWindow* window, int32_t type, TPointT<int> position, bool isRepeat)
    : TApplicationEvent(kMouseEvent),
      mType(type),
      mPosition(position),
      mIsRepeat(isRepeat),
      mWindow(window) {}
