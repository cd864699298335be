// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3PointWalk.h"

#include <cmath>
#include <utility>

using namespace Steinberg;
using namespace Steinberg::Vst;

bool TVst3PointWalk::Read(IParamValueQueue& queue, int32& index, int32& offset, double& value) {
	for (const int32 points = queue.getPointCount(); index < points;)
		if (queue.getPoint(index++, offset, value) == kResultTrue && !std::isnan(value))
			return true;
	return false;
}

bool TVst3PointWalk::IsInOrder(IParamValueQueue& queue) {
	int32 index = 0;
	int32 offset = 0;
	double value = 0.0;
	if (!Read(queue, index, offset, value))
		return true;
	for (int32 previous = offset; Read(queue, index, offset, value); previous = offset)
		if (offset < previous)
			return false;
	return true;
}

void TVst3PointWalk::Start(IParamValueQueue& queue) {
	mpQueue = &queue;
	mNextPoint = 0;
	if (!ReadNext() || !ApplyThrough(0))
		return;
	mEngine.ScheduleFirst(this, mOffset);
	mIsScheduled = true;
}

void TVst3PointWalk::Execute() {
	mIsScheduled = false;
	const int32_t now = mOffset;
	if (!mpQueue || !ApplyThrough(now))
		return;
	mEngine.ScheduleAgain(this, mOffset - now);
	mIsScheduled = true;
}

void TVst3PointWalk::Finish() {
	if (!mpQueue)
		return;
	double last = mValue;
	while (ReadNext())
		last = mValue;
	mTarget.ApplyPoint(mId, last);
}

/// False, and the walk has ended, when no point is left.
bool TVst3PointWalk::ReadNext() {
	int32 offset = 0;
	if (!Read(*mpQueue, mNextPoint, offset, mValue)) {
		mpQueue = nullptr;
		return false;
	}
	mOffset = mTarget.OffsetInBlock(offset);
	return true;
}

/// The points up to this offset; false when no point is left.
bool TVst3PointWalk::ApplyThrough(int32_t offset) {
	while (mOffset <= offset) {
		const double value = mValue;
		const bool isLeft = ReadNext();
		mTarget.ApplyPoint(mId, value);
		if (!isLeft)
			return false;
	}
	return true;
}
