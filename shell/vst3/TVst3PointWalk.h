// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"
#include "shell/TAudioPluginShell.h"

#include <pluginterfaces/vst/ivstparameterchanges.h>

#include <cstdint>

/// Applies the points that a host sends for one parameter, each at its sample of the block. It is a single command that
/// goes from point to point, made once, so that a queue costs no memory, however many points it has.
///
/// Audio thread; made on any. A walk goes through one queue at a time and must not outlive its process call with it:
/// Finish.
class TVst3PointWalk final : public TCommand {
public:
	class TTarget {
	public:
		virtual void ApplyPoint(Steinberg::Vst::ParamID id, double value) = 0;
		/// Of a point, within the block that is being processed; below 1 means at once.
		virtual int32_t OffsetInBlock(int32_t offset) const = 0;

	protected:
		~TTarget() = default;
	};

	/// Both outlive whatever runs the schedule.
	TVst3PointWalk(TTarget& target, TAudioPluginShell::TEngine& engine, Steinberg::Vst::ParamID id)
	    : mTarget(target),
	      mEngine(engine),
	      mId(id) {}

	/// What is not to be waited for is applied here. Only while the walk is not scheduled, for points in order.
	void Start(Steinberg::Vst::IParamValueQueue& queue);
	/// On its way through a queue.
	bool IsUnderWay() const { return mpQueue != nullptr; }
	/// It waits in the engine's schedule, perhaps since an earlier block of which the engine did not come to the end.
	bool IsScheduled() const { return mIsScheduled; }
	/// Where the engine has not come to the end of the block, the last value is applied now.
	void Finish();

	void Execute() override;

	/// The next point from index on that has a value; index is then behind it. False at the end.
	static bool
	Read(Steinberg::Vst::IParamValueQueue& queue, Steinberg::int32& index, Steinberg::int32& offset, double& value);
	static bool IsInOrder(Steinberg::Vst::IParamValueQueue& queue);

private:
	bool ReadNext();
	bool ApplyThrough(int32_t offset);

	TTarget& mTarget;
	TAudioPluginShell::TEngine& mEngine;
	const Steinberg::Vst::ParamID mId;
	Steinberg::Vst::IParamValueQueue* mpQueue = nullptr;
	Steinberg::int32 mNextPoint = 0;
	int32_t mOffset = 0; // of the point that comes next, in the block
	double mValue = 0.0; // of that point
	bool mIsScheduled = false;
};
