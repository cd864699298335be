// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <span>

// What is done with whole files, and with their names. Everything that changes the file system answers false where it
// fails, and reports what it changed to the listeners for file changes. Main thread.

/// Overwrites the target; the folder is not created. `recursive` copies a folder with all that is in it; links stay
/// links.
bool CopyFile(const TString& source, const TString& target, bool recursive = false);
/// Files and folders; what is at the target goes first. Nothing happens between equal paths.
bool MoveFile(const TString& source, const TString& target);
/// To where the user's desktop looks for deleted files.
bool MoveToTrash(const TString& path);

/// Each character that some file system does not take in a name becomes "_": control characters and : ? " * < > | and,
/// unless they are allowed, / and backslash.
TString LegalFileName(const TString& name, bool allowSeparators);
/// What stands behind the last "." of the last element of the path, without the ".".
TString FileExtension(const TString& path);
/// The last element of the path without that.
TString FileBaseName(const TString& path);

/// "Vortel2_TmpFile-0-0" + extension and counting: the path of a file that is not there. Never the same twice in a
/// process, but another process may find it too: create it with O_EXCL, or in a folder of one's own. Any thread.
TString UniqueFileName(const TDirectory& folder, const TString& extension);
/// The same for folders: "Vortel2_TmpPath-0-0".
TDirectory UniqueFolderName(const TDirectory& folder);
