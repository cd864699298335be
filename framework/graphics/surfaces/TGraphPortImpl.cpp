// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TGraphPortImpl.h"

#include "framework/foundation/files/TLog.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/graphics/surfaces/TMemorySurface.h"
#include "platform/TPlatform.h"

#include <algorithm>

namespace {

constexpr const char* kLogCategory = "GraphPort";
constexpr TPointT<int> kNotSet{-1, -1};

TScreen ScreenAt(TPointT<int> point) {
	const TPlatform* const platform = TPlatform::Instance();
	return platform ? platform->Screens().At(point) : TScreen{};
}

} // namespace

void TGraphPortImpl::CreateInstance() {
	Create([]() -> TGraphPort* { return new TGraphPortImpl; }, [](TGraphPort* port) { delete port; });
}

TGraphPortImpl::TGraphPortImpl() = default;

TGraphPortImpl::~TGraphPortImpl() = default;

int TGraphPortImpl::DpiAt(TPointT<int> point) const {
	return ScreenAt(point).mDpi;
}

TRectT<int> TGraphPortImpl::WorkAreaAt(TPointT<int> point) const {
	return ScreenAt(point).mWorkArea;
}

void TGraphPortImpl::SetMode(TMode mode) {
	const TPtr<TLog> log = TLog::Instance();
	if (mode == kFullscreen && !CanRunFullscreen()) {
		log->LogText(kLogCategory, "Enforce running windowed");
		mode = kWindowed;
	}
	if (mode == mMode || (mBeforeModeChange && !mBeforeModeChange(mode)))
		return;
	mMode = kChangingMode;
	mWasSet = false;
	if (mode == kFullscreen) {
		log->LogText(kLogCategory, "Initializing in FullscreenMode");
		FillScreen();
	} else {
		log->LogText(kLogCategory, "Initializing in WindowedMode");
		RestoreWindow();
	}
	mMode = mode;
	mWasSet = true;
	log->LogText(kLogCategory, "Successfully initialized");
	if (mAfterModeChange)
		mAfterModeChange(mode);
}

bool TGraphPortImpl::CanRunFullscreen() const {
	return mWindow && mWindow->IsOpen() && mWindow->IsResizable();
}

void TGraphPortImpl::RestoreWindow() {
	if (!mWindow)
		return;
	const TGraphPortPrefs& preferences = *TGraphPortPrefs::Instance();
	const TPointT<int> wanted = Scaled(preferences.mWindowedModeSize.Get(), CurrentScale());
	const TPointT<int> least = mWindow->MinimumSize();
	const TPointT<int> size{std::max(wanted.mX, least.mX), std::max(wanted.mY, least.mY)};
	const TPointT<int> position = preferences.mWindowedModePosition.Get();
	mWindow->SetHasNativeDecorations(mHadDecorations);
	mWindow->SetClientRect(position == kNotSet ? mWindow->Position() : position, size);
	if (position == kNotSet)
		mWindow->CenterOnScreen();
}

void TGraphPortImpl::FillScreen() {
	const TRectT<int> screen = ScreenAt(TGraphPortPrefs::Instance()->mFullScreenMonitorMatchPos.Get()).mBounds;
	TLog::Instance()->Log(
	    "Graphport", "Running fullscreen at '%d,%d,%d,%d'...", screen.mLeft, screen.mTop, screen.mWidth,
	    screen.mHeight);
	mHadDecorations = mWindow->HasNativeDecorations();
	mWindow->SetHasNativeDecorations(false);
	mWindow->SetClientRect({screen.mLeft, screen.mTop}, {screen.mWidth, screen.mHeight});
}

void TGraphPortImpl::InvalidateRects(TWindowGlue& window, std::span<const TRectT<int>> rects) {
	if (mpInvalidWindow != &window)
		mInvalidRects.clear();
	mpInvalidWindow = &window;
	mInvalidRects.insert(mInvalidRects.end(), rects.begin(), rects.end());
}

void TGraphPortImpl::Present(
    TWindowGlue& window, TPointT<int> destPoint, TSurface& surface, const TRectT<int>& sourceRect) {
	const TPointT<int> size = surface.Size();
	const TRectT<int> source = sourceRect.Intersected({0, 0, size.mX, size.mY});
	// Where the part of the surface comes to lie in the window.
	const TPointT<int> shift = destPoint - TPointT<int>{sourceRect.mLeft, sourceRect.mTop};
	const TRectT<int> dest =
	    TRectT<int>{source.mLeft + shift.mX, source.mTop + shift.mY, source.mWidth, source.mHeight};
	mRectsToShow.clear();
	if (mpInvalidWindow != &window || mInvalidRects.empty())
		mRectsToShow.push_back(dest);
	else
		for (const TRectT<int>& rect : mInvalidRects)
			mRectsToShow.push_back(rect.Intersected(dest));
	mInvalidRects.clear();
	std::erase_if(mRectsToShow, [](const TRectT<int>& rect) { return rect.IsEmpty(); });
	if (mRectsToShow.empty() || !surface.Pixels())
		return;

	// The picture's corner is the window's: nothing but the parts named is read.
	const uint8_t* const corner = surface.Pixels() - static_cast<std::ptrdiff_t>(shift.mY) * surface.RowBytes() -
	                              static_cast<std::ptrdiff_t>(shift.mX) * surface.BitDepth() / 8;
	const TGluePixels picture{
	    reinterpret_cast<const std::byte*>(corner), surface.RowBytes(), {dest.Right(), dest.Bottom()}};
	window.Present(picture, mRectsToShow);
}
