// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "shell/program/TProgramPluginShell.h"

/// A fresh instance of the plug-in, for as long as the object lives: no preferences, no default bank, nothing
/// randomised. The creating thread is its GUI thread. Throws a TWorkError if there is none to be had.
class TInstance {
public:
	TInstance();
	~TInstance();
	TInstance(const TInstance&) = delete;
	TInstance& operator=(const TInstance&) = delete;

	TProgramPluginShell& Shell() const noexcept { return *mpShell; }

	/// Runs a function on the document as the GUI does.
	template <class TFunction>
	decltype(auto) WithDocument(TFunction&& function) const {
		return mpShell->AsGui(
		    [&]() -> decltype(auto) { return function(static_cast<TVortelDocument&>(*mpShell->Document())); });
	}

private:
	TProgramPluginShell* mpShell;
};
