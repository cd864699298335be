// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const auto kDocument = MakePtr<TVortelDocument>();
	if (FuzzFramework::LoadAndCheck(*kDocument->ActiveProgram(), FuzzFramework::StreamOf(data, size)))
		FuzzFramework::UseEverything(*kDocument);
	return 0;
}
