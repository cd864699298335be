// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/x11/TXcbPtr.h"

#include <chrono>
#include <utility>
#include <xcb/xcbext.h>

/// Something that is asked of the server now and again without waiting for the answer. An answer is handed out a round
/// later, when the events that were on their way with it have been handled, and only if it is no older than what is
/// known from events.
template <class TReply>
class TX11Question {
public:
	/// Not while one is under way, and not more often than anybody needs.
	bool IsDue() const { return !mpXcb && TClock::now() >= mNext; }

	void Ask(xcb_connection_t* xcb, unsigned sequence) {
		mpXcb = xcb;
		mSequence = sequence;
		mNext = TClock::now() + kPause;
	}

	/// `newest` is the sequence of the last event that told the same.
	TXcbPtr<TReply> TakeAnswer(uint32_t newest) {
		const bool isNews = static_cast<int32_t>(newest - mSequence) < 0;
		TXcbPtr<TReply> answer = std::exchange(mpAnswer, nullptr);
		void* reply = nullptr;
		xcb_generic_error_t* error = nullptr;
		if (mpXcb && xcb_poll_for_reply(mpXcb, mSequence, &reply, &error)) {
			mpXcb = nullptr;
			mpAnswer.reset(static_cast<TReply*>(reply));
			std::free(error);
		}
		return isNews ? std::move(answer) : nullptr;
	}

	/// Before the connection ends.
	void Drop() {
		if (mpXcb)
			xcb_discard_reply(std::exchange(mpXcb, nullptr), mSequence);
		mpAnswer = nullptr;
	}

private:
	using TClock = std::chrono::steady_clock;

	static constexpr std::chrono::milliseconds kPause{20};

	xcb_connection_t* mpXcb = nullptr; // while one is under way
	unsigned mSequence = 0;
	TXcbPtr<TReply> mpAnswer; // to be handed out
	TClock::time_point mNext;
};
