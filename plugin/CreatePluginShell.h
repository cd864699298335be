// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class TAudioPluginShell;

enum EHostKind : int32_t { kVst2Host = 0, kVst3Host = 1, kAudioUnitHost = 2, kProgramHost = 3 };

/// Makes a plug-in instance for a host format: document, engine, and the adapter that owns them. Called by the format's
/// entry, inside the instance's own storage and with the framework running, on the thread that plays the main thread.
///
/// hostContext depends on the format: for kVst2Host the host's callback; unused for kVst3Host; for kAudioUnitHost the
/// component instance; for kProgramHost it is a TProgramPluginShell::THost* or null, and the instance reads no
/// preferences, loads no default bank and randomises nothing. Returns the instance with one reference, to be given back
/// by ReleasePluginShell; null, with a line in the log, if it cannot be made.
TAudioPluginShell* CreatePluginShell(int32_t hostKind, void* hostContext);

/// Gives the reference back and runs what is still queued in this instance. Same storage, same thread.
void ReleasePluginShell(TAudioPluginShell* shell);
