// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "fuzz/FuzzGraphics.h"

namespace {

struct TFuzzSkin : TFuzzGraphics {
	TFuzzSkin() {
		TVortelSkinColors::Create();
		TVortelSkin::Create();
	}

	~TFuzzSkin() {
		TSkin::Destroy();
		TSkinColors::Destroy();
	}
};

/// Shapes whose lines and sizes depend on numbers of the theme.
void DrawShapes() {
	TVortelSkin& skin = *TVortelSkin::Instance();
	const TPtr<TSurface> surface = TFuzzGraphics::MakeSurface();
	skin.DrawBackground(*surface, {0, 0, 64, 32}, TSkin::kPanelBackground);
	skin.DrawButton(*surface, {2, 2, 30, 20}, {});
	skin.TSkin::DrawButton(*surface, {34, 2, 30, 20}, {});
	skin.DrawTextBoxFrame(*surface, {2, 20, 40, 12}, true, false);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const TFuzzSkin kSkin;
	TSkinColors& colors = *TSkinColors::Instance();
	FuzzFramework::LoadAndCheck(colors, FuzzFramework::StreamOf(data, size));
	FuzzFramework::Require(TSkin::HasTextureSet(colors.TextureSet().Get()));
	colors.mHueShift = static_cast<float>(size) * 1000.0f;
	colors.mContrastShift = 1.0f;
	colors.ApplyAdjustments();
	DrawShapes();
	return 0;
}
