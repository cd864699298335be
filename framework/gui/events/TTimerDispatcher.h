// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "framework/gui/events/TListWalks.h"

#include <cstdint>

/// The timed callbacks of the toolkit. They come with frames and idle events, so a timer's resolution is one frame.
/// A callback belongs to who adds it, who removes it before its target dies. Main thread.
class TTimerDispatcher final : public TSingleton<TTimerDispatcher>, public TApplicationEventListener {
public:
	using TCallback = TFunctionPtr<void>;

	/// Ignored when the callback is listed already.
	void AddTimer(const TCallback& callback, int32_t milliseconds);
	void AddFrameTimer(const TCallback& callback, int32_t frames);
	/// Also from within a callback. Ignored when it is not listed.
	void RemoveTimer(const TCallback& callback);
	bool HasTimer(const TCallback& callback) const;

	bool HandleEvent(TApplicationEvent* event) override;

	static void CreateService();

private:
	struct TTimerClient {
		bool mInMilliseconds; // else in frames
		TCallback mCallback;
		float mElapsed;
		int32_t mInterval;

		void StartNextInterval();
	};

	void Add(TTimerClient client);
	int32_t IndexOf(const TCallback& callback) const;
	void Advance(bool isFrame);

	TStopwatch mStopwatch;
	TList<TTimerClient> mClients;
	TListWalks mWalks; // over the clients
};
