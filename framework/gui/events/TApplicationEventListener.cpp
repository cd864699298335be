// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/events/TApplicationEventListener.h"

#include "framework/gui/events/TApplicationEventQueue.h"

TApplicationEventListener::TApplicationEventListener() {
	if (TApplicationEventQueue* queue = TApplicationEventQueue::Instance())
		queue->RegisterListener(this);
}

TApplicationEventListener::~TApplicationEventListener() {
	if (TApplicationEventQueue* queue = TApplicationEventQueue::Instance())
		queue->UnregisterListener(this);
}
