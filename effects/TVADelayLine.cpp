// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVADelayLine.h"

#include <bit>

void TVADelayLine::SetLength(int length) {
	if (length == mLength)
		return;
	mLength = length;
	const int size = static_cast<int>(std::bit_ceil(static_cast<unsigned>(length)));
	if (size == mSize)
		return;
	mSamples.ResizeZeroed(size);
	mSize = size;
	mWriteIndex = 0;
	mWritten = 0;
}

void TVADelayLine::Clear() {
	const int before = std::min(mWritten, mWriteIndex);
	std::fill_n(mSamples.Data() + mWriteIndex - before, before, 0.0f);
	const int wrapped = mWritten - before;
	std::fill_n(mSamples.Data() + mSize - wrapped, wrapped, 0.0f);
	mWritten = 0;
}
