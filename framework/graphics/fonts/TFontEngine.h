// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TForwardingObserver.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/graphics/fonts/TFontSettings.h"
#include "framework/graphics/surfaces/TFont.h"

#include <array>

/// The five fonts of the interface: from "Skin/Fonts/Config.xml" of the resources, or the system's where there is no
/// such file. A new UI scale builds them anew. Made after the port, which hands the fonts out. GUI thread.
class TFontEngine final : public TSingleton<TFontEngine>, public TDocumentRoot, public TFontSource {
public:
	enum TFontIndex : int32_t { kStandard = 0, kStandardBig = 1, kBold = 2, kItalic = 3, kMonospaced = 4 };

	TFontEngine();
	~TFontEngine() override;

	/// In the current storage and in all that are made later.
	static void CreateInstance();

	TFont* Font(int index) override;
	TPtr<TFont> CreateFont(const TFontDescription& description, bool followsUiScale) override;
	TPtr<TFont>
	CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) override;

	/// Whether the fonts are those of the configuration.
	bool IsConfigLoaded() const noexcept { return mConfigLoaded; }

	/// Where the configuration lies.
	static TString ConfigPath();

private:
	void LoadConfig();
	void BuildFonts();
	TPtr<TFont> BuildFont(std::size_t index) const;
	void OnScaleChanged(TObservable* observable, int32_t reason);

	using TScaleObserver = TForwardingObserver<TFontEngine>;

	TPtr<TScaleObserver> mpObserver;
	std::array<TPtr<TFont>, kNumberOfFonts> mFonts;
	std::array<TPtr<TFontFileSettings>, kNumberOfFonts> mFontFiles;
	bool mConfigLoaded = false;
};
