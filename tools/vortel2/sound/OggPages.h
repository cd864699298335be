// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Gives all pages of an Ogg file the same stream number, which the library draws anew for each file: equal sound shall
/// give equal bytes. The file must be open for reading and writing. False, with errno, if that fails.
bool NumberOggPages(int descriptor);
