// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/text/TString.h"

class TSystemFolders;

/// The well-known folders of the process, each found once and then kept. Any thread.
namespace Folders {

/// Who answers where the system keeps things; must outlive the framework. Said by the program or the plug-in's entry;
/// until then, and after null, only Temporary and what belongs to the module are known. Forgets what was found.
void UseSystem(const TSystemFolders* system);
const TSystemFolders* System();

TDirectory Home();
TDirectory Documents();
/// The folder of this version, created when it is missing. Asking for the first time fetches the settings of the newest
/// older version, if this one has none.
TDirectory Preferences();
TDirectory Logs();
/// A folder of this process, created when it is missing; its changes are not reported. The system's own temporary
/// folder where that cannot be made.
TDirectory Temporary();

/// The file whose code this is: the plug-in's shared object or the program.
TString ModulePath();
/// The folder in which that lies; for a bundle the folder in which the bundle lies.
TDirectory Bundle();
/// Where the resources are. Logged when it is found.
TDirectory ResourceBase();

/// For a program whose resources lie elsewhere, and for one that takes preferences from elsewhere, or, with an empty
/// folder, from nowhere. Both hold until Forget.
void UseResources(const TDirectory& folder);
void UsePreferences(const TDirectory& folder);

/// Both, for a module anywhere.
TDirectory BundleOf(const TString& modulePath);
TDirectory ResourceBaseOf(const TString& modulePath);

/// At framework end: the process's temporary folder goes if nothing is left in it, and everything is forgotten.
void Forget();

} // namespace Folders
