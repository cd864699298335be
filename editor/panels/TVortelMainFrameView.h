// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/gui/views/TFileDropTarget.h"
#include "shell/TAudioPluginShell.h"

class TDynamicColumnLayoutView;
class TVortelAudioEngine;
class TVortelLogoPanelView;

/// The whole editor. Made with the instance and as long-lived; its window comes and goes with the host's. Everything
/// that survives the window stands in the document. Main thread.
class TVortelMainFrameView final : public TAudioPluginShell::TGui, public TFileDropTarget {
public:
	/// Logical pixels.
	static constexpr int kWidth = 962;
	static constexpr int kHeight = 595;

	/// startServices: makes what views stand on. Called when the views are to be built, with the first opening: until
	/// then the editor costs nothing.
	TVortelMainFrameView(TVortelDocument* document, TVortelAudioEngine* engine, TFunctionPtr<void> startServices);
	~TVortelMainFrameView() override;

	void Prepare() override;

	/// One program or bank.
	bool AcceptsFiles(const TList<TString>& paths) const override;
	void OnFilesDropped(const TList<TString>& paths) override;

	void OnResized() override;
	void OnUiScaleChanged() override;
	void OnAttachedToWindow() override;
	void OnDetachedFromWindow() override;

private:
	void Build();
	TPtr<TView> MakeHead();
	TPtr<TView> MakeSequencer();
	TPtr<TView> MakeEffects();

	TPointT<int> mLastScale{1, 1}; // for which the host was last asked for a size
	TWeakPtr<TVortelDocument> mDocument;
	TWeakPtr<TVortelAudioEngine> mEngine;
	TPtr<TDynamicColumnLayoutView> mLayout;
	TPtr<TVortelLogoPanelView> mLogoPanel;
	const TFunctionPtr<void> mStartServices;
};
