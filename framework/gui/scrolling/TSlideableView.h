// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/views/TView.h"

/// A view that can go to another place or size smoothly: each step covers a fixed share of the way that is left, so the
/// speed does not depend on the frame rate. Main thread.
class TSlideableView : public TView {
public:
	~TSlideableView() override;

	/// Once per step.
	virtual void OnSlideProgress(bool /*xChanged*/, bool /*yChanged*/) {}

	virtual void OnMoveBegin(int /*fromX*/, int /*fromY*/) {}

	virtual void OnSizeBegin(int /*fromWidth*/, int /*fromHeight*/) {}

	/// finished: it was brought to its end at once.
	virtual void OnMoveEnd(bool /*finished*/) {}

	virtual void OnSizeEnd(bool /*finished*/) {}

	void SlideTo(TPointT<int> point);
	void SlideSizeTo(TPointT<int> size);
	/// Larger is slower; up to 1 arrives with the first step.
	void SetSpeed(float speed) noexcept { mSpeed = speed; }

	float Speed() const noexcept { return mSpeed; }

	bool IsSliding() const noexcept { return mMove.mRunning || mSizing.mRunning; }

	TPointT<int> CurrentTargetPosition() const noexcept { return mMove.mRunning ? mMove.mTarget : Position(); }

	/// While it is not 0 everything arrives at once.
	void SetPauseCount(int count) noexcept { mPauseCount = count; }

	int PauseCount() const noexcept { return mPauseCount; }

	void FinishSlideNow();

private:
	/// A point under way.
	struct TSlide {
		TPointT<int> mStart;
		TPointT<int> mTarget;
		float mX = 0.0f;
		float mY = 0.0f;
		bool mRunning = false;

		void Begin(TPointT<int> from, TPointT<int> to);
		void Advance(float divisor);

		TPointT<int> Rounded() const;

		bool HasArrived() const;
	};

	void Step();
	void StartStepping();
	void StopSteppingWhenIdle();
	void StepMove(float divisor, TPointT<bool>& changed);
	void StepSize(float divisor, TPointT<bool>& changed);
	void EndMove(bool finished);
	void EndSizing(bool finished);

	TStopwatch mClock;
	float mSpeed = 12.0f; // in ticks of 10 ms
	TSlide mMove;
	TSlide mSizing;
	int mPauseCount = 0;
};
