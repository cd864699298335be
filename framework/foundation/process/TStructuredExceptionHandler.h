// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TStlAllocator.h"

#include <csetjmp>
#include <deque>
#include <list>
#include <mutex>
#include <pthread.h>
#include <utility>

/// Guard frames: places to which a signal handler can jump back out of code that crashed. One per process, made and
/// dropped with the framework; any thread. Nothing here installs a signal handler: who does jumps to the thread's
/// TopFrame().
class TStructuredExceptionHandler {
public:
	struct TSigJmpBuffer {
		sigjmp_buf mBuffer;
	};

	TStructuredExceptionHandler();
	~TStructuredExceptionHandler();
	TStructuredExceptionHandler(const TStructuredExceptionHandler&) = delete;
	TStructuredExceptionHandler& operator=(const TStructuredExceptionHandler&) = delete;

	static void Create();
	static void Destroy();
	/// Null while the framework is down.
	static TStructuredExceptionHandler* Instance() noexcept;

	/// Appends a zeroed record to the calling thread's stack. The record stays where it is until PopFrame.
	TSigJmpBuffer* PushFrame();
	void PopFrame();
	/// The calling thread's innermost record, null if it is in no guarded call.
	TSigJmpBuffer* TopFrame() noexcept;

	/// Writes the call stack to the log, under "CrashLog". Returns true.
	bool ReportCrash();

	/// Runs the function inside a guard frame. False if it was left by a jump to the frame; the objects that it had on
	/// its stack are then not destroyed. An exception passes through.
	template <class TFunction>
	bool Guard(TFunction&& function);

private:
	// A deque, because records must not move while others are pushed.
	using TFrames = std::deque<TSigJmpBuffer, TStlAllocator<TSigJmpBuffer>>;

	struct TFrameScope {
		explicit TFrameScope(TStructuredExceptionHandler& handler) : mHandler(handler), mpFrame(handler.PushFrame()) {}

		~TFrameScope() { mHandler.PopFrame(); }

		TFrameScope(const TFrameScope&) = delete;
		TFrameScope& operator=(const TFrameScope&) = delete;

		TStructuredExceptionHandler& mHandler;
		TSigJmpBuffer* mpFrame;
	};

	TFrames& FramesOfThisThread();

	pthread_key_t mFramesKey{};
	std::mutex mAllFramesLock;
	std::list<TFrames, TStlAllocator<TFrames>> mAllFrames; // one per thread that ever pushed a frame
};

template <class TFunction>
bool TStructuredExceptionHandler::Guard(TFunction&& function) {
	TFrameScope scope(*this);
	if (sigsetjmp(scope.mpFrame->mBuffer, 1) != 0)
		return !ReportCrash();
	std::forward<TFunction>(function)();
	return true;
}
