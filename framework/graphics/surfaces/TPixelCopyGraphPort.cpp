// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopyGraphPort.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/EarlyScaleFactor.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/graphics/surfaces/TMemorySurface.h"
#include "framework/graphics/surfaces/TReloadable.h"

#include <utility>

namespace {

constexpr int kNotRead = -1;
constexpr int kStandardDpi = 96;
constexpr TPointT<int> kMainScreen{1, 1};

} // namespace

TUiScale CurrentScale() {
	TGraphPort* const port = TGraphPort::Instance();
	return port ? port->UiScale() : ScaleForDpi(kStandardDpi);
}

TPixelCopyGraphPort::TPixelCopyGraphPort(const TPixelFormat& format)
    : mFormat(format),
      mWorkspace(MakePtr<TAggWorkspace>()),
      mCachedDpi(kNotRead),
      mScaleFactorObserver(
          MakePtr<TPreferencesObserver>(kMainThread, this, &TPixelCopyGraphPort::OnScaleFactorChanged)),
      mHiDpiObserver(MakePtr<TPreferencesObserver>(kMainThread, this, &TPixelCopyGraphPort::OnHiDpiChanged)) {
	mScaleFactorObserver->Observe(TGraphPortPrefs::Instance()->mUIScaleFactor);
	mHiDpiObserver->Observe(TGraphPortPrefs::Instance()->mEnableHiDPIDisplay);
}

TPixelCopyGraphPort::~TPixelCopyGraphPort() = default;

void TPixelCopyGraphPort::OnScaleFactorChanged(TObservable*, int32_t reason) {
	if (reason == kDidChange)
		ReloadBitmaps();
}

void TPixelCopyGraphPort::OnHiDpiChanged(TObservable*, int32_t reason) {
	if (reason != kDidChange)
		return;
	mCachedDpi = kNotRead;
	ReloadBitmaps();
}

void TPixelCopyGraphPort::OnDisplayChanged() {
	TGraphPortPrefs& preferences = *TGraphPortPrefs::Instance();
	if (preferences.mUIScaleFactor.Value() != kAutomaticScale) {
		mCachedDpi = kNotRead;
	} else if (const int dpi = ReadDpi(); dpi != mCachedDpi) {
		preferences.mDisplayChanged.BangBegin();
		mCachedDpi = dpi;
		preferences.mDisplayChanged.Bang();
	}
	ReloadBitmaps();
}

void TPixelCopyGraphPort::ReloadBitmaps() {
	mCachedBitmaps.clear();
	TReloadable::DropAllPixels();
}

int TPixelCopyGraphPort::ReadDpi() const {
	return TGraphPortPrefs::Instance()->mEnableHiDPIDisplay.Get() ? DpiAt(kMainScreen) : kStandardDpi;
}

int TPixelCopyGraphPort::Dpi() {
	if (mCachedDpi == kNotRead)
		mCachedDpi = ReadDpi();
	return mCachedDpi;
}

TUiScale TPixelCopyGraphPort::UiScale() {
	ReadScaleFactor();
	switch (TGraphPortPrefs::Instance()->mUIScaleFactor.Value()) {
	case kScale100:
		return kScaleOf100;
	case kScale200:
		return kScaleOf200;
	default:
		return ScaleForDpi(Dpi());
	}
}

void TPixelCopyGraphPort::ReadScaleFactor() {
	if (std::exchange(mScaleFactorWasRead, true) || IsInitialized())
		return;
	TGraphPortPrefs::Instance()->mUIScaleFactor.FromString(EarlyScaleFactor());
}

TPtr<TSurface> TPixelCopyGraphPort::CreateUnmappedSurface(TPointT<int> size) {
	try {
		TPtr<TSurface> surface = CreateSurface(size, 0, {});
		surface->UnmapPixels();
		surface->Unlock();
		return surface;
	} catch (const TReadableException&) {
		return nullptr;
	}
}

TPtr<TSurface>
TPixelCopyGraphPort::CreateSurface(TPointT<int> size, uint32_t /*flags*/, const TSurface::TLostCallback& lostCallback) {
	TPtr<TSurface> surface = MakePtr<TMemorySurface>(size, mFormat, mWorkspace);
	surface->MapPixels();
	if (!surface->Lock())
		throw TReadableException("Internal Error: Failed to lock an offscreen surface");
	surface->Clear({0, 0, 0});
	surface->SetLostCallback(lostCallback);
	return surface;
}

TFont* TPixelCopyGraphPort::Font(int index) {
	return mpFontSource ? mpFontSource->Font(index) : nullptr;
}

TPtr<TFont> TPixelCopyGraphPort::CreateFont(const TFontDescription& description, bool followsUiScale) {
	return FontSource().CreateFont(description, followsUiScale);
}

TPtr<TFont>
TPixelCopyGraphPort::CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) {
	return FontSource().CreateFontFromFile(path, size, antiAlias, followsUiScale);
}

void TPixelCopyGraphPort::Idle() {}
