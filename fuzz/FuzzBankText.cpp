// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"
#include "tools/vortel2/documents/TBankSource.h"
#include "tools/vortel2/files/ToolErrors.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const auto kDocument = MakePtr<TVortelDocument>();
	try {
		const TBankSource source("bank.txt", std::string(reinterpret_cast<const char*>(data), size));
		kDocument->InitAllPrograms();
		source.ApplyTo(*kDocument);
	} catch (const TWorkError&) {
	}
	FuzzFramework::UseEverything(*kDocument);
	return 0;
}
