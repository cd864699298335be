// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Which of the names a typing error may have been meant to be, the nearest first, at most three: those that few
/// letters turn the text into, whatever their case. None if the text is like none of them.
std::vector<std::string> Nearest(std::string_view text, std::span<const std::string> names);

/// "; did you mean a, b or c?", or nothing.
std::string DidYouMean(std::string_view text, std::span<const std::string> names);

/// Of ASCII letters.
std::string LowerCase(std::string_view text);

/// "a", "a or b", "a, b or c"
std::string Listed(std::span<const std::string> words, std::string_view lastJoint = " or ");
