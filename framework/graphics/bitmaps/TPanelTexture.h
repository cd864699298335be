// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/graphics/bitmaps/TTexture.h"

/// The image stretched in one direction to what is drawn and covered with the colour; it starts at the rectangle. The
/// bevel amount, 1 to 10, says how much of the image shines through.
class TPanelTexture : public TTexture {
public:
	enum TOrientation : int32_t { kStretchHeight = 0, kStretchWidth = 1 };

	/// The value must outlive the texture.
	TPanelTexture(const TString& fileName, TOrientation orientation, TObservableBaseType<float>& value);

	void DrawRect(TSurface& surface, const TRectT<int>& rect) override;
	void DrawRoundedRect(
	    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3,
	    float radius4) override;
	void DrawCircle(TSurface& surface, TPointT<float> center, float radius) override;

	int MaxCachedSurfaces() const override { return 8; }

protected:
	/// Logical pixels; 0 in a direction in which the image keeps its size.
	virtual TPointT<int> StretchedSize(const TRectT<int>& rect) const;

	/// False where there is nothing to draw. Else mSurface is the image for the rectangle.
	bool Prepare(TSurface& surface, const TRectT<int>& rect);

private:
	void OnValueChanged(TObservable* observable, int32_t reason);
	void Build(TPointT<int> stretchedSize, TUiScale scale);

	TOrientation mOrientation;
	TObservableBaseType<float>& mValue;
};

class TButtonTexture final : public TPanelTexture {
public:
	using TPanelTexture::TPanelTexture;

	int MaxCachedSurfaces() const override { return 64; }
};

/// Stretched in both directions.
class TRoundButtonTexture final : public TPanelTexture {
public:
	using TPanelTexture::TPanelTexture;

	void DrawRect(TSurface& surface, const TRectT<int>& rect) override;

	int MaxCachedSurfaces() const override { return 64; }

protected:
	TPointT<int> StretchedSize(const TRectT<int>& rect) const override;
};

/// No image at all: the plain colour.
class TVoidRecolorableTexture final : public TTexture {
public:
	TVoidRecolorableTexture();

	void DrawRect(TSurface& surface, const TRectT<int>& rect) override;
	void DrawRoundedRect(
	    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3,
	    float radius4) override;
	void DrawCircle(TSurface& surface, TPointT<float> center, float radius) override;
	void Load() override;
};
