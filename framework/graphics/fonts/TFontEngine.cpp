// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFontEngine.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/fonts/TFreetypeFont.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"

namespace {

constexpr const char* kLogCategory = "GraphPort";
constexpr const char* kFontKeys[] = {"Standard", "StandardBig", "Bold", "Italic", "Monospaced"};
/// What nearly every desktop has, for when the program's own fonts are missing.
constexpr const char* kSystemFamily = "DejaVu Sans";
constexpr float kSystemSize = 11.0f;
constexpr float kBigSystemSize = 12.0f;

void Log(const TString& text) {
	TLog::Instance()->LogString(kLogCategory, text);
}

} // namespace

TFontEngine::TFontEngine() : mpObserver(MakePtr<TScaleObserver>(kMainThread, this, &TFontEngine::OnScaleChanged)) {
	TGraphPortPrefs* preferences = TGraphPortPrefs::Instance();
	mpObserver->Observe(preferences->mUIScaleFactor);
	mpObserver->Observe(preferences->mDisplayChanged);
	mpObserver->Observe(preferences->mEnableHiDPIDisplay);
	ReserveMembers(0, kNumberOfFonts);
	for (std::size_t i = 0; i < mFontFiles.size(); ++i) {
		mFontFiles[i] = MakePtr<TFontFileSettings>();
		AddChild(mFontFiles[i].Get(), kFontKeys[i], kWrite);
	}
	FinishDeclaration();
	LoadConfig();
	BuildFonts();
	TGraphPort::Instance()->SetFontSource(this);
}

TFontEngine::~TFontEngine() {
	if (TGraphPort* port = TGraphPort::Instance())
		port->SetFontSource(nullptr);
}

void TFontEngine::CreateInstance() {
	Create([] { return new TFontEngine; }, [](TFontEngine* engine) { delete engine; });
}

TString TFontEngine::ConfigPath() {
	return Folders::ResourceBase().Descend("Skin").FilePath("Fonts/Config.xml");
}

void TFontEngine::LoadConfig() {
	const TString path = ConfigPath();
	if (!TFile(path).Exists())
		return Log(TString::Format("The font config file '%s' does not exist. Using system default fonts...", path));
	try {
		Load(path);
		mConfigLoaded = true;
	} catch (const TReadableException&) {
		ShowUserMessage(
		    TString::Format(
		        "Failed to load the font preferences file. Maybe the config file '%s' is broken.\n\nPlease reinstall "
		        "the application...",
		        path),
		    kErrorMessage);
	}
}

void TFontEngine::BuildFonts() {
	try {
		for (std::size_t i = 0; i < mFonts.size(); ++i)
			mFonts[i] = BuildFont(i);
	} catch (const TReadableException& failure) {
		Log(TString::Format("Failed to resolve system default fonts: '%s'", failure.Message()));
	}
}

TPtr<TFont> TFontEngine::BuildFont(std::size_t index) const {
	if (mConfigLoaded)
		return MakePtr<TFreetypeFont>(*mFontFiles[index], true);
	const float size = index == kStandardBig ? kBigSystemSize : kSystemSize;
	const auto settings = MakePtr<TFontSettings>();
	settings->mFamilyName.Set(kSystemFamily);
	settings->mWidth.Set(size);
	settings->mHeight.Set(size);
	return MakePtr<TFreetypeFont>(*settings, true);
}

TFont* TFontEngine::Font(int index) {
	return index >= 0 && index < kNumberOfFonts ? mFonts[static_cast<std::size_t>(index)].Get() : nullptr;
}

TPtr<TFont> TFontEngine::CreateFont(const TFontDescription& description, bool followsUiScale) {
	const auto settings = MakePtr<TFontSettings>();
	settings->mFamilyName.Set(description.mFamilyName);
	settings->mPostScriptName.Set(description.mPostScriptName);
	settings->mWidth.Set(description.mWidth);
	settings->mHeight.Set(description.mHeight);
	settings->mExtraHorizontalSpacing.Set(description.mExtraHorizontalSpacing);
	settings->mExtraVerticalSpacing.Set(description.mExtraVerticalSpacing);
	settings->mAntiAlias.Set(description.mAntiAlias);
	settings->mBold.Set(description.mBold);
	settings->mItalic.Set(description.mItalic);
	return MakePtr<TFreetypeFont>(*settings, followsUiScale);
}

TPtr<TFont>
TFontEngine::CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) {
	const auto settings = MakePtr<TFontFileSettings>();
	settings->mFileName.Set(path);
	settings->mSize.Set(size);
	settings->mAntiAlias.Set(antiAlias);
	return MakePtr<TFreetypeFont>(*settings, followsUiScale);
}

void TFontEngine::OnScaleChanged(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		BuildFonts();
}
