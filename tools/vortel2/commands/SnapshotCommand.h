// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TNotices;
struct TSnapshotOptions;

/// `vortel2 snapshot`. Throws a TUsageError for a script with a wrong line, a TWorkError for files that cannot be read
/// or written.
void RunSnapshot(const TSnapshotOptions& options, TNotices& notices);
