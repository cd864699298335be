// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// How program and bank files of older versions become files of the present one.
namespace VortelUpgrades {

/// Makes the steps known. Once for the process, however often it is called; any thread.
void Declare();

} // namespace VortelUpgrades
