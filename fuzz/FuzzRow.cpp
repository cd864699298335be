// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelSequence.h"
#include "fuzz/FuzzFramework.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	TVortelSequence row;
	row.FromString(FuzzFramework::TextOf(data, size));
	const TString text = row.ToString();
	FuzzFramework::Require(text.Length() == (row.IsEmpty() ? 0 : TVortelSequence::kNumberOfSteps));
	TVortelSequence again;
	again.FromString(text);
	FuzzFramework::Require(again.ToString() == text);
	row.MirrorHorizontally(static_cast<int32_t>(size % (TVortelSequence::kNumberOfSteps + 1)));
	row.Mutate(static_cast<int32_t>(size % (TVortelSequence::kNumberOfSteps + 1)), 1 + static_cast<int32_t>(size % 8));
	FuzzFramework::Require(row.ToString().Length() <= TVortelSequence::kNumberOfSteps);
	return 0;
}
