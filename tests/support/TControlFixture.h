// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/foundation/files/Folders.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/gui/tooltips/TToolTipWindow.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TLogFolder.h"

/// A test of controls in a window in memory, with the program's own look, fonts and pictures.
class TControlFixture : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		Folders::UseResources(TDirectory(VORTEL_TEST_RESOURCES));
		TFontEngine::CreateInstance();
		TSkinColors::SetReadsThemes(false);
		TVortelSkinColors::Create();
		TVortelSkin::Create();
		TToolTipWindow::InstallPresenter();
	}

	void TearDown() override {
		if (mpEditor)
			mpEditor->Close();
		mpEditor = nullptr;
		TSkin::Destroy();
		TSkinColors::Destroy();
		TSkinColors::SetReadsThemes(true);
		TFontEngine::Destroy();
		TGuiFixture::TearDown();
	}

	/// Puts the view into the editor.
	template <class T>
	T& Show(const TPtr<T>& view, const TRectT<int>& rect) {
		if (!mpEditor)
			OpenEditor();
		view->SetRect(rect);
		mpEditor->MainFrame()->AddChild(view);
		Tick();
		return *view;
	}

	void Drag(int x, int y, int moves = 8) {
		const TPointT<int> from = Platform().Cursor().MousePosition();
		for (int i = 1; i <= moves; ++i)
			Move(from.mX + (x - from.mX) * i / moves, from.mY + (y - from.mY) * i / moves);
	}

	/// Presses and releases of keys that are held together.
	void Keys(std::initializer_list<int> codes) {
		for (const int code : codes)
			KeyDown(code);
		for (const int* code = codes.end(); code != codes.begin();)
			KeyUp(*--code);
	}

	void Type(const char* text) {
		Platform().Type(text);
		Tick();
	}

	TLogFolder mLogFolder;
};
