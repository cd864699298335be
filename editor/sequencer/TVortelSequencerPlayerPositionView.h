// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/support/TVortelActiveScene.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/gui/views/TView.h"

/// The thin strip under the matrix that shows which step plays. It alone is painted while music runs, and only when the
/// step changes.
class TVortelSequencerPlayerPositionView final : public TView, private TVortelActiveScene::TClient {
public:
	TVortelSequencerPlayerPositionView(TVortelDocument& document, TVortelAudioEngine& engine);

	/// -1 for none.
	int CurrentStep() const noexcept { return mCurrentStep; }

	void Draw(TSurface& port) override;
	void OnFrame() override;

private:
	void OnSceneChanged(TVortelScene* previous) override;
	void OnGridChanged(TObservable* observable, int32_t reason);

	TPtr<TVortelActiveScene> mpActive;
	TWeakPtr<TVortelAudioEngine> mEngine;
	int mSteps = 16;
	int mCurrentStep = -1;
};
