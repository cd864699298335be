// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/Framework.h"

#include "framework/foundation/commands/TCommandPoolGlobals.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/process/TMemoryLowMemoryWarningCommand.h"
#include "framework/foundation/process/TStructuredExceptionHandler.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/TRandom.h"
#include "framework/foundation/values/TSineTables.h"
#include "framework/foundation/values/TStopwatch.h"

#include <array>
#include <atomic>
#include <mutex>
#include <span>
#include <thread>
#include <utility>

namespace {

std::mutex sLock;
int sUsers = 0; // host formats with live instances; under sLock
bool sIsSeeded = false;
std::atomic<int> sNumberOfProcessors{1};

/// Once for the process: later instances go on from where the earlier ones have got to.
void SeedRandomGenerator() {
	if (!std::exchange(sIsSeeded, true))
		TRandom::SetState(static_cast<uint32_t>(MicrosecondClock()) ^ 0x1837485u);
}

void ReadProcessorCount() {
	const unsigned int count = std::thread::hardware_concurrency();
	if (count == 0)
		TLog::Instance()->LogText("System", "Failed to query host_info. Assume running on 1 CPU");
	sNumberOfProcessors = count == 0 ? 1 : static_cast<int>(count);
}

template <class T>
void Create() {
	T::Create([] { return new T; }, [](T* object) { delete object; });
}

struct TService {
	void (*mStart)();
	void (*mEnd)();
	bool mOncePerProcess;
};

void DoNothing() {}

constexpr auto kServices = std::to_array<TService>({
    {&ReadProcessorCount, &DoNothing, true},
    {&TSineTables::Fill, &DoNothing, true},
    {&Create<TThreadManager>, &TThreadManager::Destroy, false},
    {&Create<TThreadCommunicator>, &TThreadCommunicator::Destroy, false},
    {&Create<TSystemGlobals>, &TSystemGlobals::Destroy, false},
    {&TString::SetupStrings, &TString::CleanupStrings, true},
    {&DoNothing, &Folders::Forget, true},
    {&DoNothing, &TLog::Drop, true},
    {&TOutOfMemoryException::PrepareMessage, &TOutOfMemoryException::ReleaseMessage, true},
    {&TStructuredExceptionHandler::Create, &TStructuredExceptionHandler::Destroy, true},
    {&Create<TCommandPoolGlobals>, &TCommandPoolGlobals::Destroy, false},
});

void EndServices(std::span<const TService> services, bool alsoOfTheProcess) {
	for (auto service = services.rbegin(); service != services.rend(); ++service)
		if (alsoOfTheProcess || !service->mOncePerProcess)
			service->mEnd();
}

void StartServices(bool alsoOfTheProcess) {
	std::size_t started = 0;
	try {
		for (; started < kServices.size(); ++started)
			if (alsoOfTheProcess || !kServices[started].mOncePerProcess)
				kServices[started].mStart();
	} catch (...) {
		EndServices(std::span(kServices).first(started), alsoOfTheProcess);
		throw;
	}
}

} // namespace

void InitializeFramework() {
	std::lock_guard guard(sLock);
	SeedRandomGenerator();
	StartServices(sUsers == 0);
	++sUsers;
	Memory::SetLowMemoryListener(&TMemoryLowMemoryWarningCommand::Post);
	TReferenceCountable::SetPostDeletion(&TThreadCommunicator::PostDeletion);
}

void FinalizeFramework() {
	std::lock_guard guard(sLock);
	TThreadCommunicator::Instance()->FlushAllCommands();
	const bool isLast = --sUsers == 0;
	if (isLast)
		TReferenceCountable::SetPostDeletion(nullptr);
	EndServices(kServices, isLast);
}

int NumberOfProcessors() noexcept {
	return sNumberOfProcessors;
}
