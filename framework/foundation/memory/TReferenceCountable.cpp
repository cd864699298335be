// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TReferenceCountable.h"

#include "framework/foundation/memory/Memory.h"

namespace {

constinit std::atomic<TReferenceCountable::TPostDeletion> sPostDeletion{nullptr};

} // namespace

void TReferenceCountable::SetPostDeletion(TPostDeletion post) noexcept {
	sPostDeletion.store(post);
}

bool TReferenceCountable::PrepareForDeletion() {
	return true;
}

void TReferenceCountable::OnLastReferenceGone() {
	mReferenceCount.store(-1, std::memory_order_seq_cst);
	if (PrepareForDeletion())
		DeleteOnItsThread();
}

void TReferenceCountable::DeleteOnItsThread() {
	const TPostDeletion post = IsDeletedOnMainThread() ? sPostDeletion.load() : nullptr;
	if (!post || !post(this))
		delete this;
}

void* TReferenceCountable::operator new(std::size_t size) {
	return Memory::Allocate("TReferenceCountable", size);
}

void* TReferenceCountable::operator new(std::size_t size, std::align_val_t alignment) {
	return Memory::AllocateAligned("TReferenceCountable", size, static_cast<std::size_t>(alignment));
}

void TReferenceCountable::operator delete(void* memory) noexcept {
	Memory::Free(memory);
}

void TReferenceCountable::operator delete(void* memory, std::align_val_t) noexcept {
	Memory::FreeAligned(memory);
}
