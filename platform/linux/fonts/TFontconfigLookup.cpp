// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/fonts/TFontconfigLookup.h"

#include "framework/foundation/files/TLog.h"
#include "platform/linux/text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <fontconfig/fontconfig.h>
#include <string>
#include <string_view>

namespace {

template <auto kDestroy>
struct TDestroy {
	void operator()(auto* object) const { kDestroy(object); }
};

using TPattern = std::unique_ptr<FcPattern, TDestroy<&FcPatternDestroy>>;
using TFontSet = std::unique_ptr<FcFontSet, TDestroy<&FcFontSetDestroy>>;
using TObjectSet = std::unique_ptr<FcObjectSet, TDestroy<&FcObjectSetDestroy>>;

/// The families of the page description language's first printers, and the generic ones.
constexpr std::array<std::string_view, 8> kEverywhere{"Courier", "Helvetica",  "Times", "monospace",
                                                      "sans",    "sans-serif", "serif", "system-ui"};

const FcChar8* Bytes(const std::string& text) {
	return reinterpret_cast<const FcChar8*>(text.c_str());
}

int Number(const FcPattern* font, const char* object, int otherwise) {
	int value = otherwise;
	return FcPatternGetInteger(font, object, 0, &value) == FcResultMatch ? value : otherwise;
}

bool HasStyle(const FcPattern* font, bool bold, bool italic) {
	const bool isBold = Number(font, FC_WEIGHT, FC_WEIGHT_REGULAR) >= FC_WEIGHT_DEMIBOLD;
	const bool isItalic = Number(font, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN;
	return isBold == bold && isItalic == italic;
}

/// How far from the plain or the bold weight and the normal width.
int Distance(const FcPattern* font, bool bold) {
	const int weight = Number(font, FC_WEIGHT, FC_WEIGHT_REGULAR) - (bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
	return std::abs(weight) + 2 * std::abs(Number(font, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL);
}

TFontFile FileOf(const FcPattern* font) {
	FcChar8* file = nullptr;
	if (FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch)
		return {};
	return {TString(reinterpret_cast<const char*>(file), kFileSystemEncoding), Number(font, FC_INDEX, 0) & 0xFFFF};
}

TFontSet List(FcConfig* config, const char* object, const std::string& value) {
	const TPattern wanted(FcPatternCreate());
	FcPatternAddString(wanted.get(), object, Bytes(value));
	FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
	const TObjectSet objects(
	    FcObjectSetBuild(FC_FILE, FC_INDEX, FC_WEIGHT, FC_SLANT, FC_WIDTH, static_cast<void*>(nullptr)));
	return TFontSet(FcFontList(config, wanted.get(), objects.get()));
}

TFontFile FindFamily(FcConfig* config, const std::string& family, bool bold, bool italic) {
	const TFontSet fonts = List(config, FC_FAMILY, family);
	const FcPattern* best = nullptr;
	for (int i = 0; fonts && i < fonts->nfont; ++i) {
		const FcPattern* font = fonts->fonts[i];
		if (HasStyle(font, bold, italic) && (!best || Distance(font, bold) < Distance(best, bold)))
			best = font;
	}
	return best ? FileOf(best) : TFontFile();
}

TFontFile FindStandIn(FcConfig* config, const std::string& family, bool bold, bool italic) {
	const TPattern wanted(FcPatternCreate());
	FcPatternAddString(wanted.get(), FC_FAMILY, Bytes(family));
	FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
	FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
	FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
	FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
	FcDefaultSubstitute(wanted.get());
	FcResult result = FcResultNoMatch;
	const TPattern font(FcFontMatch(config, wanted.get(), &result));
	return font && result == FcResultMatch ? FileOf(font.get()) : TFontFile();
}

} // namespace

void TFontconfigLookup::TRelease::operator()(FcConfig* config) const {
	FcConfigDestroy(config);
}

TFontFile TFontconfigLookup::Find(const TString& family, const TString& postScriptName, bool bold, bool italic) {
	if (!mpConfig)
		mpConfig.reset(FcInitLoadConfigAndFonts());
	TFontFile found;
	if (mpConfig && !postScriptName.IsEmpty()) {
		const TFontSet fonts = List(mpConfig.get(), FC_POSTSCRIPT_NAME, Utf8Of(postScriptName));
		found = fonts && fonts->nfont > 0 ? FileOf(fonts->fonts[0]) : TFontFile();
	} else if (mpConfig) {
		const std::string name = Utf8Of(family);
		found = FindFamily(mpConfig.get(), name, bold, italic);
		const bool isEverywhere = std::find(kEverywhere.begin(), kEverywhere.end(), name) != kEverywhere.end();
		if (found.mPath.IsEmpty() && isEverywhere)
			found = FindStandIn(mpConfig.get(), name, bold, italic);
	}
	if (found.mPath.IsEmpty())
		TLog::Instance()->LogString(
		    "GraphPort",
		    TString::Format(
		        "Failed to resolve a font: Family name '%s' PostScript name: '%s'!", family, postScriptName));
	return found;
}
