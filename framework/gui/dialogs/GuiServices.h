// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Brings up what views and windows live on: events, timers, key names, cursors. For the current storage, and for those
/// that are made later. Needs the framework, TPlatform, TGraphPortPrefs and TGraphPort.
void InitializeGui();
/// Takes it down, once for each InitializeGui, when the storage has no window any more.
void FinalizeGui();
