// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "framework/graphics/surfaces/UiScale.h"
#include "platform/headless/THeadlessClock.h"
#include "platform/headless/THeadlessPlatform.h"
#include "shell/TEditorWindow.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/editor/ViewsFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

class TMainFrameView;

/// The editor of an instance on a screen in memory. The clock stands still but for Advance. All operations enter the
/// instance as its GUI thread.
class TMemoryEditor {
public:
	struct TSetup {
		int mScaleFactor = 1; // TGraphPort::TScaleFactor
		int mDpi = 96;
		std::string mThemeFile;         // empty: the default theme
		TPointT<int> mCorner{700, 450}; // of the editor on the screen, logical pixels
		/// What is shown instead of the editor; null for the editor.
		std::function<TPtr<TMainFrameView>()> mMakeFrame;
	};

	/// One at a time in the process. Opens nothing yet.
	TMemoryEditor(TInstance& instance, const TSetup& setup);
	~TMemoryEditor();

	TMemoryEditor(const TMemoryEditor&) = delete;
	TMemoryEditor& operator=(const TMemoryEditor&) = delete;

	void Open();
	void Close();

	bool IsOpen() const noexcept { return mpWindow != nullptr; }

	/// At the same clock time; counts as a frame.
	void Tick();
	void Advance(int milliseconds) { AdvanceNanoseconds(int64_t{milliseconds} * 1000000); }

	void AdvanceNanoseconds(int64_t nanoseconds);

	THeadlessPlatform& Platform() const noexcept { return *mpPlatform; }

	/// Of the editor on the screen, in pixels.
	TPointT<int> Corner() const;
	/// Of a point in the editor, logical pixels, on the screen in pixels.
	TPointT<int> OnScreen(TPointT<int> point) const;

	void SaveViews(const std::string& path);
	/// What a window of the views file shows, as a PNG.
	void SavePicture(const std::string& path, int window);

	/// Runs a function as the instance's GUI.
	template <class TFunction>
	decltype(auto) AsGui(TFunction&& function) const {
		return mInstance.Shell().AsGui(std::forward<TFunction>(function));
	}

private:
	void GrantSize();
	TUiScale Scale() const;
	std::string Views();

	TInstance& mInstance;
	const TSetup mSetup;
	THeadlessClock mClock;
	THeadlessPlatform* mpPlatform = nullptr; // the instance's
	std::unique_ptr<TEditorWindow> mpWindow;
	int mPresentedBefore = 0;
	int mFrames = 0;
};
