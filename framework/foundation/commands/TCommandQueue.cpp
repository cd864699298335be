// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommandQueue.h"

#include <utility>

void TCommandQueue::Push(TCommand* command) noexcept {
	command->RetainUnshared();
	TCommandLink* link = command;
	TCommandLink* head = mHead.load();
	do
		link->mpNext = head;
	while (!mHead.compare_exchange_weak(head, link));
}

TCommandLink* TCommandQueue::TakeAll() noexcept {
	TCommandLink* link = mHead.exchange(nullptr);
	TCommandLink* inOrder = nullptr;
	while (link) {
		TCommandLink* next = std::exchange(link->mpNext, inOrder);
		inOrder = std::exchange(link, next);
	}
	return inOrder;
}

void TCommandQueue::Drain() {
	if (IsHeld() || IsEmpty() || mProcessing.load() > 0)
		return;
	mProcessing.fetch_add(1);
	for (TCommandLink* link = TakeAll(); link;) {
		TCommand* command = link->Command();
		link = std::exchange(link->mpNext, nullptr);
		try {
			command->Execute();
		} catch (...) { // the next command must run all the same
		}
		command->Discharge();
	}
	mProcessing.fetch_sub(1);
}

void TCommandQueue::Drop() {
	for (TCommandLink* link = TakeAll(); link;) {
		TCommand* command = link->Command();
		link = std::exchange(link->mpNext, nullptr);
		command->OnDropped();
		command->Discharge();
	}
}
