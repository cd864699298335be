// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"

// A program chunk, then a bank chunk, as a host hands them in: nothing is thrown, and a bad program changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const auto kDocument = MakePtr<TVortelDocument>();
	const TStream chunk = FuzzFramework::StreamOf(data, size);
	kDocument->LoadProgramChunk(chunk);
	FuzzFramework::UseEverything(*kDocument);
	kDocument->LoadBankChunk(chunk);
	FuzzFramework::Require(!kDocument->IsLoading());
	FuzzFramework::UseEverything(*kDocument);
	TStream saved;
	kDocument->SaveBankChunk(saved);
	FuzzFramework::Require(!saved.IsEmpty());
	return 0;
}
