// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What stands between a file and the image library, whose own readers of BMP, TIFF and of pictures' metadata believe
// too much of what they read. What passes here is whole and of an ordinary kind; what is only for display elsewhere
// (camera data, profiles, previews) is gone. Any thread.

/// Width and height as the file says, both above 0; nothing for what does not pass.
using TImageSize = std::optional<TPointT<int64_t>>;

/// Windows bitmaps whose header fits the file and whose compressed rows stay inside the image.
TImageSize CheckBmp(std::string_view file);

/// Only asks for the size: its library checks all there is.
TImageSize CheckPng(std::string_view file);

/// Takes out the segments that hold no picture.
TImageSize SimplifyJpeg(std::string& file);

/// Leaves one image, in strips, with what describes its pixels.
TImageSize SimplifyTiff(std::string& file);
