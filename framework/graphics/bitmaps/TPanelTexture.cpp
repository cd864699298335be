// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TPanelTexture.h"

#include "framework/graphics/surfaces/TGraphPort.h"

#include <cmath>

namespace {

constexpr int kMostUses = 100;

TPointT<int> CornerOf(const TRectT<int>& rect) {
	return {rect.mLeft, rect.mTop};
}

TRectT<int> WholeOf(TPointT<int> size) {
	return {0, 0, size.mX, size.mY};
}

/// 1 hides the image, 10 shows nothing else.
float CoverFor(float bevel) {
	return 2.0f - (std::log10(bevel) + 1.0f);
}

} // namespace

TPanelTexture::TPanelTexture(const TString& fileName, TOrientation orientation, TObservableBaseType<float>& value)
    : TTexture(fileName),
      mOrientation(orientation),
      mValue(value) {
	mValue.AddObserver({this, &TPanelTexture::OnValueChanged});
}

void TPanelTexture::OnValueChanged(TObservable*, int32_t reason) {
	if (reason == kDidChange)
		Reset();
}

TPointT<int> TPanelTexture::StretchedSize(const TRectT<int>& rect) const {
	return mOrientation == kStretchHeight ? TPointT<int>{0, rect.mHeight} : TPointT<int>{rect.mWidth, 0};
}

bool TPanelTexture::Prepare(TSurface& surface, const TRectT<int>& rect) {
	if (rect.Intersected(surface.ClipRect()).IsEmpty())
		return false;
	const TPointT<int> stretched = StretchedSize(rect);
	const TPointT<int> key = Scaled(stretched, surface.Scale());
	auto entry = mCache.find(key);
	if (entry == mCache.end()) {
		Build(stretched, surface.Scale());
		AddToCache(key);
		entry = mCache.find(key);
	}
	mSurface = entry->second.mSurface;
	if (entry->second.mUseCount < kMostUses)
		++entry->second.mUseCount;
	return true;
}

void TPanelTexture::Build(TPointT<int> stretchedSize, TUiScale scale) {
	Load();
	const TPointT<int> imageSize = mSurface->Size();
	const TPointT<int> wanted{
	    stretchedSize.mX == 0 ? imageSize.mX : stretchedSize.mX,
	    stretchedSize.mY == 0 ? imageSize.mY : stretchedSize.mY};
	if (const TPointT<int> size = Scaled(wanted, scale); size != imageSize) {
		const TPtr<TSurface> image = mSurface;
		mSurface = TGraphPort::Instance()->CreateSurface(size, 0, {static_cast<TTexture*>(this), &TTexture::Reset});
		mSurface->StretchBitmap(WholeOf(size), *image, WholeOf(imageSize), 1.0f);
	}
	mSurface->FillRect(WholeOf(mSurface->Size()), mColor, CoverFor(mValue.Get()));
}

void TPanelTexture::DrawRect(TSurface& surface, const TRectT<int>& rect) {
	if (Prepare(surface, rect))
		surface.TileBitmap(rect, CornerOf(rect), *mSurface, 1.0f);
}

void TPanelTexture::DrawRoundedRect(
    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3, float radius4) {
	if (Prepare(surface, rect))
		surface.TextureRoundedRect(rect, CornerOf(rect), *mSurface, {radius1, radius2, radius3, radius4}, 1.0f);
}

void TPanelTexture::DrawCircle(TSurface& surface, TPointT<float> center, float radius) {
	const TRectT<int> bounds = BoundsOfCircle(center, radius);
	const TPointT<int> origin{static_cast<int>(center.mX - radius), static_cast<int>(center.mY - radius)};
	if (Prepare(surface, bounds))
		surface.TextureCircle(center, radius, origin, *mSurface, 1.0f);
}

TPointT<int> TRoundButtonTexture::StretchedSize(const TRectT<int>& rect) const {
	return {rect.mWidth, rect.mHeight};
}

// The image has the rectangle's size in surface pixels and scale 1/1, so it is copied without scaling.
void TRoundButtonTexture::DrawRect(TSurface& surface, const TRectT<int>& rect) {
	if (!Prepare(surface, rect))
		return;
	TRectT<int> place = rect;
	const TUiScale scale = surface.Scale();
	const TRectT<int> clip = surface.ClipRect();
	surface.BeginDeviceAccess(&place);
	surface.DrawBitmap(CornerOf(place), *mSurface, WholeOf(mSurface->Size()), false, 1.0f);
	surface.EndDeviceAccess(scale, clip);
}

TVoidRecolorableTexture::TVoidRecolorableTexture() : TTexture({}) {}

void TVoidRecolorableTexture::DrawRect(TSurface& surface, const TRectT<int>& rect) {
	surface.FillRect(rect, mColor, 1.0f);
}

void TVoidRecolorableTexture::DrawRoundedRect(
    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3, float radius4) {
	surface.FillRoundedRect(rect, mColor, {radius1, radius2, radius3, radius4}, 1.0f);
}

void TVoidRecolorableTexture::DrawCircle(TSurface& surface, TPointT<float> center, float radius) {
	surface.FillCircle(center, radius, mColor, 1.0f);
}

void TVoidRecolorableTexture::Load() {}
