// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/threads/TThreadManager.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>

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
	SetLocalInfo({index, -1});
}

void TThreadManager::Detach() {
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

// Of every call from a host: inline, so that what is known of the thread is looked up once for all.
inline void TThreadManager::SetLocalInfo(TLocalThreadInfo info) {
	TThreadState::OfThisThread().LeaveCommandPool();
	const TNode& known = LocalNode();
	TNode& node = &known == &sNobody ? MakeNode() : const_cast<TNode&>(known); // only sNobody is really constant
	if (IsFullRole(node.mInfo))
		mHolders[Slot(node.mInfo.mThreadIndex)].fetch_sub(1);
	if (IsFullRole(info))
		mHolders[Slot(info.mThreadIndex)].fetch_add(1);
	node.mInfo = info;
	node.mRole = info.mWorkerIndex == -1 ? info.mThreadIndex : kNoThread;
}

inline void TThreadManager::ChangeRole(TLocalThreadInfo to) {
	if (to.mThreadIndex == kNoThread)
		return SetLocalInfo(to);
	const TCriticalSection::TGuard guard(Lock(to.mThreadIndex));
	SetLocalInfo(to);
}

TThreadManager::TScope::TScope(int32_t index, int32_t workerIndex, TPatience patience)
    : mManager(*TThreadManager::Instance()),
      mNew{index, workerIndex},
      mOld(mManager.LocalInfo()) {
	if (index == kMainThread && workerIndex == -1) {
		mHasTurn = mManager.mMainTurn.Take(patience == TPatience::kWait ? kLongestWait : TTurnLock::TLimit::zero());
		mReleased = !mHasTurn;
		if (mReleased && patience == TPatience::kWait)
			throw std::runtime_error("Timeout while waiting for another thread that works on the document.");
	}
	if (!mReleased && !AreEqual(mNew, mOld))
		mManager.ChangeRole(mNew);
}

void TThreadManager::TScope::Release() {
	if (mReleased)
		return;
	mReleased = true;
	// The instance may have ended inside, which is main threads' work.
	if (mNew.mThreadIndex != kAudioThread && TThreadManager::Instance() != &mManager)
		return;
	if (!AreEqual(mNew, mOld))
		mManager.ChangeRole(mOld);
	if (mHasTurn)
		mManager.mMainTurn.GiveBack();
}

TThreadManager::TReleasedScope::TReleasedScope()
    : mManager(*TThreadManager::Instance()),
      mOld(mManager.LocalInfo()),
      mLevels(mManager.mMainTurn.GiveUp()) {
	mManager.ChangeRole({});
}

TThreadManager::TReleasedScope::~TReleasedScope() {
	if (TThreadManager::Instance() != &mManager)
		return;
	if (mLevels > 0)
		mManager.mMainTurn.TakeAgain(mLevels);
	mManager.ChangeRole(mOld);
}
