// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/Folders.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "fuzz/FuzzGraphics.h"
#include "tests/support/TTemporaryFolder.h"

#include <filesystem>

namespace {

/// An engine whose configuration has been read once; its fonts are found in the folder of its resources.
struct TFuzzFonts : TFuzzGraphics {
	TFuzzFonts() {
		Folders::UseResources(mFolder.Directory());
		std::filesystem::create_directories(mFolder.PathOf("Skin/Fonts"));
		std::filesystem::create_symlink(VORTEL_FUZZ_FONT, mFolder.PathOf("Skin/Fonts/a.otf"));
		mFolder.Write("Skin/Fonts/broken.otf", "OTTO");
		mFolder.Write("Skin/Fonts/Config.xml", "<FontEngine/>");
		TFontEngine::CreateInstance();
	}

	~TFuzzFonts() { TFontEngine::Destroy(); }

	TTemporaryFolder mFolder;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	static const TFuzzFonts kFonts;
	TFontEngine& engine = *TFontEngine::Instance();
	if (!FuzzFramework::LoadAndCheck(engine, FuzzFramework::StreamOf(data, size)))
		return 0;
	TGraphPortPrefs::Instance()->mDisplayChanged.Bang(); // builds the fonts anew
	const TPtr<TSurface> surface = TFuzzGraphics::MakeSurface();
	for (int font = 0; font < TFontEngine::kNumberOfFonts; ++font) {
		surface->DrawText({0, 0}, "Ag 1", {255, 255, 255}, font);
		FuzzFramework::Require(surface->TextWidth("Ag 1", font) >= 0);
	}
	return 0;
}
