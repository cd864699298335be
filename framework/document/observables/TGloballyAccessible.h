// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cassert>

/// Mix-in for what exists at most once at a time and is reached from anywhere, such as a dialog: refers to the live
/// object while there is one. Main thread.
template <class T>
class TGloballyAccessible {
public:
	/// Null while there is none.
	static T* Instance() noexcept { return static_cast<T*>(spInstance); }

	TGloballyAccessible(const TGloballyAccessible&) = delete;
	TGloballyAccessible& operator=(const TGloballyAccessible&) = delete;

protected:
	TGloballyAccessible() noexcept {
		assert(!spInstance);
		spInstance = this;
	}

	~TGloballyAccessible() { spInstance = nullptr; }

private:
	static inline TGloballyAccessible* spInstance = nullptr;
};
