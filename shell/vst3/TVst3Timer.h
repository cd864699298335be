// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/gui/iplugview.h>

#include <atomic>

/// A repeating timer in the host's run loop. Main thread. A host may keep the object longer than it is wanted and call
/// it once more after Stop: nothing happens then.
class TVst3Timer final : public Steinberg::Linux::ITimerHandler {
public:
	class TTarget {
	public:
		virtual void OnTimer() noexcept = 0;

	protected:
		~TTarget() = default;
	};

	/// Null if the host has no run loop or refuses. The target must live until Stop.
	static Steinberg::IPtr<TVst3Timer> Start(Steinberg::FUnknown* host, TTarget* target, int milliseconds);
	void Stop();

	void PLUGIN_API onTimer() override;
	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override;
	Steinberg::uint32 PLUGIN_API addRef() override;
	Steinberg::uint32 PLUGIN_API release() override;

private:
	TVst3Timer(Steinberg::Linux::IRunLoop* runLoop, TTarget* target);
	~TVst3Timer() = default;

	std::atomic<Steinberg::int32> mReferenceCount{1};
	Steinberg::IPtr<Steinberg::Linux::IRunLoop> mpRunLoop;
	TTarget* mpTarget;
};
