// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"

/// Random numbers that repeat from a seed. The stream is part of the sound of saved songs. Seed 0 yields 0 for ever.
class TParkMillerPRNG : public TReferenceCountable {
public:
	void SetSeed(unsigned int seed) noexcept { mState = seed; }

	/// The product is cut to 32 bits before the division, which makes this stream other than the textbook one.
	unsigned int NextInt() noexcept {
		mState = (mState * 16807u) % 2147483647u;
		return mState;
	}

	/// Uniform from 0 up to, but not including, 1.
	double NextDouble() noexcept { return NextInt() / 2147483647.0; }

private:
	unsigned int mState = 1;
};
