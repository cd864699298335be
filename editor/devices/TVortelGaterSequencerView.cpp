// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelGaterSequencerView.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <algorithm>

using enum TVortelSkinColors::TVortelColor;

namespace {

constexpr int kMarginLeft = 2;
constexpr int kMarginTop = 3;
constexpr int kLevelsPerBar = 16;
constexpr int kGridLines = 4; // and as many parts between them
constexpr float kOddBarShare = 0.8f;
constexpr float kColumnShare = 0.25f;

} // namespace

TVortelGaterSequencerView::TVortelGaterSequencerView(TVortelDocument& document, TVortelGaterDevice& device)
    : mpActive(TVortelActiveScene::Create(document, *this)),
      mpDevice(&device) {
	mpActive->Start();
	device.mpNumVolumeSteps->ChangedBang().AddObserver({this, &TVortelGaterSequencerView::OnDeviceChanged});
	device.StepsChangedBang().AddObserver({this, &TVortelGaterSequencerView::OnDeviceChanged});
}

void TVortelGaterSequencerView::OnProgramChanged(TVortelProgram*) {
	Invalidate();
}

void TVortelGaterSequencerView::OnSceneChanged(TVortelScene*) {
	Invalidate();
}

void TVortelGaterSequencerView::OnDeviceChanged(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	Refresh();
	Invalidate();
}

void TVortelGaterSequencerView::Refresh() {
	if (!mpDevice)
		return;
	mNumSteps = std::clamp(static_cast<int>(mpDevice->mpNumVolumeSteps->RealValue()), 1, kMostSteps);
	for (int step = 0; step < kMostSteps; ++step)
		mLevels[static_cast<std::size_t>(step)] = mpDevice->StepLevel(step);
}

void TVortelGaterSequencerView::Draw(TSurface& port) {
	Refresh();
	const TColor back = TVortelSkinColors::Instance()->VortelColor(kGridBack);
	TVortelSkin::Instance()->DrawRoundedPanel(port, AbsoluteRect(), back);
	for (int step = 0; step < mNumSteps; ++step)
		DrawColumn(port, step);
}

void TVortelGaterSequencerView::DrawColumn(TSurface& port, int step) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	const TColor back = colors.VortelColor(kGridBack);
	const TColor full = colors.VortelColor(kGridText);
	const int height = BarAreaHeight();
	const int left = static_cast<int>(ColumnWidth() * step) + 1;
	const int right = static_cast<int>(ColumnWidth() * (step + 1)) - 1;
	const int top = AbsolutePosition().mY + kMarginTop;
	const TRectT<int> column{AbsolutePosition().mX + left + kMarginLeft, top, right - left, height};
	for (int line = 1; line < kGridLines; ++line)
		port.DrawHorizontalLine(
		    {AbsolutePosition().mX + left + 3, top + line * height / kGridLines}, column.mWidth - 2,
		    colors.VortelColor(kGridLine), 1.0f);
	port.FillRect(column, Mix(full, back, kColumnShare), 1.0f);
	const int bar = static_cast<int>(mLevels[static_cast<std::size_t>(step)] * static_cast<float>(height));
	if (bar > 0)
		port.FillRect(
		    {column.mLeft, top + height - bar, column.mWidth, bar},
		    step % 2 == 0 ? full : Mix(full, back, kOddBarShare), 1.0f);
}

bool TVortelGaterSequencerView::OnLeftMouseDown(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	Refresh();
	mDragging = true;
	ApplyPoint(x, y);
	return true;
}

bool TVortelGaterSequencerView::OnLeftMouseUp(int, int, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	mDragging = false;
	return true;
}

void TVortelGaterSequencerView::OnMouseCaptureReleased(int, int, int) {
	mDragging = false;
}

bool TVortelGaterSequencerView::OnMouseDrag(int x, int y, int modifiers) {
	return DragTo(x, y, modifiers);
}

bool TVortelGaterSequencerView::OnMouseHover(int x, int y, int modifiers) {
	return (modifiers & kMouseLeftHeld) && DragTo(x, y, modifiers);
}

bool TVortelGaterSequencerView::DragTo(int x, int y, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) || !mDragging)
		return false;
	ApplyPoint(x, y);
	return true;
}

/// Sixteen levels and zero: the level is rounded down, so only the topmost row of pixels gives all of it.
void TVortelGaterSequencerView::ApplyPoint(int x, int y) {
	const TPointT<int> corner = AbsolutePosition();
	const int step = std::clamp(static_cast<int>((x - corner.mX - kMarginLeft) / ColumnWidth()), 0, mNumSteps - 1);
	const float depth = static_cast<float>(y - corner.mY - kMarginTop) / static_cast<float>(BarAreaHeight());
	const float level = 1.0f - std::clamp(depth, 0.0f, 1.0f);
	const float quantised = static_cast<float>(static_cast<int>(level * kLevelsPerBar)) / kLevelsPerBar;
	mLevels[static_cast<std::size_t>(step)] = quantised;
	if (mpDevice)
		mpDevice->SetStepLevel(step, quantised);
	Invalidate();
}
