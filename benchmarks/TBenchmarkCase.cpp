// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/TBenchmarkCase.h"

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"

#include <xmmintrin.h>

const std::vector<TBenchmarkCase::TEntry>& TBenchmarkCase::All() {
	return Entries();
}

std::vector<TBenchmarkCase::TEntry>& TBenchmarkCase::Entries() {
	static std::vector<TEntry> entries;
	return entries;
}

TBenchmarkCase::TRegistration::TRegistration(const std::string& name, TMaker make) {
	Entries().push_back({name, std::move(make)});
}

TBenchmarkEnvironment::TBenchmarkEnvironment() : mStorageId(TGlobalStorage::CreateStorage()) {
	constexpr unsigned kFlushToZero = 0x8000;
	_mm_setcsr(_mm_getcsr() | kFlushToZero);
	TGlobalStorage::SetCurrentId(mStorageId);
	InitializeFramework();
}

TBenchmarkEnvironment::~TBenchmarkEnvironment() {
	FinalizeFramework();
	TGlobalStorage::SetCurrentId(-1);
	TGlobalStorage::DestroyStorage(mStorageId);
}
