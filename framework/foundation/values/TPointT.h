// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>

/// A point, or the size of a rectangle. y grows downward.
template <class T>
struct TPointT {
	T mX{};
	T mY{};

	friend constexpr bool operator==(const TPointT&, const TPointT&) = default;
	friend constexpr auto operator<=>(const TPointT&, const TPointT&) = default;

	friend constexpr TPointT operator+(TPointT a, TPointT b) { return {a.mX + b.mX, a.mY + b.mY}; }

	friend constexpr TPointT operator-(TPointT a, TPointT b) { return {a.mX - b.mX, a.mY - b.mY}; }
};
