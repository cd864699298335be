// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3Timer.h"

#include "shell/vst3/Vst3Interfaces.h"

#include <utility>

using namespace Steinberg;

IPtr<TVst3Timer> TVst3Timer::Start(FUnknown* host, TTarget* target, int milliseconds) {
	const auto runLoop = AskFor<Linux::IRunLoop>(host, Linux::IRunLoop_iid);
	if (!runLoop)
		return {};
	IPtr<TVst3Timer> timer = owned(new TVst3Timer(runLoop, target));
	if (runLoop->registerTimer(timer, static_cast<Linux::TimerInterval>(milliseconds)) != kResultOk)
		return {};
	return timer;
}

TVst3Timer::TVst3Timer(Linux::IRunLoop* runLoop, TTarget* target) : mpRunLoop(runLoop), mpTarget(target) {}

void TVst3Timer::Stop() {
	mpTarget = nullptr;
	StopWatching();
	if (const IPtr<Linux::IRunLoop> runLoop = std::exchange(mpRunLoop, nullptr))
		runLoop->unregisterTimer(this);
}

void TVst3Timer::Watch(int descriptor) {
	StopWatching();
	if (mpRunLoop && descriptor >= 0)
		mIsWatching = mpRunLoop->registerEventHandler(this, descriptor) == kResultOk;
}

void TVst3Timer::StopWatching() {
	if (std::exchange(mIsWatching, false) && mpRunLoop)
		mpRunLoop->unregisterEventHandler(this);
}

// What the target does may stop the timer and take the last reference.
void PLUGIN_API TVst3Timer::onTimer() {
	const IPtr<TVst3Timer> keep(this);
	if (mpTarget)
		mpTarget->OnTimer();
}

void PLUGIN_API TVst3Timer::onFDIsSet(Linux::FileDescriptor /*descriptor*/) {
	onTimer();
}

tresult PLUGIN_API TVst3Timer::queryInterface(const TUID interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	*object = nullptr;
	const bool isOffered = Offer<Linux::ITimerHandler>(this, FUnknown_iid, interfaceId, object) ||
	                       Offer<Linux::ITimerHandler>(this, Linux::ITimerHandler_iid, interfaceId, object) ||
	                       Offer<Linux::IEventHandler>(this, Linux::IEventHandler_iid, interfaceId, object);
	return isOffered ? kResultOk : kNoInterface;
}

uint32 PLUGIN_API TVst3Timer::addRef() {
	return static_cast<uint32>(mReferenceCount.fetch_add(1) + 1);
}

uint32 PLUGIN_API TVst3Timer::release() {
	const int32 left = mReferenceCount.fetch_sub(1) - 1;
	if (left == 0)
		delete this;
	return static_cast<uint32>(left);
}
