// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBaseType.h"

/// A font by name, for the system to find. Sizes are logical pixels; -1 takes the other size, or that of the face.
class TFontSettings final : public TDocumentNode {
public:
	TFontSettings();
	~TFontSettings() override;

	TObservableBaseType<TString> mFamilyName{"Bitstream Vera Sans"};
	TObservableBaseType<TString> mPostScriptName;
	TObservableBaseType<float> mWidth{10.0f};
	TObservableBaseType<float> mHeight{10.0f};
	TObservableBaseType<float> mExtraHorizontalSpacing{0.0f};
	TObservableBaseType<float> mExtraVerticalSpacing{0.0f};
	TObservableBaseType<float> mExtraBaselineOffset{0.0f};
	TObservableBaseType<bool> mAntiAlias{false};
	TObservableBaseType<bool> mAutoHint{false};
	TObservableBaseType<bool> mBold{false};
	TObservableBaseType<bool> mItalic{false};
};

/// A font by file: absolute, or below the folder "Skin" of the resources.
class TFontFileSettings final : public TDocumentNode {
public:
	TFontFileSettings();
	~TFontFileSettings() override;

	TObservableBaseType<TString> mFileName{"Fonts/Vera.ttf"};
	TObservableBaseType<TPointT<int>> mSize{{10, 10}};
	TObservableBaseType<bool> mAntiAlias{false};
	TObservableBaseType<bool> mAutoHint{false};
	TObservableBaseType<int> mBaselineOffset{0};
};
