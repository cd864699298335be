// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/Memory.h"

#include <algorithm>
#include <cstddef>
#include <utility>

/// Owned array of samples on whole pages. Sizing allocates, so it happens where sample rate or block size change and
/// nowhere else; throws TOutOfMemoryException. Fresh memory is zero and takes no room before it is written, which
/// makes buffers of many seconds cheap until they are used.
class TAlignedBuffer {
public:
	TAlignedBuffer() = default;

	explicit TAlignedBuffer(int size) { Resize(size); }

	~TAlignedBuffer() { Memory::FreeAligned(mpSamples); }

	TAlignedBuffer(const TAlignedBuffer&) = delete;
	TAlignedBuffer& operator=(const TAlignedBuffer&) = delete;

	/// Does nothing when the size is the same; else the content is undefined.
	void Resize(int size) {
		if (size != mSize)
			ResizeZeroed(size);
	}

	/// All samples 0, whatever the size was: takes new pages instead of writing the old ones.
	void ResizeZeroed(int size) {
		Memory::FreeAligned(std::exchange(mpSamples, nullptr));
		mSize = 0;
		mpSamples = static_cast<float*>(
		    Memory::AllocateAligned("TAlignedBuffer", static_cast<std::size_t>(size) * sizeof(float), kAlignment));
		mSize = size;
	}

	void Fill(float value) { std::fill_n(mpSamples, mSize, value); }

	int Size() const { return mSize; }

	float* Data() { return mpSamples; }

	const float* Data() const { return mpSamples; }

	float& operator[](int index) { return mpSamples[index]; }

	float operator[](int index) const { return mpSamples[index]; }

private:
	static constexpr std::size_t kAlignment = 16;

	float* mpSamples = nullptr;
	int mSize = 0;
};
