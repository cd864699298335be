// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVAEnvelopeFollower.h"

void TVAEnvelopeFollower::SetAttack(double ms, double sampleRate) {
	const double time = ms * sampleRate;
	if (time == mAttackTime)
		return;
	mAttackTime = time;
	mAttack = std::exp(-1000.0 / time);
	mSmooth = std::exp(-100.0 / time);
}

void TVAEnvelopeFollower::SetRelease(double ms, double sampleRate) {
	const double time = ms * 0.001 * sampleRate;
	if (time == mReleaseTime)
		return;
	mReleaseTime = time;
	mRelease = std::exp(-1.0 / time);
}
