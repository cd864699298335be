// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "shell/program/TProgramPluginShell.h"

#include <atomic>

/// The entry of our own host format: makes a plug-in instance with a storage of its own and ends it again. Instances
/// may be made on any thread; the thread plays the main thread only inside the calls. No call of the instance may run
/// while it ends.
class TProgramInstance {
public:
	/// Null, with a line in the log, if the instance cannot be made. host may be null and must outlive the instance.
	static TOwnerPtr<TProgramInstance> Create(TProgramPluginShell::THost* host = nullptr);
	~TProgramInstance();

	/// For the instances made from now on in this process: whether they read and write preferences. Off at first.
	static void SetUsesPreferences(bool uses) noexcept { sUsesPreferences = uses; }

	static bool UsesPreferences() noexcept { return sUsesPreferences; }

	TProgramInstance(const TProgramInstance&) = delete;
	TProgramInstance& operator=(const TProgramInstance&) = delete;

	TProgramPluginShell& Shell() const { return *mpShell; }

	/// To be used inside TProgramPluginShell::AsGui or a TGuiScope.
	TVortelDocument& Document() const { return static_cast<TVortelDocument&>(*mpShell->Document()); }

	TVortelAudioEngine& Engine() const { return static_cast<TVortelAudioEngine&>(*mpShell->Engine()); }

private:
	explicit TProgramInstance(TProgramPluginShell* shell) : mpShell(shell) {}

	static inline std::atomic<bool> sUsesPreferences{false};

	TProgramPluginShell* mpShell;
};
