// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/views/TView.h"

class TButton;
class TDynamicColumnLayoutView;
class TDynamicRowLayoutView;
class TVortelAudioEngine;

/// The sequencer area: the tools for scene, sequence and effects on top, below them the list of effects beside the
/// matrix, and the strip that shows the playing step.
class TVortelSequencerView final : public TView {
public:
	TVortelSequencerView(TVortelDocument& document, TVortelAudioEngine& engine);

	void OnResized() override;

private:
	struct TIntRange {
		int mMinimum;
		int mMaximum;
	};

	void AddTools();
	void AddMatrix(TVortelDocument& document, TVortelAudioEngine& engine);
	TPtr<TView> MakeSceneTools();
	TPtr<TView> MakeSeedTools();
	TPtr<TView> MakeSequenceTools();
	TPtr<TView> MakeEffectTools();
	TPtr<TView> MakeGridBox(
	    const TString& toolTip, TIntRange range, int (TVortelSequencerView::*get)() const,
	    void (TVortelSequencerView::*set)(int));

	void OpenSceneMenu();
	void OpenSequenceMenu();
	void OpenEffectsMenu();

	TVortelScene* Scene() const { return mDocument ? mDocument->ActiveScene() : nullptr; }

	TVortelSequencer* Sequencer() const { return mDocument ? mDocument->ActiveSequencer() : nullptr; }

	int Seed() const;
	void SetSeed(int seed);
	int Beats() const;
	void SetBeats(int beats);
	int StepsPerBeat() const;
	void SetStepsPerBeat(int steps);
	bool IsLooped() const;
	void SetLooped(bool isLooped);

	TWeakPtr<TVortelDocument> mDocument;
	TPtr<TDynamicColumnLayoutView> mLayout;
	TPtr<TButton> mSceneEditButton;
	TPtr<TButton> mSequenceEditButton;
	TPtr<TButton> mEffectsEditButton;
};
