// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Brings up what views and windows live on in the current storage: events, timers, key names, cursors, messages as
/// dialogs. Needs the framework, TBaseViewsPrefs, TPlatform, TGraphPortPrefs and TGraphPort. Does nothing when it is
/// there; what it throws leaves nothing behind. Main thread.
void InitializeGui();
/// When the storage has no window any more. Does nothing when it is not there.
void FinalizeGui();
