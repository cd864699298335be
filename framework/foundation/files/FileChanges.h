// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TFunctionPtr.h"

class TDirectory;

/// True if the name matches one of the patterns. "*" and "*.*" match everything; any other pattern is compared from
/// the end, ignoring case, and matches once a "*" is reached: "*.xml" matches "Config.XML".
bool MatchesFilePatterns(const TString& name, const TList<TString>& patterns);

/// Who wants to know of changes in the file system made by this process. Process-wide, main thread.
namespace FileChanges {

using TListener = TFunctionPtr<void, const TString&>;

void AddListener(const TListener& listener);
void RemoveListener(const TListener& listener);
/// Changes in and below this folder are not reported.
void IgnoreFolder(const TDirectory& folder);
/// For static objects that close files when the process ends: what is made before them is still there then.
void MakeRegistry();

} // namespace FileChanges

/// Tells each listener the path, in the order in which they were added.
void ReportFileChange(const TString& path);
