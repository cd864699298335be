// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TObservableEnum.h"

TString TObservableEnumBase::ToString() const {
	const TList<TString> names = EnumerationNames();
	const int index = Get();
	return index >= 0 && index < names.Count() ? names[index] : TString();
}

void TObservableEnumBase::FromString(const TString& text) {
	if (text.IsEmpty())
		return;
	const int32_t index = EnumerationNames().IndexOf(text);
	if (index >= 0)
		Set(index);
}
