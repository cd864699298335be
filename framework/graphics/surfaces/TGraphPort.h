// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TForwardingObserver.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/graphics/surfaces/TFont.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/graphics/surfaces/UiScale.h"

#include <cstdint>
#include <span>

class TGraphPortPrefs;
class TWindowGlue;

/// Makes surfaces, loads images, hands out fonts and brings finished surfaces to the windows. Made after
/// TGraphPortPrefs and before the font engine. GUI thread.
class TGraphPort : public TSingleton<TGraphPort> {
public:
	enum TScaleFactor : int32_t { kAutomaticScale = 0, kScale100 = 1, kScale200 = 2 };
	enum TMode : int32_t { kWindowed = 0, kFullscreen = 1, kChangingMode = 2 };

	/// Asked with the new mode before it changes; false leaves it as it is. And told when it has changed.
	using TBeforeModeChange = TFunctionPtr<bool, int>;
	using TAfterModeChange = TFunctionPtr<void, int>;

	~TGraphPort() override;

	/// Whether the mode was set and is not about to change.
	virtual bool IsInitialized() const = 0;
	virtual TMode Mode() const = 0;
	/// Full screen becomes windowed for a window that cannot do it, and where there is none.
	virtual void SetMode(TMode mode) = 0;
	/// The main window of the port; null for an editor in a host.
	virtual TWindowGlue* Window() const = 0;
	virtual void* NativeDisplay() const = 0;
	/// The platform calls it when screens come, go or change.
	virtual void OnDisplayChanged() = 0;
	/// Everything that was loaded for a scale is loaded again at its next use.
	virtual void ReloadBitmaps() = 0;

	/// In surface pixels, not mapped and not locked. Null instead of an exception.
	virtual TPtr<TSurface> CreateUnmappedSurface(TPointT<int> size) = 0;
	/// Mapped, locked and black, at scale 1/1. Throws TReadableException. flags: 0.
	virtual TPtr<TSurface>
	CreateSurface(TPointT<int> size, uint32_t flags, const TSurface::TLostCallback& lostCallback) = 0;
	/// From a BMP, PNG, JPEG or TIFF file; with an alpha mask where the image has transparency, unless that is ignored.
	/// Throws TReadableException. flags: 0.
	virtual TPtr<TSurface>
	LoadImage(const TString& path, uint32_t flags, const TSurface::TLostCallback& lostCallback, bool ignoreAlpha) = 0;

	/// What the next Present of this window is to bring. In surface pixels.
	virtual void InvalidateRects(TWindowGlue& window, std::span<const TRectT<int>> rects) = 0;
	/// Brings what was invalidated of the rectangle, or all of it if nothing was, to the window.
	virtual void
	Present(TWindowGlue& window, TPointT<int> destPoint, TSurface& surface, const TRectT<int>& sourceRect) = 0;

	/// Null before there is a font engine.
	virtual TFont* Font(int index) = 0;
	/// Throw TReadableException.
	virtual TPtr<TFont> CreateFont(const TFontDescription& description, bool followsUiScale) = 0;
	virtual TPtr<TFont>
	CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) = 0;
	virtual void Idle() = 0;

	// What the platform knows about the place of a point on the desktop

	virtual int DpiAt(TPointT<int> point) const = 0;
	virtual TRectT<int> WorkAreaAt(TPointT<int> point) const = 0;

	/// What CurrentScale gives.
	virtual TUiScale UiScale() = 0;

	/// Null for none; must stay until it is taken out again.
	void SetFontSource(TFontSource* source) noexcept { mpFontSource = source; }

	/// From the application event queue. May be empty.
	void SetModeCallbacks(TBeforeModeChange before, TAfterModeChange after) noexcept {
		mBeforeModeChange = before;
		mAfterModeChange = after;
	}

protected:
	TGraphPort() = default;

	/// Throws TReadableException before there is one.
	TFontSource& FontSource() const;

	TFontSource* mpFontSource = nullptr;
	TBeforeModeChange mBeforeModeChange;
	TAfterModeChange mAfterModeChange;
};
