// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TLinkedViewValueBase.h"

#include "framework/gui/views/TView.h"

TLinkedViewValueBase::TLinkedViewValueBase(TView& view) : mView(view) {
	view.AddLinkedValue(this);
}
