// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"

/// The transparency of a surface, of the surface's size, in surface pixels: 0 is transparent, 1 is solid. GUI thread.
class TAlphaMask : public TReferenceCountable {
public:
	virtual TPointT<int> Size() const = 0;
	/// The point must lie inside.
	virtual float Value(TPointT<int> point) const = 0;
	/// Ignored outside. Kept in steps of 1/255, truncated.
	virtual void SetValue(TPointT<int> point, float value) = 0;
	virtual void Fill(float value) = 0;
	/// Both are cut to what there is.
	virtual void CopyRect(TPointT<int> destPoint, const TAlphaMask& source, const TRectT<int>& sourceRect) = 0;
	/// The nearest source pixel, by the rule of TPixelCopy::StretchRect.
	virtual void StretchRect(const TRectT<int>& destRect, const TAlphaMask& source, const TRectT<int>& sourceRect) = 0;
};
