// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TNotices;
struct TOpenOptions;

/// `vortel2 open`: returns when the window is closed. Throws a TWorkError or a TReadableException: no display, files
/// that cannot be read or written.
void RunOpen(const TOpenOptions& options, TNotices& notices);
