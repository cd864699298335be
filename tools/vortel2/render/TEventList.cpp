// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TEventList.h"

#include <algorithm>
#include <cmath>
#include <tuple>

void TEventList::AddAutomation(std::span<const TAutomation> automation) {
	for (const TAutomation& change : automation) {
		if (change.mEndSeconds >= 0.0)
			AddRamp(change);
		else
			AddChange(NearestSample(change.mSeconds), change.mSeconds, change.mParameter, change.mValue);
	}
}

/// Points on a straight line, as close as a host may set them, in long ramps where a point is hardly a change.
void TEventList::AddRamp(const TAutomation& ramp) {
	static constexpr int64_t kClosest = 64;
	static constexpr int64_t kMostPoints = 16384;
	const int64_t start = NearestSample(ramp.mSeconds);
	const int64_t end = std::max(NearestSample(ramp.mEndSeconds), start + 1);
	const int64_t distance = std::max(kClosest, (end - start) / kMostPoints);
	for (int64_t sample = start; sample < end; sample += distance) {
		const double part = static_cast<double>(sample - start) / static_cast<double>(end - start);
		const double value = std::lerp(static_cast<double>(ramp.mValue), static_cast<double>(ramp.mEndValue), part);
		AddChange(sample, static_cast<double>(sample) / mSampleRate, ramp.mParameter, static_cast<float>(value));
	}
	AddChange(end, ramp.mEndSeconds, ramp.mParameter, ramp.mEndValue);
}

void TEventList::AddChange(int64_t sample, double seconds, int32_t parameter, float value) {
	mChanges.mEvents.push_back({sample, kCommandLine, seconds, {0, parameter, value}});
}

void TEventList::AddNotes(std::span<const TNote> notes) {
	for (const TNote& note : notes) {
		AddMidi(kCommandLine, note.mOn, {0x90, note.mPitch, note.mVelocity, 0});
		if (note.mOff >= 0.0)
			AddMidi(kCommandLine, note.mOff, {0x80, note.mPitch, 0, 0});
	}
}

void TEventList::AddFile(std::span<const TMidiFileEvent> events) {
	for (const TMidiFileEvent& event : events)
		AddMidi(kFile, event.mSeconds, {event.mStatus, event.mData1, event.mData2, 0});
}

TEventList::TBlock TEventList::NextBlock(int32_t samples) {
	if (mPosition == 0) {
		mChanges.Sort();
		mMidi.Sort();
	}
	const int64_t start = mPosition;
	mPosition += samples;
	return {mChanges.TakeUntil(start, mPosition), mMidi.TakeUntil(start, mPosition)};
}

template <class T>
void TEventList::TTrack<T>::Sort() {
	std::stable_sort(mEvents.begin(), mEvents.end(), [](const TTimed<T>& a, const TTimed<T>& b) {
		return std::tie(a.mSample, a.mSource, a.mSeconds) < std::tie(b.mSample, b.mSource, b.mSeconds);
	});
}

template <class T>
std::span<const T> TEventList::TTrack<T>::TakeUntil(int64_t blockStart, int64_t end) {
	mBlock.clear();
	for (; mNext < mEvents.size() && mEvents[mNext].mSample < end; ++mNext) {
		mBlock.push_back(mEvents[mNext].mEvent);
		mBlock.back().mSampleOffset = static_cast<int32_t>(mEvents[mNext].mSample - blockStart);
	}
	return mBlock;
}

int64_t TEventList::NearestSample(double seconds) const {
	// A file of slow ticks may reach further than any sound; such times only have to stay behind its end.
	return std::llround(std::min(seconds * mSampleRate, 1e15));
}

void TEventList::AddMidi(ESource source, double seconds, TMidiEvent event) {
	mMidi.mEvents.push_back({NearestSample(seconds), source, seconds, event});
}
