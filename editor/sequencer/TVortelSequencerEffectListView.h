// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/support/TVortelActiveScene.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/foundation/values/TColor.h"
#include "framework/gui/views/TView.h"

#include <array>

class TButton;
class TRecolorableBitmap;

/// The effects in processing order, a row each, beside the matrix and as high: selects the effect that is edited, solos
/// one, randomises the sequence of one, and changes the order by dragging. Row 0 is the randomizer and stays in front.
/// Selection and solo follow an effect to its new row.
class TVortelSequencerEffectListView final : public TView, private TVortelActiveScene::TClient {
public:
	TVortelSequencerEffectListView(TVortelDocument& document, TVortelAudioEngine& engine);

	int SelectedRow() const noexcept { return mSelectedRow; }

	int SoloRow() const noexcept { return mSoloRow; }

	/// A device's index; -1 while the randomizer has picked none.
	int RandomDevice() const noexcept { return mRandomDeviceRow; }

	void OnResized() override;
	void Draw(TSurface& port) override;
	void DrawOverlay(TSurface& port) override;
	void OnFrame() override;

	bool WantsMouseCapture(int, int, int) override { return true; }

	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	static constexpr int kRows = TVortelDocument::kNumberOfDevices;
	using TButtons = std::array<TPtr<TButton>, kRows>;

	void OnProgramChanged(TVortelProgram* previous) override;
	void OnSelectedDevice(TObservable* observable, int32_t reason);
	void OnSoloRow(TObservable* observable, int32_t reason);
	void OnDeviceOrderChanged(TObservable* observable, int32_t reason);

	void AddButtons();
	void OnSoloPressed();
	void OnRandomizePressed();
	void UpdateToolTips();
	void UpdateButtonColors();
	TVortelDevice* DeviceAt(int row) const;

	int RowTop(int row) const { return static_cast<int>(mRowHeight * row); }

	/// The row's block, in the window.
	TRectT<int> RowRect(int row) const;
	int RowUnder(int y, int first) const;
	bool IsBright(int row) const;
	void DrawRow(TSurface& port, int row) const;
	void DrawDragMark(TSurface& port) const;
	void DrawSwapMark(TSurface& port) const;
	void DrawInsertMark(TSurface& port) const;

	double RowMiddle(int row) const { return AbsolutePosition().mY + mRowHeight * row + mRowHeight / 2; }

	void SelectRow(int row);
	void BeginDrag(int row, int y);
	void DragTo(int y);
	void DropRow();
	void EndDrag();
	bool IsOverHandle(int x, int y) const;

	TPtr<TVortelActiveScene> mpActive;
	TWeakPtr<TVortelAudioEngine> mEngine;
	bool mDragging = false;
	int mDragSourceRow = -1;
	int mDragTargetRow = -1;
	int mDragPressY = -1; // in the window, as the next
	int mDragCurrentY = -1;
	bool mDragSwapMode = false; // over the middle of a row: the two change places; else an insert between rows
	int mRandomDeviceRow = -1;
	int mSelectedRow = 0;
	double mRowHeight = 20.0;
	int mSoloRow = -1;
	TButtons mSoloButtons;
	TButtons mRandomizeButtons;
	TPtr<TRecolorableBitmap> mDragHandle;
};
