// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelGaterDevice.h"
#include "editor/support/TVortelActiveScene.h"
#include "framework/gui/views/TView.h"

#include <array>

/// The Gater's step levels as bars, drawn by the mouse. Each level goes straight into the device and the active scene.
class TVortelGaterSequencerView final : public TView, private TVortelActiveScene::TClient {
public:
	TVortelGaterSequencerView(TVortelDocument& document, TVortelGaterDevice& device);

	void Draw(TSurface& port) override;

	bool WantsMouseCapture(int, int, int) override { return true; }

	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	static constexpr int kMostSteps = 16;

	void OnProgramChanged(TVortelProgram* previous) override;
	void OnSceneChanged(TVortelScene* previous) override;
	void OnDeviceChanged(TObservable* observable, int32_t reason);
	/// Takes the levels and their number from the device.
	void Refresh();
	bool DragTo(int x, int y, int modifiers);
	void ApplyPoint(int x, int y);

	double ColumnWidth() const { return static_cast<double>(Width() - 4) / mNumSteps; }

	int BarAreaHeight() const { return Height() - 6; }

	void DrawColumn(TSurface& port, int step) const;

	int mNumSteps = 8;
	std::array<float, kMostSteps> mLevels{};
	bool mDragging = false;
	TPtr<TVortelActiveScene> mpActive;
	TWeakPtr<TVortelGaterDevice> mpDevice;
};
