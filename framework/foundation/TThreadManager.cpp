// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TThreadManager.h"

#include "framework/foundation/TCommandPoolAllocator.h"

#include <algorithm>
#include <mutex>
#include <optional>

namespace {

constinit std::atomic<uint64_t> sLastManagerId{0};
constinit std::atomic<uint64_t> sLastThreadId{0};

uint64_t CurrentThreadId() noexcept {
	uint64_t& id = TThreadState::OfThisThread().mThreadId;
	if (id == 0)
		id = sLastThreadId.fetch_add(1, std::memory_order_relaxed) + 1;
	return id;
}

bool IsFullRole(const TThreadManager::TLocalThreadInfo& info) noexcept {
	return info.mThreadIndex != kNoThread && info.mWorkerIndex == -1;
}

bool AreEqual(const TThreadManager::TLocalThreadInfo& a, const TThreadManager::TLocalThreadInfo& b) noexcept {
	return a.mThreadIndex == b.mThreadIndex && a.mWorkerIndex == b.mWorkerIndex;
}

} // namespace

constinit const TThreadManager::TNode TThreadManager::sNobody{};

TThreadManager::TThreadManager() : mId(sLastManagerId.fetch_add(1, std::memory_order_relaxed) + 1) {
	Attach(kMainThread);
}

TThreadManager::~TThreadManager() {
	const TNode* readyBegin = mReadyNodes.data();
	const TNode* readyEnd = readyBegin + mReadyNodes.size();
	for (std::atomic<TNode*>& bucket : mBuckets) {
		for (TNode* node = bucket.load(); node;) {
			TNode* next = node->mpNext;
			if (std::less<const TNode*> before; before(node, readyBegin) || !before(node, readyEnd))
				delete node;
			node = next;
		}
	}
}

void TThreadManager::Attach(int32_t index) {
	TCriticalSection::TGuard guard(Lock(index));
	mIsAttached[Slot(index)].store(true);
	SetLocalInfo({index, -1});
}

void TThreadManager::Detach(int32_t index) {
	mIsAttached[Slot(index)].store(false);
	SetLocalInfo({});
}

const TThreadManager::TNode& TThreadManager::FindNode() const noexcept {
	const uint64_t threadId = CurrentThreadId();
	// The acquire pairs with the release of MakeNode: other threads' nodes stand in the chain, too.
	const TNode* node = Bucket(threadId).load(std::memory_order_acquire);
	while (node && node->mThreadId != threadId)
		node = node->mpNext;
	if (!node)
		node = &sNobody;
	TThreadState::OfThisThread().RoleEntry(mId) = {mId, node};
	return *node;
}

TThreadManager::TNode& TThreadManager::MakeNode() {
	const std::size_t ready = mReadyNodesTaken.fetch_add(1, std::memory_order_relaxed);
	TNode* node = ready < mReadyNodes.size() ? &mReadyNodes[ready] : new TNode;
	node->mThreadId = CurrentThreadId();
	std::atomic<TNode*>& bucket = Bucket(node->mThreadId);
	node->mpNext = bucket.load(std::memory_order_relaxed);
	while (!bucket.compare_exchange_weak(node->mpNext, node, std::memory_order_release, std::memory_order_relaxed)) {
	}
	TThreadState::OfThisThread().RoleEntry(mId) = {mId, node};
	return *node;
}

void TThreadManager::SetLocalInfo(TLocalThreadInfo info) {
	TCommandPoolAllocator::SetOfThisThread(nullptr);
	const TNode& known = LocalNode();
	TNode& node = &known == &sNobody ? MakeNode() : const_cast<TNode&>(known); // only sNobody is really constant
	node.mInfo = info;
	node.mRole = info.mWorkerIndex == -1 ? info.mThreadIndex : kNoThread;
}

void TThreadManager::ChangeRole(TLocalThreadInfo from, TLocalThreadInfo to) {
	std::optional<TCriticalSection::TGuard> guard;
	if (to.mThreadIndex != kNoThread)
		guard.emplace(Lock(to.mThreadIndex));
	if (IsFullRole(from))
		mIsAttached[Slot(from.mThreadIndex)].store(false);
	if (IsFullRole(to))
		mIsAttached[Slot(to.mThreadIndex)].store(true);
	SetLocalInfo(to);
}

TThreadManager::TScope::TScope(int32_t index, int32_t workerIndex) : mNew{index, workerIndex} {
	TThreadManager* manager = TThreadManager::Instance();
	mOld = manager->LocalInfo();
	if (!AreEqual(mNew, mOld))
		manager->ChangeRole(mOld, mNew);
}

void TThreadManager::TScope::Release() {
	if (mReleased)
		return;
	mReleased = true;
	if (AreEqual(mNew, mOld))
		return;
	if (TThreadManager* manager = TThreadManager::Instance())
		manager->ChangeRole(mNew, mOld);
}
