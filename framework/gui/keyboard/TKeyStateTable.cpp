// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyStateTable.h"

#include "framework/graphics/surfaces/TGraphPortPrefs.h"

#include <algorithm>
#include <utility>

bool AreRightSideModifiersInUse() {
	const TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	return !prefs || !prefs->mUseRightSideModifiersAsMappableKeys.Get();
}

void TKeyStateTable::SetState(int code, TKeyState state) {
	const bool isDown = state == kKeyIsDown;
	if (!IsCode(code) || mDown[Slot(code)] == isDown)
		return;
	mDown[Slot(code)] = isDown;
	mPressTimes[Slot(code)] = isDown ? mStopwatch.ElapsedMilliseconds() : 0.0f;
}

void TKeyStateTable::SetStates(const TKeyFlags& down) {
	for (int code = 0; code < kKeyCodeCount; ++code)
		SetState(code, down[Slot(code)] ? kKeyIsDown : kKeyIsUp);
}

TKeyStateTable::THeldKeys TKeyStateTable::HeldKeys() const {
	THeldKeys held;
	for (int code = 0; code < kKeyCodeCount; ++code)
		if (mDown[Slot(code)])
			held.mCodes[held.mCount++] = code;
	// Those of one moment stay in the order of their codes.
	std::sort(held.mCodes.begin(), held.mCodes.begin() + static_cast<std::ptrdiff_t>(held.mCount), [&](int a, int b) {
		return std::pair(mPressTimes[Slot(a)], a) < std::pair(mPressTimes[Slot(b)], b);
	});
	return held;
}
