// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plugin/TProgramInstance.h"

/// A fresh instance of the plug-in, for as long as the object lives: no preferences, no default bank, nothing
/// randomised. The calling thread is its GUI thread. Throws a TWorkError if there is none to be had.
class TInstance {
public:
	TInstance();

	TProgramPluginShell& Shell() const noexcept { return mpInstance->Shell(); }

	const TVortelAudioEngine& Engine() const noexcept { return mpInstance->Engine(); }

	/// Runs a function on the document as the GUI does.
	template <class TFunction>
	decltype(auto) WithDocument(TFunction&& function) const {
		return Shell().AsGui([&]() -> decltype(auto) { return function(mpInstance->Document()); });
	}

private:
	TOwnerPtr<TProgramInstance> mpInstance;
};
