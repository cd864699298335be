// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What the entry of a shared object settles before anything else runs.
namespace EntryFiles {

/// From now on the system says where folders lie, and the log goes to its file: standard output belongs to the host.
void Direct();

} // namespace EntryFiles
