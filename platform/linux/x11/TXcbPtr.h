// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

struct TXcbFree {
	void operator()(void* memory) const noexcept { std::free(memory); }
};

/// Replies, errors and events come from malloc.
template <class T>
using TXcbPtr = std::unique_ptr<T, TXcbFree>;

using TXcbEvent = TXcbPtr<xcb_generic_event_t>;

/// The number of the request of ours that the server had handled last when it made the event.
template <class TEvent>
uint32_t FullSequence(const TEvent& event) {
	return reinterpret_cast<const xcb_generic_event_t&>(event).full_sequence;
}
