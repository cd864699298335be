// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TLogFolder.h"

#include <filesystem>
#include <string>

/// A test of the skin with resources, a user's folder and messages of its own.
class TSkinFixture : public TGraphicsFixture {
protected:
	void SetUp() override {
		TGraphicsFixture::SetUp();
		Folders::UseResources(mFolder.Directory());
		for (const char* folder : {"Themes", "Skin/Textures"})
			std::filesystem::create_directories(mFolder.PathOf(folder));
		sShown.clear();
		TSystemGlobals::Instance()->SetMessageDialogFunction(
		    [](const TString&, const TString& text, TMessageKind kind) {
			    sShown += std::to_string(kind) + ": " + text.CString();
		    });
	}

	void TearDown() override {
		TSkin::Destroy();
		TSkinColors::Destroy();
		TGraphicsFixture::TearDown();
	}

	/// The base classes.
	static TSkinColors& Start() {
		TSkinColors::Create([] { return new TSkinColors; }, [](TSkinColors* colors) { delete colors; });
		TSkin::Create([] { return new TSkin; }, [](TSkin* skin) { delete skin; });
		return *TSkinColors::Instance();
	}

	/// A set of plain images; the file with this name is missing, or broken.
	void WriteTextures(const std::string& set, const std::string& missing = {}, const std::string& broken = {}) {
		const std::string folder = "Skin/Textures/" + set + "/";
		std::filesystem::create_directories(mFolder.PathOf(folder));
		for (const char* name :
		     {"ButtonBlending.bmp", "RoundButtonBlending.bmp", "PressedRoundButtonBlending.bmp",
		      "PressedButtonBlending.bmp", "HScrollBarBlending.bmp", "VScrollBarBlending.bmp", "HSliderBlending.bmp",
		      "VSliderBlending.bmp", "PanelBlending.bmp", "ControlBarBlending.bmp", "InnerBodyTexture.bmp",
		      "BodyTexture.bmp"})
			if (name == broken)
				mFolder.Write(folder + name, "no image");
			else if (name != missing)
				MakeSurface(4, 4)->SaveToFile(mFolder.Path(folder + name), TSurface::kBmp);
	}

	static inline std::string sShown;
	TLogFolder mFolder;
};
