// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TRampable.h"

#include <algorithm>
#include <cassert>

TRampGroup::TRampGroup(std::initializer_list<TRampable<float>*> ramps) {
	assert(ramps.size() <= kLanes);
	std::copy(ramps.begin(), ramps.end(), mRamps.begin());
	alignas(16) std::array<float, kLanes> target{}, current{}, share{};
	for (std::size_t lane = 0; lane < ramps.size(); ++lane) {
		target[lane] = mRamps[lane]->mTarget;
		current[lane] = mRamps[lane]->mCurrent;
		share[lane] = mRamps[lane]->mCoefficient * mRamps[lane]->mScale;
	}
	mTarget = _mm_load_ps(target.data());
	mCurrent = _mm_load_ps(current.data());
	mShare = _mm_load_ps(share.data());
}

TRampGroup::~TRampGroup() {
	alignas(16) std::array<float, kLanes> current;
	_mm_store_ps(current.data(), mCurrent);
	for (std::size_t lane = 0; lane < kLanes; ++lane) {
		if (mRamps[lane])
			mRamps[lane]->mCurrent = current[lane];
	}
}
