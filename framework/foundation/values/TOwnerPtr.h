// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

/// Sole owner of an object that is not counted; deletes it on reset and on destruction.
template <class T>
using TOwnerPtr = std::unique_ptr<T>;
