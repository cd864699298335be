// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TColor.h"
#include "framework/graphics/surfaces/TReloadable.h"
#include "framework/graphics/surfaces/TSurface.h"

/// Where an image of the program lies: the name as given if there is such a file, else in the folder "Skin" of the
/// resources. Whether a file exists is asked once in the life of the process.
TString ResourceImagePath(const TString& fileName);
bool ResourceImageExists(const TString& path);

/// A named image that loads itself at its first use, in the resolution that fits the UI scale ("@2x", "@4x" before the
/// extension), and forgets its pixels when the scale changes. An image with alpha brings a mask, one without may have a
/// key colour; a BMP never has alpha. GUI thread.
class TBitmap : public TReferenceCountable, public TReloadable {
public:
	/// Throws TReadableException if there is no such file. Loads nothing yet.
	explicit TBitmap(const TString& fileName);

	/// Logical pixels; loads if needed. From here on all operations throw TReadableException if loading fails; the next
	/// one tries again.
	virtual TPointT<int> Size();
	virtual TPointT<int> PixelSize();
	virtual void Load();
	virtual void Draw(TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, float opacity);

	/// The whole image.
	void DrawAt(TSurface& surface, TPointT<int> point, float opacity);

	/// The whole image, in the colour if it is one that takes colours.
	virtual void DrawTinted(TSurface& surface, TPointT<int> point, const TColor& color, float opacity);

	bool HasKeyColor() const noexcept { return mHasKeyColor != 0; }

	TColor KeyColor() const noexcept { return mKeyColor; }

	void SetKeyColor(bool enabled, const TColor& color);

	/// Null before the first use.
	const TPtr<TSurface>& Surface() const noexcept { return mSurface; }

	const TString& FileName() const noexcept { return mFileName; }

	void DropPixels() override;

protected:
	TBitmap() = default;

	TSurface& LoadedSurface();

	TString mFileName;
	int mHasKeyColor = 0;
	TColor mKeyColor;
	TPtr<TSurface> mSurface;

private:
	bool LoadFrom(const TString& path, TUiScale scale);
	void ReduceOpaque(TUiScale scale);
};
