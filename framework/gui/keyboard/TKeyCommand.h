// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TFunctionPtr.h"

/// What a key binding calls, with is-release and is-repeat. Controls refer to a command by the same functor, and find
/// the key that is bound to it by comparing functors.
using TKeyCommand = TFunctionPtr<void, bool, bool>;
