// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Brings themes of all earlier versions up to date while they are loaded.
namespace SkinColorUpgrades {

/// Must have happened before the first theme is loaded. Ignored from the second time on.
void Declare();

} // namespace SkinColorUpgrades
