// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"

#include <algorithm>

/// A rectangle that holds its left and top edge and leaves out its right and bottom edge.
template <class T>
struct TRectT {
	T mLeft{};
	T mTop{};
	T mWidth{};
	T mHeight{};

	constexpr T Right() const { return mLeft + mWidth; }

	constexpr T Bottom() const { return mTop + mHeight; }

	constexpr bool IsEmpty() const { return mWidth < 1 || mHeight < 1; }

	constexpr bool Contains(TPointT<T> point) const {
		return mLeft <= point.mX && point.mX < Right() && mTop <= point.mY && point.mY < Bottom();
	}

	/// Whether the other lies in this one as a whole.
	constexpr bool ContainsRect(const TRectT& other) const {
		return mLeft <= other.mLeft && mTop <= other.mTop && other.Right() <= Right() && other.Bottom() <= Bottom();
	}

	/// The common part; all zero when there is none or when either is empty.
	[[nodiscard]] constexpr TRectT Intersected(const TRectT& other) const {
		const T left = std::max(mLeft, other.mLeft);
		const T top = std::max(mTop, other.mTop);
		const TRectT common{
		    left, top, std::min(Right(), other.Right()) - left, std::min(Bottom(), other.Bottom()) - top};
		return IsEmpty() || other.IsEmpty() || common.IsEmpty() ? TRectT{} : common;
	}

	/// By the amount on each side.
	[[nodiscard]] constexpr TRectT Shrunk(T amount) const {
		return {mLeft + amount, mTop + amount, mWidth - 2 * amount, mHeight - 2 * amount};
	}

	/// The smallest rectangle around both; an empty one takes no part.
	[[nodiscard]] constexpr TRectT United(const TRectT& other) const {
		if (IsEmpty() || other.IsEmpty())
			return IsEmpty() ? other : *this;
		const T left = std::min(mLeft, other.mLeft);
		const T top = std::min(mTop, other.mTop);
		return {left, top, std::max(Right(), other.Right()) - left, std::max(Bottom(), other.Bottom()) - top};
	}

	friend constexpr bool operator==(const TRectT&, const TRectT&) = default;
};
