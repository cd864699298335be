// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUPublished.h"
#include "platform/audiounit/AudioUnitTypes.h"

#include <cstddef>
#include <span>
#include <vector>

/// A buffer list that either lies in memory of its own or points to somebody else's. Allocates in the constructor only.
class AUBuffers {
public:
	AUBuffers() : AUBuffers(0, 0) {}

	AUBuffers(UInt32 channels, UInt32 frames);

	AudioBufferList& List() { return *reinterpret_cast<AudioBufferList*>(mList.data()); }

	std::span<AudioBuffer> Buffers() { return BuffersOf(List()); }

	static std::span<AudioBuffer> BuffersOf(AudioBufferList& list) { return {list.mBuffers, list.mNumberBuffers}; }

	/// In its own memory.
	AudioBufferList& Prepare(UInt32 frames);
	/// Nowhere: who is asked for sound gives the places.
	AudioBufferList& PrepareNull(UInt32 frames);
	/// Where those of the other list are, which has as many.
	void PointTo(AudioBufferList& other);
	/// Nothing that could be lent.
	void Invalidate();

	bool IsValid() const { return mIsValid; }

	bool IsOwn(const AudioBuffer& buffer) const;

	UInt32 Channels() const { return mChannels; }

	/// For a list with memory the sound is copied, for one without it is told where the sound lies.
	void GiveTo(AudioBufferList& target, UInt32 frames);

private:
	UInt32 mChannels;
	UInt32 mFrames;
	bool mIsValid = false;
	std::vector<std::byte> mList; // an AudioBufferList of that many channels
	std::vector<float> mMemory;
};

struct AUBus {
	AudioStreamBasicDescription mFormat;
	AUBuffers mBuffers;
};

/// Where an input's sound comes from: another unit, a function of the host, or nowhere.
struct AUSource {
	AudioUnitConnection mConnection;
	AURenderCallbackStruct mCallback;

	bool IsActive() const { return mConnection.sourceAudioUnit || mCallback.inputProc; }
};

struct AUInputBus : AUBus {
	AUPublished<AUSource> mSource;
};
