// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pluginterfaces/base/fstrdefs.h>
#include <pluginterfaces/base/funknown.h>
#include <pluginterfaces/base/smartpointer.h>

#include <cstring>

// Macros of the headers above, and names of TFile.
#undef kLittleEndian
#undef kBigEndian

/// Asks an object for one of its interfaces. Null if it has none; some hosts answer success without one.
template <class TInterface>
Steinberg::IPtr<TInterface> AskFor(Steinberg::FUnknown* object, const Steinberg::TUID interfaceId) {
	void* found = nullptr;
	if (!object || object->queryInterface(interfaceId, &found) != Steinberg::kResultOk)
		return {};
	return Steinberg::owned(static_cast<TInterface*>(found));
}

/// Ids come from hosts and need not be aligned.
inline bool IsSameId(const char* a, const char* b) {
	return std::memcmp(a, b, sizeof(Steinberg::TUID)) == 0;
}

/// One line of a queryInterface: hands the object out as TInterface, with a reference, if that is what was asked for.
template <class TInterface, class TObject>
bool Offer(TObject* object, const Steinberg::TUID offered, const Steinberg::TUID asked, void** result) {
	if (!asked || !IsSameId(reinterpret_cast<const char*>(asked), reinterpret_cast<const char*>(offered)))
		return false;
	TInterface* interface = object;
	interface->addRef();
	*result = interface;
	return true;
}
