// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <xcb/xcb.h>

// The header names a field like a keyword of C++.
#define explicit explicitParts
#include <xcb/xkb.h>
#undef explicit
