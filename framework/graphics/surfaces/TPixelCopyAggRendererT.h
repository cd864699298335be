// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/BlendPixel.h"
#include "framework/graphics/surfaces/TAggWorkspace.h"
#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"
#include "framework/graphics/surfaces/TPixelCopyAlphaMask.h"
#include "framework/graphics/surfaces/TPixelCopySurface.h"

#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <algorithm>
#include <cstdint>

/// TPixelCopyAggRenderer for one of agg's pixel formats.
template <class TAggFormat>
class TPixelCopyAggRendererT final : public TPixelCopyAggRenderer {
public:
	TPixelCopyAggRendererT(TPixelCopySurface& surface, const TPtr<TAggWorkspace>& workspace)
	    : mSurface(surface),
	      mWorkspace(workspace),
	      mBuffer(BufferOf(surface)),
	      mFormat(mBuffer),
	      mBase(mFormat) {}

	void StrokePolyline(TPoints points, const TColor& color, float width, float opacity) override {
		Begin().StrokePoints(points, false, width);
		RenderColor(color, opacity);
	}

	void StrokeRoundedRect(
	    const TRectT<int>& rect, const TColor& color, float width, const TCornerRadii& radii, float opacity) override {
		RenderRoundedRect(rect, {width / 2.0, radii, width}, color, opacity);
	}

	void
	FillRoundedRect(const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) override {
		RenderRoundedRect(rect, {kFillInset, radii, 0.0}, color, opacity);
	}

	void StrokePolygon(TPoints points, const TColor& color, float width, float opacity) override {
		Begin().StrokePoints(points, true, width);
		RenderColor(color, opacity);
	}

	void FillPolygon(TPoints points, const TColor& color, float opacity) override {
		Begin().FillPoints(points);
		RenderColor(color, opacity);
	}

	void StrokeEllipse(
	    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float width, float opacity) override {
		Begin().AddEllipse(center, radiusX + width / 2.0, radiusY + width / 2.0, width);
		RenderColor(color, opacity);
	}

	void FillEllipse(TPointT<float> center, float radiusX, float radiusY, const TColor& color, float opacity) override {
		Begin().AddEllipse(center, radiusX, radiusY, 0.0);
		RenderColor(color, opacity);
	}

	void FillPath(agg::path_storage& path, TPointT<float> offset, const TColor& color, float opacity) override {
		Begin().FillPath(path, offset);
		RenderColor(color, opacity);
	}

	void TextureRoundedRect(
	    const TRectT<int>& rect, TPointT<int> origin, const TPixelCopySurface& source, const TCornerRadii& radii,
	    float opacity) override {
		Begin().AddRoundedRect(rect, {kFillInset, radii, 0.0});
		RenderTexture(origin, source, opacity);
	}

	void TexturePolygon(TPoints points, TPointT<int> origin, const TPixelCopySurface& source, float opacity) override {
		Begin().FillPoints(points);
		RenderTexture(origin, source, opacity);
	}

	void TextureEllipse(
	    TPointT<float> center, float radiusX, float radiusY, TPointT<int> origin, const TPixelCopySurface& source,
	    float opacity) override {
		Begin().AddEllipse(center, radiusX, radiusY, 0.0);
		RenderTexture(origin, source, opacity);
	}

	void DrawImage(
	    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect, bool useKey,
	    float opacity, const TColor& keyColor) override {
		const unsigned alpha = (255u * AmountOf(opacity)) >> 8;
		if (useKey) {
			const TColor key = source.UnmapColor(source.MapColor(keyColor));
			RenderImage(destRect, source, sourceRect, [&](TAggColor& pixel, unsigned) {
				const bool isKey = pixel.r == key.mRed && pixel.g == key.mGreen && pixel.b == key.mBlue;
				pixel.a = static_cast<uint8_t>(isKey ? 0 : alpha);
			});
		} else if (opacity < 1.0f) {
			RenderImage(destRect, source, sourceRect, [&](TAggColor& pixel, unsigned) {
				pixel.a = static_cast<uint8_t>(alpha);
			});
		} else {
			RenderImage(destRect, source, sourceRect, [](TAggColor& pixel, unsigned) { pixel.a = 255; });
		}
	}

	void DrawMaskedImage(
	    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect,
	    float opacity) override {
		const unsigned amount = 255u * AmountOf(opacity);
		RenderImage(destRect, source, sourceRect, [&](TAggColor& pixel, unsigned mask) {
			pixel.a = static_cast<uint8_t>((amount * mask) >> 16);
		});
	}

	void DrawStencilImage(
	    const TRectT<int>& destRect, const TColor& color, const TPixelCopySurface& source,
	    const TRectT<int>& sourceRect, float opacity) override {
		const unsigned amount = AmountOf(opacity);
		const TAggColor paint = AggColor(color, 0);
		RenderImage(destRect, source, sourceRect, [&](TAggColor& pixel, unsigned) {
			const unsigned brightness = BrightnessOf(pixel);
			pixel = paint;
			pixel.a = static_cast<uint8_t>((amount * brightness) >> 8);
		});
	}

