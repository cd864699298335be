// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TTexture.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TGraphPort.h"

#include <algorithm>
#include <cmath>

TTexture::TTexture(const TString& fileName) : mFileName(fileName) {}

TRectT<int> TTexture::BoundsOfCircle(TPointT<float> center, float radius) {
	const int size = static_cast<int>(std::ceil(2.0f * radius));
	return {static_cast<int>(center.mX - radius), static_cast<int>(center.mY - radius), size, size};
}

bool TTexture::Prepare(TSurface& surface, const TRectT<int>& rect) {
	if (rect.Intersected(surface.ClipRect()).IsEmpty())
		return false;
	if (!mSurface) {
		Load();
		const TPointT<int> size = mSurface->Size();
		mSurface->Recolor({0, 0, size.mX, size.mY}, mColor, {0, 0, 0}, 0.5f);
	}
	return true;
}

void TTexture::DrawRect(TSurface& surface, const TRectT<int>& rect) {
	if (Prepare(surface, rect))
		surface.TileBitmap(rect, {0, 0}, *mSurface, 1.0f);
}

void TTexture::DrawRoundedRect(
    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3, float radius4) {
	if (Prepare(surface, rect))
		surface.TextureRoundedRect(rect, {0, 0}, *mSurface, {radius1, radius2, radius3, radius4}, 1.0f);
}

void TTexture::DrawCircle(TSurface& surface, TPointT<float> center, float radius) {
	if (Prepare(surface, BoundsOfCircle(center, radius)))
		surface.TextureCircle(center, radius, {0, 0}, *mSurface, 1.0f);
}

void TTexture::Load() {
	TGraphPort& port = *TGraphPort::Instance();
	try {
		mSurface = port.LoadImage(mFileName, 0, {this, &TTexture::Reset}, true);
	} catch (const TReadableException&) {
		mSurface = nullptr;
	}
	if (mSurface)
		return;
	constexpr TPointT<int> kStandInSize{10, 10};
	mSurface = port.CreateSurface(kStandInSize, 0, {this, &TTexture::Reset});
	throw TReadableException(TString::Format(
	    "Failed to load the resource file: '%s'.\n\nPlease reinstall the application using the latest installer from "
	    "$MProductHomeURL!",
	    mFileName));
}

void TTexture::Reset() {
	mSurface = nullptr;
	mCache.clear();
}

void TTexture::SetColor(const TColor& color) {
	if (color == mColor)
		return;
	Reset();
	mColor = color;
}

void TTexture::AddToCache(TPointT<int> key) {
	constexpr float kYoung = 200.0f; // milliseconds
	if (static_cast<int>(mCache.size()) >= MaxCachedSurfaces()) {
		// The least used of those that had time to be used, else the oldest.
		auto victim = mCache.end();
		for (auto entry = mCache.begin(); entry != mCache.end(); ++entry)
			if (entry->second.mAge.ElapsedMilliseconds() > kYoung &&
			    (victim == mCache.end() || entry->second.mUseCount < victim->second.mUseCount))
				victim = entry;
		if (victim == mCache.end())
			victim = std::max_element(mCache.begin(), mCache.end(), [](const auto& a, const auto& b) {
				return a.second.mAge.ElapsedMilliseconds() < b.second.mAge.ElapsedMilliseconds();
			});
		mCache.erase(victim);
	}
	mCache[key].mSurface = mSurface;
}
