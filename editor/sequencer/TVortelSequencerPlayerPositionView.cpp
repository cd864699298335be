// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sequencer/TVortelSequencerPlayerPositionView.h"

#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <algorithm>
#include <utility>

using enum TVortelSkinColors::TVortelColor;

namespace {

constexpr TColor kPlayingStep{255, 255, 255};
constexpr TColor kRestingStep{32, 32, 32};

} // namespace

TVortelSequencerPlayerPositionView::TVortelSequencerPlayerPositionView(
    TVortelDocument& document, TVortelAudioEngine& engine)
    : mpActive(TVortelActiveScene::Create(document, *this)),
      mEngine(&engine) {
	mpActive->Start();
}

void TVortelSequencerPlayerPositionView::OnSceneChanged(TVortelScene* previous) {
	const TObserverCallback callback{this, &TVortelSequencerPlayerPositionView::OnGridChanged};
	if (previous) {
		previous->Sequencer()->NumBeats().RemoveObserver(callback);
		previous->Sequencer()->NumStepsPerBeat().RemoveObserver(callback);
	}
	mpActive->Scene()->Sequencer()->NumBeats().AddObserver(callback);
	mpActive->Scene()->Sequencer()->NumStepsPerBeat().AddObserver(callback);
}

void TVortelSequencerPlayerPositionView::OnGridChanged(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	const int steps = std::max(1, mpActive->Scene()->Sequencer()->StepCount());
	if (std::exchange(mSteps, steps) != steps)
		Invalidate();
}

void TVortelSequencerPlayerPositionView::OnFrame() {
	const int step = mEngine ? mEngine->PlayingStep() : -1;
	if (std::exchange(mCurrentStep, step) != step)
		Invalidate();
}

void TVortelSequencerPlayerPositionView::Draw(TSurface& port) {
	const TPointT<int> corner = AbsolutePosition();
	port.FillRect(AbsoluteRect(), TVortelSkinColors::Instance()->VortelColor(kGridBack), 1.0f);
	const double stepWidth = static_cast<double>(Width() - 1) / mSteps;
	for (int step = 0; step < mSteps; ++step) {
		const int left = static_cast<int>(stepWidth * step) + 2;
		const int right = static_cast<int>(stepWidth * (step + 1)) - 1;
		port.FillRect(
		    {corner.mX + left, corner.mY + 2, right - left, Height() - 4},
		    step == mCurrentStep ? kPlayingStep : kRestingStep, 1.0f);
	}
}
