// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TSlideableView.h"

#include "framework/gui/events/TTimerDispatcher.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kStepMilliseconds = 10;

/// How near to the target counts as there: a share of the way, but no more than that many pixels.
constexpr float kToleranceShare = 0.0025f;
constexpr float kLargestTolerance = 10.0f;

bool HasArrivedAt(int start, int target, float current) {
	const float tolerance = std::min(kLargestTolerance, static_cast<float>(std::abs(target - start)) * kToleranceShare);
	const auto goal = static_cast<float>(target);
	return target >= start ? current >= goal - tolerance : current <= goal + tolerance;
}

} // namespace

void TSlideableView::TSlide::Begin(TPointT<int> from, TPointT<int> to) {
	mStart = from;
	mTarget = to;
	mX = static_cast<float>(from.mX);
	mY = static_cast<float>(from.mY);
	mRunning = true;
}

void TSlideableView::TSlide::Advance(float divisor) {
	mX += (static_cast<float>(mTarget.mX) - mX) / divisor;
	mY += (static_cast<float>(mTarget.mY) - mY) / divisor;
	if (HasArrivedAt(mStart.mX, mTarget.mX, mX))
		mX = static_cast<float>(mTarget.mX);
	if (HasArrivedAt(mStart.mY, mTarget.mY, mY))
		mY = static_cast<float>(mTarget.mY);
}

TPointT<int> TSlideableView::TSlide::Rounded() const {
	return {static_cast<int>(std::round(mX)), static_cast<int>(std::round(mY))};
}

bool TSlideableView::TSlide::HasArrived() const {
	return mX == static_cast<float>(mTarget.mX) && mY == static_cast<float>(mTarget.mY);
}

// The hooks of derived classes are gone by now: a slide ends without a word.
TSlideableView::~TSlideableView() {
	mMove.mRunning = false;
	mSizing.mRunning = false;
	StopSteppingWhenIdle();
}

void TSlideableView::SlideTo(TPointT<int> point) {
	if (mPauseCount != 0) {
		if (mMove.mRunning)
			EndMove(true);
		SetPosition(point.mX, point.mY);
		return;
	}
	if (mMove.mRunning ? mMove.mTarget == point : Position() == point)
		return;
	StartStepping();
	const TPointT<int> from = Position();
	mMove.Begin(from, point);
	OnMoveBegin(from.mX, from.mY);
}

void TSlideableView::SlideSizeTo(TPointT<int> size) {
	if (mPauseCount != 0) {
		if (mSizing.mRunning)
			EndSizing(true);
		SetSize(size.mX, size.mY);
		return;
	}
	if (mSizing.mRunning ? mSizing.mTarget == size : Size() == size)
		return;
	StartStepping();
	const TPointT<int> from = Size();
	mSizing.Begin(from, size);
	OnSizeBegin(from.mX, from.mY);
}

void TSlideableView::StartStepping() {
	mClock.Restart();
	if (TTimerDispatcher* timers = TTimerDispatcher::Instance())
		timers->AddTimer({this, &TSlideableView::Step}, kStepMilliseconds);
}

void TSlideableView::StopSteppingWhenIdle() {
	TTimerDispatcher* timers = TTimerDispatcher::Instance();
	if (timers && !IsSliding())
		timers->RemoveTimer({this, &TSlideableView::Step});
}

// A fixed share of what is left in each nominal tick, whatever the time since the last step.
void TSlideableView::Step() {
	const float elapsed = mClock.ElapsedMilliseconds();
	if (elapsed <= 0.0f)
		return;
	mClock.Restart();
	const float divisor = std::max(1.0f, mSpeed * static_cast<float>(kStepMilliseconds) / elapsed);
	const TPtr<TSlideableView> keepAlive(this);
	TPointT<bool> changed{false, false};
	if (mMove.mRunning)
		StepMove(divisor, changed);
	if (mSizing.mRunning)
		StepSize(divisor, changed);
	OnSlideProgress(changed.mX, changed.mY);
	if (mMove.mRunning && mMove.HasArrived())
		EndMove(false);
	if (mSizing.mRunning && mSizing.HasArrived())
		EndSizing(false);
}

void TSlideableView::StepMove(float divisor, TPointT<bool>& changed) {
	const TPointT<int> before = Position();
	mMove.Advance(divisor);
	const TPointT<int> place = mMove.Rounded();
	SetPosition(place.mX, place.mY);
	changed = {changed.mX || before.mX != place.mX, changed.mY || before.mY != place.mY};
}

void TSlideableView::StepSize(float divisor, TPointT<bool>& changed) {
	const TPointT<int> before = Size();
	mSizing.Advance(divisor);
	const TPointT<int> size = mSizing.Rounded();
	SetSize(size.mX, size.mY);
	changed = {changed.mX || before.mX != size.mX, changed.mY || before.mY != size.mY};
}

void TSlideableView::EndMove(bool finished) {
	mMove.mRunning = false;
	StopSteppingWhenIdle();
	OnMoveEnd(finished);
}

void TSlideableView::EndSizing(bool finished) {
	mSizing.mRunning = false;
	StopSteppingWhenIdle();
	OnSizeEnd(finished);
}

void TSlideableView::FinishSlideNow() {
	const TPtr<TSlideableView> keepAlive(this);
	if (mMove.mRunning) {
		SetPosition(mMove.mTarget.mX, mMove.mTarget.mY);
		OnSlideProgress(true, true);
		EndMove(true);
	}
	if (mSizing.mRunning) {
		SetSize(mSizing.mTarget.mX, mSizing.mTarget.mY);
		OnSlideProgress(true, true);
		EndSizing(true);
	}
}
