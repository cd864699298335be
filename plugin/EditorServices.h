// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TPlatform;

/// What an editor stands on: the window system, surfaces, fonts, skin, events. The current instance gets them when its
/// editor is opened for the first time, so that an instance without one costs nothing and never touches a display.
/// Main thread.
namespace EditorServices {

using TPlatformFactory = TPlatform* (*)();

/// For the whole process, before the first Start; X11 unless something else is set.
void SetPlatformFactory(TPlatformFactory factory);

/// Does nothing when they are there. Throws TReadableException, as without a display; then none of them is there.
void Start();
/// With the instance, after its last window. Does nothing when they are not there.
void End();

} // namespace EditorServices
