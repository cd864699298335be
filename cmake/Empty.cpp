// SPDX-License-Identifier: GPL-3.0-or-later
// Carries the precompiled headers: a target needs a source file.
