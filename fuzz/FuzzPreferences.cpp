// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelPrefs.h"
#include "fuzz/FuzzFramework.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	if (!TVortelPrefs::Instance())
		TVortelPrefs::Create(); // nobody has said where folders lie, so there is no file
	FuzzFramework::LoadAndCheck(*TVortelPrefs::Instance(), FuzzFramework::StreamOf(data, size));
	return 0;
}
