// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TPixelCopyGraphPort.h"
#include "platform/TWindowGlue.h"

#include <vector>

/// The port on TPlatform.
class TGraphPortImpl final : public TPixelCopyGraphPort {
public:
	/// In the current storage and in all that are made later. Needs TGraphPortPrefs.
	static void CreateInstance();

	TGraphPortImpl();
	~TGraphPortImpl() override;

	bool IsInitialized() const override { return mWasSet && mMode != kChangingMode; }

	TMode Mode() const override { return mMode; }

	void SetMode(TMode mode) override;

	TWindowGlue* Window() const override { return mWindow.Get(); }

	/// Null for none. SetMode places it.
	void SetWindow(const TPtr<TWindowGlue>& window) { mWindow = window; }

	void* NativeDisplay() const override { return nullptr; }

	void InvalidateRects(TWindowGlue& window, std::span<const TRectT<int>> rects) override;
	void
	Present(TWindowGlue& window, TPointT<int> destPoint, TSurface& surface, const TRectT<int>& sourceRect) override;

	int DpiAt(TPointT<int> point) const override;
	TRectT<int> WorkAreaAt(TPointT<int> point) const override;

private:
	bool CanRunFullscreen() const;
	void RestoreWindow();
	void FillScreen();

	TMode mMode = kChangingMode;
	bool mWasSet = false;
	TPtr<TWindowGlue> mWindow;
	bool mHadDecorations = true;                  // of the window before it went full screen
	const TWindowGlue* mpInvalidWindow = nullptr; // only told apart by it
	std::vector<TRectT<int>> mInvalidRects;       // of that window
	std::vector<TRectT<int>> mRectsToShow;        // keeps its memory
};
