// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/instance/TThreadState.h"
#include "framework/foundation/threads/TCriticalSection.h"
#include "framework/foundation/threads/TTurnLock.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

/// Logical threads: the roles that the host's anonymous threads play while they are inside the plug-in.
inline constexpr int32_t kNoThread = -1;
inline constexpr int32_t kAudioThread = 2; // whichever thread is inside a host's process call
inline constexpr int32_t kMainThread = 3;  // the GUI, and everything else that the host calls
inline constexpr int32_t kNumberOfThreads = 7;

/// Knows which role each thread of the process plays in this instance. The thread that creates it plays the main
/// thread. Asking is free of locks and cheap; taking a role takes the role's lock, which keeps a thread that
/// impersonates an idle role (TThreadCommunicator::WaitForThread) and the real one apart.
///
/// The main role is for one thread at a time: TScope waits for its turn, and keeps it while it stands, whatever role
/// the thread plays further in. TReleasedScope lets others in while the thread waits for something. No other role
/// waits for the main one, the audio role least of all.
class TThreadManager final : public TSingleton<TThreadManager> {
public:
	struct TLocalThreadInfo {
		int32_t mThreadIndex = kNoThread;
		int32_t mWorkerIndex = -1; // not -1: a worker of mThreadIndex
	};

	/// What a scope does while another thread plays the main role.
	enum class TPatience : int32_t {
		kWait, // at most kLongestWait, then it throws std::runtime_error
		kNone  // comes to nothing
	};

	static constexpr TTurnLock::TLimit kLongestWait{10000};

	class TScope;
	class THostScope;
	class TReleasedScope;

	TThreadManager();
	~TThreadManager() override;

	/// The calling thread's role; kNoThread if it has none or is a worker.
	int32_t CurrentThread() const noexcept { return LocalNode().mRole; }

	bool IsCurrentThread(int32_t index) const noexcept { return CurrentThread() == index; }

	bool IsWorkerOf(int32_t index) const noexcept {
		const TLocalThreadInfo info = LocalInfo();
		return info.mWorkerIndex != -1 && info.mThreadIndex == index;
	}

	int32_t CurrentWorkerIndex() const noexcept { return LocalInfo().mWorkerIndex; }

	/// The role that the calling worker works for; kNoThread if it is no worker.
	int32_t CurrentOwnerThread() const noexcept {
		const TLocalThreadInfo info = LocalInfo();
		return info.mWorkerIndex != -1 ? info.mThreadIndex : kNoThread;
	}

	/// The calling thread's role and worker index together.
	TLocalThreadInfo LocalInfo() const noexcept { return LocalNode().mInfo; }

	/// Whether some thread plays the role now.
	bool IsAttached(int32_t index) const noexcept { return mHolders[Slot(index)].load() > 0; }

	/// Gives the calling thread the role, without waiting for a turn. For a call from a host use THostScope.
	void Attach(int32_t index);
	void Detach();

	/// The lock of a role; held while a role is taken. Taken before the drain lock of the same index.
	TCriticalSection& Lock(int32_t index) { return mLocks[Slot(index)]; }

private:
	struct TNode {
		TLocalThreadInfo mInfo; // this and the role: only its own thread reads and writes them
		int32_t mRole = kNoThread;
		uint64_t mThreadId = 0;
		TNode* mpNext = nullptr;
	};

	static constexpr std::size_t kNumberOfBuckets = 64;
	static constexpr std::size_t kNumberOfReadyNodes = 64;

	static constexpr std::size_t Slot(int32_t index) noexcept { return static_cast<std::size_t>(index); }

	std::atomic<TNode*>& Bucket(uint64_t threadId) const noexcept { return mBuckets[threadId % kNumberOfBuckets]; }

	/// The calling thread's node; sNobody if it has had no role yet.
	const TNode& LocalNode() const noexcept {
		const TThreadState::TRoleEntry& cached = TThreadState::OfThisThread().RoleEntry(mId);
		return cached.mManagerId == mId ? *static_cast<const TNode*>(cached.mpNode) : FindNode();
	}

	const TNode& FindNode() const noexcept;
	TNode& MakeNode();
	void SetLocalInfo(TLocalThreadInfo info);
	void ChangeRole(TLocalThreadInfo to);

	// Ids of managers and of threads are never reused, so what a thread has cached of a manager that is gone, or a
	// manager still holds of a thread that is gone, is never mistaken for another's.
	static const TNode sNobody;

	const uint64_t mId;
	std::array<TCriticalSection, kNumberOfThreads> mLocks;
	std::array<std::atomic<int32_t>, kNumberOfThreads> mHolders{}; // threads that play each role
	TTurnLock mMainTurn;
	mutable std::array<std::atomic<TNode*>, kNumberOfBuckets> mBuckets{};
	// The first threads cost no allocation, since it may be the audio thread that comes in for the first time.
	std::array<TNode, kNumberOfReadyNodes> mReadyNodes;
	std::atomic<std::size_t> mReadyNodesTaken{0};
};

/// Gives the calling thread a role for the guard's life. For a call from a host: THostScope.
class [[nodiscard]] TThreadManager::TScope {
public:
	explicit TScope(int32_t index, int32_t workerIndex = -1, TPatience patience = TPatience::kWait);

	~TScope() { Release(); }

	TScope(const TScope&) = delete;
	TScope& operator=(const TScope&) = delete;

	/// False where there was no patience and another thread plays the main role: nothing has changed then.
	bool IsTaken() const { return !mReleased; }

	/// Gives the role back early.
	void Release();

private:
	TThreadManager& mManager;
	TLocalThreadInfo mNew;
	TLocalThreadInfo mOld;
	bool mHasTurn = false;
	bool mReleased = false;
};

/// Around every call from a host: takes what role the thread has, because a host may make any call on any thread, and
/// then gives it the role of the call.
class [[nodiscard]] TThreadManager::THostScope {
public:
	explicit THostScope(int32_t index, TPatience patience = TPatience::kWait) : mRole(index, -1, patience) {}

	bool IsTaken() const { return mRole.IsTaken(); }

private:
	TScope mNoRole{kNoThread};
	TScope mRole;
};

/// Lets other threads play the main role while the calling one waits for something that may take long, for instance
/// the next event of a modal dialog. The thread has no role meanwhile and gets back what it had, when its turn has
/// come. Any number of TScopes may stand around it and inside it. What the document was like must not be relied on
/// afterwards.
///
///     while (!isDone) {
///         {
///             const TThreadManager::TReleasedScope released;
///             WaitForEvent();
///         }
///         HandleEvents();
///     }
class [[nodiscard]] TThreadManager::TReleasedScope {
public:
	TReleasedScope();
	~TReleasedScope();

	TReleasedScope(const TReleasedScope&) = delete;
	TReleasedScope& operator=(const TReleasedScope&) = delete;

private:
	TThreadManager& mManager;
	const TLocalThreadInfo mOld;
	const int32_t mLevels; // of the main role's turn
};
