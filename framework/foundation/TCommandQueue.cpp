// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandQueue.h"

#include <utility>

void TCommandQueue::Push(TCommand* command) noexcept {
	command->Retain();
	TCommand* head = mHead.load();
	do
		command->mpNext = head;
	while (!mHead.compare_exchange_weak(head, command));
}

TCommand* TCommandQueue::TakeAll() noexcept {
	TCommand* command = mHead.exchange(nullptr);
	TCommand* inOrder = nullptr;
	while (command) {
		TCommand* next = std::exchange(command->mpNext, inOrder);
		inOrder = std::exchange(command, next);
	}
	return inOrder;
}

void TCommandQueue::Drain() {
	if (IsHeld() || IsEmpty() || mProcessing.load() > 0)
		return;
	mProcessing.fetch_add(1);
	for (TCommand* command = TakeAll(); command;) {
		TCommand* next = std::exchange(command->mpNext, nullptr);
		try {
			command->Execute();
		} catch (...) { // the next command must run all the same
		}
		command->Release();
		command = next;
	}
	mProcessing.fetch_sub(1);
}

void TCommandQueue::Drop() {
	for (TCommand* command = TakeAll(); command;) {
		TCommand* next = std::exchange(command->mpNext, nullptr);
		command->Release();
		command = next;
	}
}
