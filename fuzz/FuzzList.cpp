// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TSerializableList.h"
#include "fuzz/FuzzFramework.h"

namespace {

template <class T>
void Check(const TString& text) {
	TSerializableList<T> list;
	list.FromString(text);
	TSerializableList<T> again;
	again.FromString(list.ToString());
	FuzzFramework::Require(again.Count() == list.Count());
	FuzzFramework::Require(again.ToString() == list.ToString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	const TString text = FuzzFramework::TextOf(data, size);
	Check<int>(text);
	Check<float>(text);
	return 0;
}