	void DrawMaskedStencilImage(
	    const TRectT<int>& destRect, const TColor& color, const TPixelCopySurface& source,
	    const TRectT<int>& sourceRect, float opacity) override {
		const unsigned amount = AmountOf(opacity);
		const TAggColor paint = AggColor(color, 0);
		RenderImage(destRect, source, sourceRect, [&](TAggColor& pixel, unsigned mask) {
			const unsigned brightness = BrightnessOf(pixel);
			pixel = paint;
			pixel.a = static_cast<uint8_t>((amount * brightness * mask) >> 16);
		});
	}

private:
	using TAggColor = agg::rgba8;
	static constexpr double kFillInset = 1.0;
	static constexpr bool kIs32Bits = TAggFormat::pix_width == 4;

	/// A source's pixels, repeated in both directions from an origin on.
	class TTiles {
	public:
		TTiles(const TPixelCopySurface& source, TPointT<int> origin, unsigned alpha)
		    : mBuffer(BufferOf(source)),
		      mFormat(mBuffer),
		      mSize(source.Size()),
		      mOrigin(origin),
		      mAlpha(static_cast<uint8_t>(alpha)) {}

		void generate(TAggColor* colors, int x, int y, unsigned length) {
			int column = Wrapped(x - mOrigin.mX, mSize.mX);
			const int row = Wrapped(y - mOrigin.mY, mSize.mY);
			for (unsigned i = 0; i < length; ++i) {
				colors[i] = mFormat.pixel(column, row);
				colors[i].a = mAlpha;
				if (++column == mSize.mX)
					column = 0;
			}
		}

	private:
		static int Wrapped(int value, int size) {
			const int rest = value % size;
			return rest < 0 ? rest + size : rest;
		}

		agg::rendering_buffer mBuffer;
		TAggFormat mFormat;
		TPointT<int> mSize;
		TPointT<int> mOrigin;
		uint8_t mAlpha;
	};

	static agg::rendering_buffer BufferOf(const TPixelCopySurface& surface) {
		const TPointT<int> size = surface.Size();
		return {surface.Pixels(), static_cast<unsigned>(size.mX), static_cast<unsigned>(size.mY), surface.RowBytes()};
	}

	static unsigned AmountOf(float opacity) { return static_cast<unsigned>(std::min(opacity, 1.0f) * 255.0f); }

	static TAggColor AggColor(const TColor& color, unsigned alpha) {
		const auto part = [](int value) { return static_cast<unsigned>(std::clamp(value, 0, 255)); };
		return {part(color.mRed), part(color.mGreen), part(color.mBlue), alpha};
	}

	static unsigned BrightnessOf(const TAggColor& pixel) { return (unsigned{pixel.r} + pixel.g + pixel.b) / 3; }

	TAggWorkspace& Begin() {
		mWorkspace->Begin(mSurface.Size());
		return *mWorkspace;
	}

	/// Nothing is drawn outside from here on; false if there is no inside.
	bool ClipToSurface() {
		const TRectT<int>& clip = mSurface.DeviceClip();
		return !clip.IsEmpty() && mBase.clip_box(clip.mLeft, clip.mTop, clip.Right() - 1, clip.Bottom() - 1);
	}

	void RenderColor(const TColor& color, float opacity) {
		if (!ClipToSurface())
			return;
		const TAggColor paint = AggColor(color, AmountOf(opacity));
		const TRectT<int>& clip = mSurface.DeviceClip();
		mWorkspace->Render(mWorkspace->mRuns, clip.mTop, clip.Bottom(), [&](const agg::scanline32_p8& scanline) {
			auto span = scanline.begin();
			for (unsigned i = 0; i < scanline.num_spans(); ++i, ++span) {
				// A length below 0 stands for a run that is covered alike.
				if (span->len > 0)
					mBase.blend_solid_hspan(span->x, scanline.y(), span->len, paint, span->covers);
				else
					RenderRun(span->x, span->x - span->len, scanline.y(), paint, *span->covers);
			}
		});
	}

	void
	RenderRoundedRect(const TRectT<int>& rect, const TRoundedRectShape& shape, const TColor& color, float opacity) {
		const TRoundedRectPatch* const patch = mWorkspace->Patch(rect, shape);
		if (!patch) {
			Begin().AddRoundedRect(rect, shape);
			RenderColor(color, opacity);
			return;
		}
		if (!ClipToSurface())
			return;
		const int corner = patch->CornerSize();
		const TRectT<int>& clip = mSurface.DeviceClip();
		const TAggColor paint = AggColor(color, AmountOf(opacity));
		for (int y = std::max(rect.mTop, clip.mTop); y < std::min(rect.Bottom(), clip.Bottom()); ++y) {
			const int fromTop = std::min(y - rect.mTop, corner);
			const int fromBottom = std::min(rect.Bottom() - 1 - y, corner);
			const int row = fromTop < corner ? fromTop : 2 * corner - fromBottom;
			RenderPatchRow(rect, y, patch->Rows()[static_cast<std::size_t>(row)], corner, paint);
		}
	}

