// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"

#include "framework/graphics/surfaces/TPixelCopyAggRendererT.h"

#include <agg_pixfmt_rgb.h>
#include <agg_pixfmt_rgb_packed.h>
#include <agg_pixfmt_rgba.h>

namespace {

using TRgb555 = agg::pixfmt_alpha_blend_rgb_packed<agg::blender_rgb555, agg::rendering_buffer>;
using TRgb565 = agg::pixfmt_alpha_blend_rgb_packed<agg::blender_rgb565, agg::rendering_buffer>;
using TBgr24 = agg::pixfmt_alpha_blend_rgb<agg::blender_rgb<agg::rgba8, agg::order_bgr>, agg::rendering_buffer, 3>;
using TBgra32 = agg::pixfmt_alpha_blend_rgba<agg::blender_rgba<agg::rgba8, agg::order_bgra>, agg::rendering_buffer>;

} // namespace

TPtr<TPixelCopyAggRenderer>
TPixelCopyAggRenderer::Create(TPixelCopySurface& surface, const TPtr<TAggWorkspace>& workspace) {
	switch (surface.Format().Kind()) {
	case TPixelFormat::kRgb555:
		return MakePtr<TPixelCopyAggRendererT<TRgb555>>(surface, workspace);
	case TPixelFormat::kRgb565:
		return MakePtr<TPixelCopyAggRendererT<TRgb565>>(surface, workspace);
	case TPixelFormat::kBgr24:
		return MakePtr<TPixelCopyAggRendererT<TBgr24>>(surface, workspace);
	default:
		return MakePtr<TPixelCopyAggRendererT<TBgra32>>(surface, workspace);
	}
}
