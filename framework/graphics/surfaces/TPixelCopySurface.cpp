// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopySurface.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"
#include "framework/graphics/surfaces/TPixelCopyAlphaMask.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

TFont* FontAt(int index) {
	TGraphPort* const port = TGraphPort::Instance();
	return port ? port->Font(index) : nullptr;
}

/// Brightness as a sum of the three parts.
int SumOf(const TColor& color) {
	return color.mRed + color.mGreen + color.mBlue;
}

} // namespace

TPixelCopySurface::TPixelCopySurface(TPointT<int> size, const TPixelFormat& format)
    : mSize(size),
      mDeviceClip(Bounds()),
      mClip(Bounds()),
      mFormat(format) {}

TPixelCopySurface::~TPixelCopySurface() = default;

int TPixelCopySurface::BitDepth() const {
	return mFormat.BitDepth();
}

void TPixelCopySurface::SetScale(TUiScale scale) {
	if (scale.mX > 0 && scale.mY > 0)
		mScale = scale;
}

void TPixelCopySurface::SetClipRect(const TRectT<int>& rect) {
	const TPointT<int> logicalSize = Unscaled(mSize, mScale);
	mClip = rect.Intersected({0, 0, logicalSize.mX, logicalSize.mY});
	mDeviceClip = Scaled(rect, mScale).Intersected(Bounds());
}

void TPixelCopySurface::IntersectClipRect(const TRectT<int>& rect) {
	mClip = mClip.Intersected(rect);
	mDeviceClip = mDeviceClip.Intersected(Scaled(rect, mScale));
}

void TPixelCopySurface::SetKeyColor(const TColor& color) {
	mKeyColor = color;
	mHasKeyColor = true;
}

TPtr<TSurface> TPixelCopySurface::CopySurface() {
	throw TReadableException("Surface copying not supported on OSX.");
}

void TPixelCopySurface::CreateAlphaMask(float opacity) {
	mAlphaMask = MakePtr<TPixelCopyAlphaMask>(mSize, opacity);
}

void TPixelCopySurface::Clear(const TColor& color) {
	if (!mDeviceClip.IsEmpty())
		mPixelCopy->FillRect(mDeviceClip, MapColor(color));
}

TColor TPixelCopySurface::Pixel(TPointT<int> point) const {
	return UnmapColor(mPixelCopy->Pixel(Scaled(point, mScale)));
}

void TPixelCopySurface::SetPixel(TPointT<int> point, const TColor& color, float opacity) {
	const TPointT<int> place = Scaled(point, mScale);
	if (!(opacity > 0.0f) || !mDeviceClip.Contains(place))
		return;
	const TColor result = opacity < 1.0f ? Mix(color, UnmapColor(mPixelCopy->Pixel(place)), opacity) : color;
	mPixelCopy->SetPixel(place, MapColor(result));
}

// Both ends belong to a line.
void TPixelCopySurface::DrawLine(TPointT<int> from, TPointT<int> to, const TColor& color, float opacity) {
	if (from.mX == to.mX) {
		DrawVerticalLine({from.mX, std::min(from.mY, to.mY)}, std::abs(to.mY - from.mY) + 1, color, opacity);
	} else if (from.mY == to.mY) {
		DrawHorizontalLine({std::min(from.mX, to.mX), from.mY}, std::abs(to.mX - from.mX) + 1, color, opacity);
	} else {
		const auto asFloat = [](TPointT<int> point) {
			return TPointT<float>{static_cast<float>(point.mX), static_cast<float>(point.mY)};
		};
		StrokePolyline(std::array{asFloat(from), asFloat(to)}, color, 1.0f, opacity);
	}
}

void TPixelCopySurface::DrawVerticalLine(TPointT<int> start, int length, const TColor& color, float opacity) {
	TRectT<int> line = Scaled(TRectT<int>{start.mX, start.mY, 0, length}, mScale);
	line.mWidth = 1;
	FillDeviceRect(line, color, opacity);
}

void TPixelCopySurface::DrawHorizontalLine(TPointT<int> start, int length, const TColor& color, float opacity) {
	TRectT<int> line = Scaled(TRectT<int>{start.mX, start.mY, length, 0}, mScale);
	line.mHeight = 1;
	FillDeviceRect(line, color, opacity);
}

void TPixelCopySurface::FillRect(const TRectT<int>& rect, const TColor& color, float opacity) {
	FillDeviceRect(Scaled(rect, mScale), color, opacity);
}

void TPixelCopySurface::FillDeviceRect(const TRectT<int>& rect, const TColor& color, float opacity) {
	const TRectT<int> visible = rect.Intersected(mDeviceClip);
	if (visible.IsEmpty() || !(opacity > 0.0f))
		return;
	if (opacity < 1.0f)
		mPixelCopy->BlendRect(visible, MapColor(color), opacity);
	else if (visible.mWidth == 1)
		mPixelCopy->VerticalLine({visible.mLeft, visible.mTop}, visible.mHeight, MapColor(color));
	else
		mPixelCopy->FillRect(visible, MapColor(color));
}

