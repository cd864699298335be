// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"

#include <string_view>

// A chunk as a host hands it in, to the program if it says that it is one, else to the bank: nothing is thrown, the
// document is whole, and it can be saved again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const auto kDocument = MakePtr<TVortelDocument>();
	const std::string_view text(reinterpret_cast<const char*>(data), size);
	const bool isProgram = text.find("<VortelProgram") != std::string_view::npos;
	const TStream chunk = FuzzFramework::StreamOf(data, size);
	TStream saved;
	if (isProgram) {
		kDocument->LoadProgramChunk(chunk);
		kDocument->SaveProgramChunk(saved);
	} else {
		kDocument->LoadBankChunk(chunk);
		kDocument->SaveBankChunk(saved);
	}
	FuzzFramework::Require(!kDocument->IsLoading() && !saved.IsEmpty());
	FuzzFramework::UseEverything(*kDocument);
	return 0;
}
