// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/fonts/TFontSettings.h"
#include "framework/graphics/fonts/TFreetypeFont.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TTemporaryFolder.h"

#include <map>
#include <string>
#include <vector>

/// Tests of text whose every pixel is known: font files are written with the coverage that the test wants.
class TTestFonts : public TGraphicsFixture, public TFontLookup {
protected:
	struct TGlyph {
		int mCharacter;
		int mAdvance;
		int mWidth;
		std::vector<std::string> mRows; // hexadecimal; a byte for each pixel, or a bit
		int mBottom = 0;                // above the baseline
	};

	void SetUp() override {
		TGraphicsFixture::SetUp();
		Platform().SetFonts(*this);
	}

	TFontFile Find(const TString& family, const TString& postScriptName, bool bold, bool /*italic*/) override {
		mAsked += std::string(family.CString()) + "/" + postScriptName.CString() + (bold ? "/bold " : " ");
		const auto known = mSystemFonts.find(family.CString());
		return known == mSystemFonts.end() ? TFontFile{} : TFontFile{known->second, 0};
	}

	/// A bitmap font of 3 rows above the baseline and 1 below it, of 8 or 1 bits a pixel.
	TString WriteFont(const std::string& name, int bits, const std::vector<TGlyph>& glyphs) {
		std::string text =
		    "STARTFONT 2.1\nFONT -t-t-medium-r-normal--4-40-75-75-c-40-iso10646-1\nSIZE 4 75 75 " +
		    std::to_string(bits) +
		    "\nFONTBOUNDINGBOX 4 4 0 -1\nSTARTPROPERTIES 5\nPIXEL_SIZE 4\nFONT_ASCENT 3\nFONT_DESCENT 1\n"
		    "CHARSET_REGISTRY \"ISO10646\"\nCHARSET_ENCODING \"1\"\nENDPROPERTIES\nCHARS " +
		    std::to_string(glyphs.size()) + "\n";
		for (const TGlyph& glyph : glyphs) {
			const std::string code = std::to_string(glyph.mCharacter);
			text += "STARTCHAR c" + code + "\nENCODING " + code + "\nSWIDTH 500 0\nDWIDTH " +
			        std::to_string(glyph.mAdvance) + " 0\nBBX " + std::to_string(glyph.mWidth) + " " +
			        std::to_string(glyph.mRows.size()) + " 0 " + std::to_string(glyph.mBottom) + "\nBITMAP\n";
			for (const std::string& row : glyph.mRows)
				text += row + "\n";
			text += "ENDCHAR\n";
		}
		mFolder.Write(name, text + "ENDFONT\n");
		return mFolder.Path(name);
	}

	static TPtr<TFreetypeFont> Open(const TString& file, TPointT<int> size = {4, 4}, int baselineOffset = 0) {
		const auto settings = MakePtr<TFontFileSettings>();
		settings->mFileName.Set(file);
		settings->mSize.Set(size);
		settings->mAntiAlias.Set(true);
		settings->mBaselineOffset.Set(baselineOffset);
		return MakePtr<TFreetypeFont>(*settings, true);
	}

	/// What TReadableException says; empty without one.
	template <class TWork>
	static std::string FailureOf(const TWork& work) {
		try {
			work();
		} catch (const TReadableException& failure) {
			return failure.what();
		}
		return {};
	}

	/// Where something was drawn on black, in surface pixels: "x,y x,y ".
	static std::string PixelsOf(TSurface& surface) {
		const TDeviceAccess access(surface);
		std::string text;
		for (int y = 0; y < surface.Size().mY; ++y)
			for (int x = 0; x < surface.Size().mX; ++x)
				if (surface.Pixel({x, y}) != TColor{})
					text += std::to_string(x) + "," + std::to_string(y) + " ";
		return text;
	}

	TTemporaryFolder mFolder;
	std::map<std::string, TString> mSystemFonts; // by family
	std::string mAsked;                          // of the system: "family/PostScript name "
};
