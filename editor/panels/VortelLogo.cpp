// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/VortelLogo.h"

#include "framework/foundation/values/ProductInfo.h"
#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/graphics/skin/TSkinColors.h"

#include <sys/utsname.h>

namespace {

TString ProcessorName() {
	utsname system{};
	return uname(&system) == 0 ? TString(system.machine) : TString("unknown");
}

} // namespace

TPtr<TBitmap> MakeVortelLogo() {
	constexpr int kMiddleSum = 3 * 128;
	const TColor panel = TSkinColors::Instance()->MainColor(TSkinColors::kBodyBack);
	const bool isLight = panel.mRed + panel.mGreen + panel.mBlue >= kMiddleSum;
	return MakePtr<TBitmap>(isLight ? "Logos/LogoOnLight.png" : "Logos/Logo.png");
}

TString VortelVersionLine() {
	return TString(ProductInfo::PrefixedVersionText()) + " (" + ProcessorName() + ")";
}
