// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/support/TVortelActiveScene.h"
#include "framework/foundation/values/TColor.h"
#include "framework/gui/views/TView.h"

/// One row per effect, one column per step: shows the blocks of the active scene and takes them from the mouse. While a
/// button is held only the view's own preview moves; the document is written at the release, as one undo step.
/// A cell is a point of column (x) and row (y). Row r is the device at position r of the program's order, in the colour
/// of the position.
class TVortelSequencerMatrixView final : public TView, private TVortelActiveScene::TClient {
public:
	explicit TVortelSequencerMatrixView(TVortelDocument& document);

	void SetGrid(int rows, int columns);

	/// Empty where there is no such cell.
	uint8_t CellAt(int row, int column) const;
	void SetCell(int row, int column, uint8_t value);

	void OnResized() override;
	void Draw(TSurface& port) override;

	bool WantsMouseCapture(int, int, int) override { return true; }

	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnRightMouseDown(int x, int y, int modifiers) override;
	bool OnMiddleMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnRightMouseUp(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnRightDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	enum TGesture { kNoGesture = 0, kDrawBlock = 1, kResizeBlock = 2, kMoveBlock = 3 };

	using TCell = TPointT<int>;

	static constexpr TCell kNoCell{-1, -1};

	/// The columns of a block, both included.
	struct TBlock {
		int mFirst;
		int mLast;
	};

	enum class TZone { kInside, kLeftEdge, kRightEdge };

	void OnProgramChanged(TVortelProgram* previous) override;
	void OnSceneChanged(TVortelScene* previous) override;
	void OnPatternChanged(TObservable* observable, int32_t reason);
	void OnSoloRow(TObservable* observable, int32_t reason);
	void OnDeviceOrderChanged(TObservable* observable, int32_t reason);
	void OnGridChanged(TObservable* observable, int32_t reason);

	TVortelSequence* SequenceAt(int row) const;
	TCell CellUnder(int x, int y) const;
	TBlock BlockAround(TCell cell) const;
	TZone ZoneUnder(int x, const TBlock& block) const;

	int RowTop(int row) const { return static_cast<int>(mRowHeight * row); }

	int ColumnLeft(int column) const { return static_cast<int>(mColumnWidth * column); }

	TRectT<int> BlockRect(int row, const TBlock& block) const;
	void DrawGrid(TSurface& port) const;
	void DrawRow(TSurface& port, int row) const;
	void DrawPreview(TSurface& port) const;

	void GrabBlock(TCell cell, int x);
	void MovePreview(TCell cell);
	void ResizePreview(int column);
	void ClearOriginal();
	void WritePreview();
	void EraseBlockAt(int x, int y);
	/// What the mouse leaves behind when the gesture is over or lost.
	void EndGesture();
	void ShowCursor(int id);

	TPtr<TVortelActiveScene> mpActive;
	int mRows = TVortelDocument::kNumberOfDevices;
	int mColumns = 16;
	int mStepsPerBeat = 4;
	int mSoloRow = -1;
	double mRowHeight = 1.0;
	double mColumnWidth = 1.0;
	TGesture mGesture = kNoGesture;
	TCell mAnchor = kNoCell; // of the press; in a resize, of the block's fixed end
	TCell mBlockStart = kNoCell;
	TCell mBlockEnd = kNoCell;
	TCell mOrigStart = kNoCell; // as the block was at the press; none while a new one is drawn
	TCell mOrigEnd = kNoCell;
};