void TPixelCopySurface::FrameRect(const TRectT<int>& rect, const TColor& color, float opacity) {
	const TRectT<int> whole = Scaled(rect, mScale);
	const TRectT<int> visible = whole.Intersected(mDeviceClip);
	if (visible.IsEmpty())
		return;
	if (visible.mTop == whole.mTop)
		FillDeviceRect({visible.mLeft, visible.mTop, visible.mWidth, 1}, color, opacity);
	if (visible.Bottom() == whole.Bottom())
		FillDeviceRect({visible.mLeft, visible.Bottom() - 1, visible.mWidth, 1}, color, opacity);
	if (visible.mLeft == whole.mLeft)
		FillDeviceRect({visible.mLeft, visible.mTop, 1, visible.mHeight}, color, opacity);
	if (visible.Right() == whole.Right())
		FillDeviceRect({visible.Right() - 1, visible.mTop, 1, visible.mHeight}, color, opacity);
}

int TPixelCopySurface::TextWidth(const TString& text, int font) const {
	TFont* const used = FontAt(font);
	return used ? used->TextWidth(*this, text) : 0;
}

int TPixelCopySurface::CharWidth(char16_t character, int font) const {
	TFont* const used = FontAt(font);
	return used ? used->CharWidth(*this, character) : 0;
}

int TPixelCopySurface::TextHeight(const TString& text, int font) const {
	TFont* const used = FontAt(font);
	return used ? used->TextHeight(*this, text) : 0;
}

int TPixelCopySurface::LineHeight(int font) const {
	TFont* const used = FontAt(font);
	return used ? used->LineHeight(*this) : 0;
}

TPointT<int> TPixelCopySurface::DrawText(TPointT<int> point, const TString& text, const TColor& color, int font) {
	TFont* const used = FontAt(font);
	return used ? used->DrawText(*this, point, text, color, TFont::kLeaveMask, 1.0f) : point;
}

TPointT<int> TPixelCopySurface::DrawRotatedText(
    TPointT<int> point, const TString& text, const TColor& color, int rotation, int font) {
	TFont* const used = FontAt(font);
	return used ? used->DrawRotatedText(*this, point, text, color, rotation, TFont::kLeaveMask, 1.0f) : point;
}

void TPixelCopySurface::Recolor(const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, float amount) {
	RecolorPixels(rect, colorA, colorB, nullptr, amount);
}

void TPixelCopySurface::RecolorExcept(
    const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, const TColor& skip, float amount) {
	RecolorPixels(rect, colorA, colorB, &skip, amount);
}

void TPixelCopySurface::RecolorPixels(
    const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, const TColor* skip, float amount) {
	constexpr int kBrightest = 3 * 255;
	std::array<uint32_t, kBrightest + 1> values;
	for (int sum = 0; sum <= kBrightest; ++sum) {
		const float share = (static_cast<float>(sum) + amount * 3.0f * 255.0f) / static_cast<float>(kBrightest);
		values[static_cast<std::size_t>(sum)] = MapColor(Mix(colorA, colorB, share));
	}
	const TRectT<int> visible = rect.Intersected(mDeviceClip);
	for (int y = visible.mTop; y < visible.Bottom(); ++y) {
		for (int x = visible.mLeft; x < visible.Right(); ++x) {
			const TColor color = UnmapColor(mPixelCopy->Pixel({x, y}));
			if (!skip || !(color == *skip))
				mPixelCopy->SetPixel({x, y}, values[static_cast<std::size_t>(SumOf(color))]);
		}
	}
}

void TPixelCopySurface::Histogram(TArray<double>& bins, double& outMean) const {
	bins.SetSize(256);
	std::fill(bins.begin(), bins.end(), 0.0);
	double sum = 0.0;
	for (int y = 0; y < mSize.mY; ++y) {
		for (int x = 0; x < mSize.mX; ++x) {
			const TColor color = UnmapColor(mPixelCopy->Pixel({x, y}));
			const double value = 0.229 * color.mRed + 0.587 * color.mGreen + 0.114 * color.mBlue;
			bins[static_cast<int>(value)] += 1.0;
			sum += value;
		}
	}
	outMean = sum / (static_cast<double>(mSize.mX) * mSize.mY);
}

void TPixelCopySurface::BeginDeviceAccess(TRectT<int>* inOutRect) {
	if (mScale == kUnscaled)
		return;
	if (inOutRect)
		*inOutRect = Scaled(*inOutRect, mScale);
	mClip = mDeviceClip;
	mScale = kUnscaled;
}

void TPixelCopySurface::EndDeviceAccess(TUiScale scale, const TRectT<int>& clip) {
	mScale = scale;
	mClip = clip;
}
