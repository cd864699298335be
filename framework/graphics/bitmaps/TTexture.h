// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TStlAllocator.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <cstdint>
#include <map>

/// What panels and buttons are made of: a grey image, coloured, tiled over the surface, whose place it keeps when the
/// rectangle moves. Loads itself at its first use. Drawing throws TReadableException when the image cannot be loaded;
/// the texture then goes on with a small black one. GUI thread.
class TTexture : public TObserver {
public:
	/// The path of the image.
	explicit TTexture(const TString& fileName);

	virtual void DrawRect(TSurface& surface, const TRectT<int>& rect);
	virtual void DrawRoundedRect(
	    TSurface& surface, const TRectT<int>& rect, float radius1, float radius2, float radius3, float radius4);
	virtual void DrawCircle(TSurface& surface, TPointT<float> center, float radius);

	/// How many built sizes are kept.
	virtual int MaxCachedSurfaces() const { return 16; }

	virtual void Load();

	TColor Color() const noexcept { return mColor; }

	/// Another colour drops everything that was built.
	void SetColor(const TColor& color);
	void Reset();

protected:
	struct TCachedSurface {
		TPtr<TSurface> mSurface;
		TStopwatch mAge;
		int mUseCount = 0;
	};

	using TCache = std::map<
	    TPointT<int>, TCachedSurface, std::less<>, TStlAllocator<std::pair<const TPointT<int>, TCachedSurface>>>;

	/// left and top truncated, width and height rounded up.
	static TRectT<int> BoundsOfCircle(TPointT<float> center, float radius);
	void AddToCache(TPointT<int> key);

	TPtr<TSurface> mSurface;
	TColor mColor;
	TString mFileName;
	TCache mCache; // by size in surface pixels

private:
	bool Prepare(TSurface& surface, const TRectT<int>& rect);
};
