// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audiounit/AUBus.h"

#include <algorithm>
#include <cstring>

namespace {

UInt32 BytesOf(UInt32 frames) {
	return frames * static_cast<UInt32>(sizeof(float));
}

} // namespace

AUBuffers::AUBuffers(UInt32 channels, UInt32 frames)
    : mChannels(channels),
      mFrames(frames),
      mList(sizeof(AudioBufferList) + channels * sizeof(AudioBuffer)),
      mMemory(std::size_t{channels} * frames) {}

AudioBufferList& AUBuffers::Prepare(UInt32 frames) {
	PrepareNull(frames);
	float* memory = mMemory.data();
	for (AudioBuffer& buffer : Buffers()) {
		buffer.mData = memory;
		memory += mFrames;
	}
	return List();
}

AudioBufferList& AUBuffers::PrepareNull(UInt32 frames) {
	List().mNumberBuffers = mChannels;
	std::ranges::fill(Buffers(), AudioBuffer{1, BytesOf(frames), nullptr});
	mIsValid = true;
	return List();
}

void AUBuffers::PointTo(AudioBufferList& other) {
	List().mNumberBuffers = mChannels;
	std::ranges::copy(BuffersOf(other), Buffers().begin());
	mIsValid = true;
}

void AUBuffers::Invalidate() {
	List().mNumberBuffers = 0;
	mIsValid = false;
}

bool AUBuffers::IsOwn(const AudioBuffer& buffer) const {
	const auto* data = static_cast<const float*>(buffer.mData);
	return !mMemory.empty() && data >= mMemory.data() && data < mMemory.data() + mMemory.size();
}

void AUBuffers::GiveTo(AudioBufferList& target, UInt32 frames) {
	auto from = Buffers().begin();
	for (AudioBuffer& to : BuffersOf(target)) {
		if (!to.mData)
			to = *from;
		else if (to.mData != from->mData)
			std::memmove(to.mData, from->mData, BytesOf(frames));
		to.mDataByteSize = BytesOf(frames);
		++from;
	}
}
