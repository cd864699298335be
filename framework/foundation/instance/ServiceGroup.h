// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

/// A singleton (see TSingleton) as one of several that are started and ended together, in the current storage alone.
struct TService {
	void (*mSetCreateInEveryStorage)(bool);
	void (*mCreate)();
	void (*mDestroy)();
	bool (*mExists)();
};

/// Of the singleton T, made by `create`.
template <class T>
constexpr TService ServiceOf(void (*create)()) {
	return {&T::SetCreateInEveryStorage, create, &T::Destroy, [] { return T::Instance() != nullptr; }};
}

/// Each may use those before it. What is there already stays. When one cannot be made, those that this call has made
/// are ended, and what was thrown passes on.
void StartServices(std::span<const TService> services);
/// The last first; what is not there is passed over.
void EndServices(std::span<const TService> services);
