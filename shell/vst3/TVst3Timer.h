// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/gui/iplugview.h>

#include <atomic>

/// A repeating timer in the host's run loop, which can also come early: when something is to be read at a descriptor.
/// Main thread. A host may keep the object longer than it is wanted and call it once more after Stop: nothing happens
/// then. Nothing may depend on the descriptor alone: some hosts forget it, or serve it once.
class TVst3Timer final : public Steinberg::Linux::ITimerHandler, public Steinberg::Linux::IEventHandler {
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

	/// One at a time. A refusal is no failure; -1 is none.
	void Watch(int descriptor);
	/// Not from inside a call for the descriptor: some hosts walk their list meanwhile.
	void StopWatching();

	void PLUGIN_API onTimer() override;
	void PLUGIN_API onFDIsSet(Steinberg::Linux::FileDescriptor descriptor) override;
	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override;
	Steinberg::uint32 PLUGIN_API addRef() override;
	Steinberg::uint32 PLUGIN_API release() override;

private:
	TVst3Timer(Steinberg::Linux::IRunLoop* runLoop, TTarget* target);
	~TVst3Timer() = default;

	std::atomic<Steinberg::int32> mReferenceCount{1};
	Steinberg::IPtr<Steinberg::Linux::IRunLoop> mpRunLoop;
	TTarget* mpTarget;
	bool mIsWatching = false;
};
