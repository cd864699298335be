// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

class TView;

/// What a views file says of a view beside where it is. UTF-8.
struct TViewDescription {
	std::string mClass; // without template arguments
	std::optional<std::string> mText;
	std::optional<std::string> mValue;
};

/// Main thread.
TViewDescription DescribeView(const TView& view);
