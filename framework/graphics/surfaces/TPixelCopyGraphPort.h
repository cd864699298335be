// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TStlAllocator.h"
#include "framework/graphics/surfaces/TAggWorkspace.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TPixelFormat.h"

#include <map>

class TPixelCopyAlphaMask;
class TPixelCopySurface;

/// The port as far as it needs no platform: surfaces in memory, images, fonts and the scale.
class TPixelCopyGraphPort : public TGraphPort {
public:
	~TPixelCopyGraphPort() override;

	void OnDisplayChanged() override;
	void ReloadBitmaps() override;

	TPtr<TSurface> CreateUnmappedSurface(TPointT<int> size) override;
	TPtr<TSurface>
	CreateSurface(TPointT<int> size, uint32_t flags, const TSurface::TLostCallback& lostCallback) override;
	TPtr<TSurface> LoadImage(
	    const TString& path, uint32_t flags, const TSurface::TLostCallback& lostCallback, bool ignoreAlpha) override;

	TFont* Font(int index) override;
	TPtr<TFont> CreateFont(const TFontDescription& description, bool followsUiScale) override;
	TPtr<TFont>
	CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) override;
	void Idle() override;

	TUiScale UiScale() override;

	/// Small images that were loaded and are kept.
	int NumberOfCachedBitmaps() const noexcept { return static_cast<int>(mCachedBitmaps.size()); }

protected:
	/// All surfaces of the port are of the format. Needs TGraphPortPrefs.
	explicit TPixelCopyGraphPort(const TPixelFormat& format = TPixelFormat::Standard());

private:
	using TPreferencesObserver = TForwardingObserver<TPixelCopyGraphPort>;

	/// A copy of a small image that was loaded.
	class TCachedBitmap;
	using TCachedBitmaps = std::map<
	    TString, TPtr<TCachedBitmap>, std::less<>, TStlAllocator<std::pair<const TString, TPtr<TCachedBitmap>>>>;

	/// `failure` is what the user reads if there is no surface for the file.
	TPtr<TPixelCopySurface> CreateImageSurface(
	    TPointT<int> size, const TSurface::TLostCallback& lostCallback, const char* failure, const TString& path);
	void ReadScaleFactor();
	int Dpi();
	int ReadDpi() const;
	void OnScaleFactorChanged(TObservable* observable, int32_t reason);
	void OnHiDpiChanged(TObservable* observable, int32_t reason);

	const TPixelFormat& mFormat;
	TPtr<TAggWorkspace> mWorkspace;
	TCachedBitmaps mCachedBitmaps; // by path
	int mCachedDpi;
	bool mScaleFactorWasRead = false;
	TPtr<TPreferencesObserver> mScaleFactorObserver;
	TPtr<TPreferencesObserver> mHiDpiObserver;
};