	void RenderPatchRow(
	    const TRectT<int>& rect, int y, const TRoundedRectPatch::TRow& row, int corner, const TAggColor& paint) {
		const int middleStart = rect.mLeft + row.mMiddleStart;
		const int middleEnd = rect.Right() - corner + row.mMiddleEnd;
		if (!row.mLeft.empty())
			mBase.blend_solid_hspan(
			    rect.mLeft + row.mLeftStart, y, static_cast<int>(row.mLeft.size()), paint, row.mLeft.data());
		if (row.mMiddle != 0)
			RenderRun(middleStart, middleEnd, y, paint, row.mMiddle);
		if (!row.mRight.empty())
			mBase.blend_solid_hspan(middleEnd, y, static_cast<int>(row.mRight.size()), paint, row.mRight.data());
	}

	/// A colour that hides what is below goes in in one piece.
	void RenderRun(int start, int end, int y, const TAggColor& paint, uint8_t cover) {
		if (cover != agg::cover_full || !paint.is_opaque()) {
			mBase.blend_hline(start, y, end - 1, paint, cover);
			return;
		}
		const TRectT<int>& clip = mSurface.DeviceClip();
		start = std::max(start, clip.mLeft);
		end = std::min(end, clip.Right());
		if (start < end)
			mSurface.Copy().HorizontalLine({start, y}, end - start, mSurface.MapColor({paint.r, paint.g, paint.b}));
	}

	void RenderTexture(TPointT<int> origin, const TPixelCopySurface& source, float opacity) {
		if (!ClipToSurface())
			return;
		const unsigned amount = AmountOf(opacity);
		TTiles tiles(source, origin, opacity < 1.0f ? (255u * amount) >> 8 : 255u);
		const TRectT<int>& clip = mSurface.DeviceClip();
		mWorkspace->Render(mWorkspace->mPixels, clip.mTop, clip.Bottom(), [&](const auto& scanline) {
			agg::render_scanline_aa(scanline, mBase, mWorkspace->mColors, tiles);
		});
	}

	/// Each pixel takes the source pixel under its middle, through `shade (TAggColor& pixel, unsigned mask)`, which
	/// sets its alpha.
	template <class TShade>
	void RenderImage(
	    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect, TShade&& shade) {
		const TRectT<int> visible = destRect.Intersected(mSurface.DeviceClip());
		if (visible.IsEmpty() || sourceRect.IsEmpty() || !ClipToSurface())
			return;
		agg::rendering_buffer buffer = BufferOf(source);
		const TAggFormat pixels(buffer);
		const auto* const mask = static_cast<const TPixelCopyAlphaMask*>(source.AlphaMask());

		std::vector<int>& columns = mWorkspace->mSourceColumns;
		columns.clear();
		for (int x = visible.mLeft; x < visible.Right(); ++x)
			columns.push_back(SourcePlace(
			    x - destRect.mLeft, destRect.mWidth, sourceRect.mLeft, sourceRect.mWidth, source.Size().mX));
		TAggColor* const colors = mWorkspace->mColors.allocate(static_cast<unsigned>(visible.mWidth));
		for (int y = visible.mTop; y < visible.Bottom(); ++y) {
			const int row =
			    SourcePlace(y - destRect.mTop, destRect.mHeight, sourceRect.mTop, sourceRect.mHeight, source.Size().mY);
			const uint8_t* const maskRow = mask ? mask->Row(row) : nullptr;
			const auto maskAt = [maskRow](int column) { return maskRow ? maskRow[column] : 255u; };
			if constexpr (kIs32Bits) {
				const uint8_t* const from = source.Row(row);
				uint8_t* to = mSurface.Row(y) + std::ptrdiff_t{visible.mLeft} * 4;
				for (const int column : columns) {
					TAggColor color = ColorAt(from + std::ptrdiff_t{column} * 4);
					shade(color, maskAt(column));
					BlendPixel(to, color);
					to += 4;
				}
			} else {
				TAggColor* color = colors;
				for (const int column : columns) {
					*color = pixels.pixel(column, row);
					shade(*color++, maskAt(column));
				}
				mBase.blend_color_hspan(visible.mLeft, y, visible.mWidth, colors, nullptr, agg::cover_full);
			}
		}
	}

	/// As pixel() of agg's format, but in one read.
	static TAggColor ColorAt(const uint8_t* bytes) {
		uint32_t value;
		std::memcpy(&value, bytes, sizeof value);
		return {value >> 16 & 0xFF, value >> 8 & 0xFF, value & 0xFF, value >> 24};
	}

	/// Where the middle of a place among `places` falls among `count` from `start` on, cut to the source's edge.
	static int SourcePlace(int place, int places, int start, int count, int limit) {
		const int64_t inside = (2 * int64_t{place} + 1) * count / (2 * int64_t{places});
		return static_cast<int>(std::clamp<int64_t>(start + inside, 0, limit - 1));
	}

	TPixelCopySurface& mSurface;
	const TPtr<TAggWorkspace> mWorkspace;
	agg::rendering_buffer mBuffer;
	TAggFormat mFormat;
	agg::renderer_base<TAggFormat> mBase;
};
