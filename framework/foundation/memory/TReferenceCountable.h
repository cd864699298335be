// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

/// Base of every object that is shared by counted references (TPtr).
///
/// The count starts at 0; the first TPtr makes it 1. When the last reference goes, the count becomes -1 for good:
/// a count below 0 is how other code recognises an object that is being destroyed. Counting is safe on any thread.
/// Storage comes from Memory::Allocate under the tag "TReferenceCountable".
class TReferenceCountable {
public:
	/// Has the object deleted on the main thread; false if it is to be deleted where it is.
	using TPostDeletion = bool (*)(TReferenceCountable* object);

	/// While the framework runs; null else. For the process.
	static void SetPostDeletion(TPostDeletion post) noexcept;

	TReferenceCountable() = default;

	TReferenceCountable(const TReferenceCountable&) noexcept {} // a copy is a new object that nobody holds yet

	TReferenceCountable& operator=(const TReferenceCountable&) noexcept { return *this; }

	virtual ~TReferenceCountable() = default;

	/// True: the last release on any thread but the main one posts the deletion to the main thread (while the
	/// framework runs). False: the object dies where its last reference went.
	virtual bool IsDeletedOnMainThread() const { return true; }

	/// Called once, when the count has become -1. False postpones the deletion; whoever postpones it finishes it.
	virtual bool PrepareForDeletion();

	void Retain() const noexcept { mReferenceCount.fetch_add(1, std::memory_order_seq_cst); }

	void Release() const {
		if (mReferenceCount.fetch_sub(1, std::memory_order_seq_cst) == 1)
			const_cast<TReferenceCountable*>(this)->OnLastReferenceGone();
	}

	int32_t ReferenceCount() const noexcept { return mReferenceCount.load(std::memory_order_seq_cst); }

	bool IsBeingDestroyed() const noexcept { return ReferenceCount() < 0; }

	static void* operator new(std::size_t size);
	static void* operator new(std::size_t size, std::align_val_t alignment);

	static void* operator new(std::size_t, void* place) noexcept { return place; }

	static void operator delete(void* memory) noexcept;
	static void operator delete(void* memory, std::align_val_t alignment) noexcept;

	static void operator delete(void*, void*) noexcept {}

protected:
	/// Deletes now, or on the main thread if IsDeletedOnMainThread asks for that. For who has postponed the deletion.
	void DeleteOnItsThread();

	/// Retain without a locked instruction where nobody else has a reference yet.
	void RetainUnshared() const noexcept {
		if (mReferenceCount.load(std::memory_order_relaxed) == 0)
			mReferenceCount.store(1, std::memory_order_relaxed);
		else
			Retain();
	}

private:
	void OnLastReferenceGone();

	mutable std::atomic<int32_t> mReferenceCount{0};
};
