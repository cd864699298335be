// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"

#include <string>

class THeadlessPlatform;

/// What the last frames did.
struct TFrameCounts {
	int mDirtyRects = 0; // drawn by the last frame
	int mFrames = 0;
};

/// The open windows of the current instance with all their views, and the file dialogs so far, as JSON. Coordinates
/// are logical pixels from `corner` (a pixel of the memory screen), the editor's. Main thread.
std::string DescribeWindows(THeadlessPlatform& platform, TPointT<int> corner, const TFrameCounts& counts);
