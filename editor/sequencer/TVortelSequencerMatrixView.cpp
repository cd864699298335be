// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sequencer/TVortelSequencerMatrixView.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "editor/support/DrawBlockFrame.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/gui/windows/TCursor.h"

#include <algorithm>
#include <utility>

using enum TVortelSkinColors::TVortelColor;

namespace {

constexpr float kPreviewOpacity = 0.8f;
constexpr float kShadowedRowShare = 0.33f; // of its colour, while another row is soloed
/// How much of a column at either end of a block is taken for that end, of a block of one column and of longer ones.
constexpr double kShortBlockEdge = 0.3;
constexpr double kLongBlockEdge = 0.6;

} // namespace

TVortelSequencerMatrixView::TVortelSequencerMatrixView(TVortelDocument& document)
    : mpActive(TVortelActiveScene::Create(document, *this)) {
	mpActive->Start();
	document.SequenceChangedBang().AddObserver({this, &TVortelSequencerMatrixView::OnPatternChanged});
	document.SoloRow().AddObserver({this, &TVortelSequencerMatrixView::OnSoloRow});
	SetToolTip("Left click (and drag) to draw blocks.\nMiddle click to split or join blocks.\n"
	           "Right click (and drag) to erase blocks.");
}

void TVortelSequencerMatrixView::SetGrid(int rows, int columns) {
	mRows = rows;
	mColumns = columns;
	if (!HasSize())
		return;
	OnResized();
	Invalidate();
}

uint8_t TVortelSequencerMatrixView::CellAt(int row, int column) const {
	const TVortelSequence* sequence = SequenceAt(row);
	return sequence ? sequence->Step(column) : uint8_t{kStepEmpty};
}

void TVortelSequencerMatrixView::SetCell(int row, int column, uint8_t value) {
	if (TVortelSequence* sequence = SequenceAt(row))
		sequence->SetStep(column, value);
}

TVortelSequence* TVortelSequencerMatrixView::SequenceAt(int row) const {
	TVortelScene* scene = mpActive->Scene();
	return scene ? &scene->Sequencer()->Sequence(mpActive->Program()->DeviceAtPosition(row)) : nullptr;
}

// What the document does

void TVortelSequencerMatrixView::OnProgramChanged(TVortelProgram* previous) {
	const TObserverCallback callback{this, &TVortelSequencerMatrixView::OnDeviceOrderChanged};
	if (previous)
		previous->DeviceOrderChanged().RemoveObserver(callback);
	mpActive->Program()->DeviceOrderChanged().AddObserver(callback);
}

void TVortelSequencerMatrixView::OnSceneChanged(TVortelScene* previous) {
	const TObserverCallback callback{this, &TVortelSequencerMatrixView::OnGridChanged};
	if (previous) {
		previous->Sequencer()->NumBeats().RemoveObserver(callback);
		previous->Sequencer()->NumStepsPerBeat().RemoveObserver(callback);
	}
	mpActive->Scene()->Sequencer()->NumBeats().AddObserver(callback);
	mpActive->Scene()->Sequencer()->NumStepsPerBeat().AddObserver(callback);
	Invalidate();
}

void TVortelSequencerMatrixView::OnPatternChanged(TObservable*, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		Invalidate();
}

void TVortelSequencerMatrixView::OnSoloRow(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mSoloRow = mpActive->Document()->SoloRow().Get();
	Invalidate();
}

void TVortelSequencerMatrixView::OnDeviceOrderChanged(TObservable*, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		Invalidate();
}

void TVortelSequencerMatrixView::OnGridChanged(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	TVortelSequencer& sequencer = *mpActive->Scene()->Sequencer();
	mStepsPerBeat = std::max(1, sequencer.NumStepsPerBeat().Get());
	SetGrid(mRows, std::max(1, sequencer.StepCount()));
}

// Geometry

void TVortelSequencerMatrixView::OnResized() {
	mRowHeight = static_cast<double>(Height() - 1) / mRows;
	mColumnWidth = static_cast<double>(Width() - 1) / mColumns;
}

TVortelSequencerMatrixView::TCell TVortelSequencerMatrixView::CellUnder(int x, int y) const {
	const int column = static_cast<int>((x - AbsolutePosition().mX) / mColumnWidth);
	const int row = static_cast<int>((y - AbsolutePosition().mY) / mRowHeight);
	return {std::clamp(column, 0, mColumns - 1), std::clamp(row, 0, mRows - 1)};
}

/// A block without a start, as only a file can hold, begins where it was pressed.
TVortelSequencerMatrixView::TBlock TVortelSequencerMatrixView::BlockAround(TCell cell) const {
	TBlock block{cell.mX, cell.mX};
	for (int column = cell.mX; column >= 0; --column)
		if (CellAt(cell.mY, column) == kStepBlockStart) {
			block.mFirst = column;
			break;
		}
	while (block.mLast + 1 < mColumns && CellAt(cell.mY, block.mLast + 1) == kStepBlockContinue)
		++block.mLast;
	return block;
}

TVortelSequencerMatrixView::TZone TVortelSequencerMatrixView::ZoneUnder(int x, const TBlock& block) const {
	const bool isShort = block.mFirst == block.mLast;
	const int edge = static_cast<int>(mColumnWidth * (isShort ? kShortBlockEdge : kLongBlockEdge));
	const int inView = x - AbsolutePosition().mX;
	if (inView < ColumnLeft(block.mFirst) + 1 + edge)
		return TZone::kLeftEdge;
	return inView > ColumnLeft(block.mLast + 1) - 1 - edge ? TZone::kRightEdge : TZone::kInside;
}

TRectT<int> TVortelSequencerMatrixView::BlockRect(int row, const TBlock& block) const {
	const int left = ColumnLeft(block.mFirst) + 2;
	const int top = RowTop(row) + 2;
	return {
	    AbsolutePosition().mX + left, AbsolutePosition().mY + top, ColumnLeft(block.mLast + 1) - 1 - left,
	    RowTop(row + 1) - 1 - top};
}

// Drawing

void TVortelSequencerMatrixView::Draw(TSurface& port) {
	DrawGrid(port);
	for (int row = 0; row < mRows; ++row)
		DrawRow(port, row);
	if (mGesture != kNoGesture)
		DrawPreview(port);
}

void TVortelSequencerMatrixView::DrawGrid(TSurface& port) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	const TPointT<int> corner = AbsolutePosition();
	port.FillRect(AbsoluteRect(), colors.VortelColor(kGridBack), 1.0f);
	const TColor line = colors.VortelColor(kGridLine);
	for (int row = 1; row < mRows; ++row)
		port.DrawHorizontalLine({corner.mX, corner.mY + RowTop(row)}, Width(), line, 1.0f);
	const TColor highlight = colors.VortelColor(kGridHighlight);
	for (int column = 1; column < mColumns; ++column)
		port.DrawVerticalLine(
		    {corner.mX + ColumnLeft(column), corner.mY}, Height(), column % mStepsPerBeat == 0 ? highlight : line,
		    1.0f);
}

void TVortelSequencerMatrixView::DrawRow(TSurface& port, int row) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	TColor color = colors.RowColor(row);
	if (mSoloRow != -1 && mSoloRow != row)
		color = Mix(color, colors.VortelColor(kGridBack), kShadowedRowShare);
	for (int column = 0; column < mColumns; ++column) {
		if (CellAt(row, column) != kStepBlockStart)
			continue;
		const TBlock block = BlockAround({column, row});
		TVortelSkin::Instance()->DrawBlock(port, BlockRect(row, block), color, 1.0f);
		column = block.mLast;
	}
}

void TVortelSequencerMatrixView::DrawPreview(TSurface& port) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	const TRectT<int> rect = BlockRect(mBlockStart.mY, {mBlockStart.mX, mBlockEnd.mX});
	TVortelSkin::Instance()->DrawBlock(port, rect, colors.RowColor(mBlockStart.mY), kPreviewOpacity);
	DrawBlockFrame(port, rect, colors.VortelColor(kPaletteText), kPreviewOpacity);
}

// Gestures

bool TVortelSequencerMatrixView::OnLeftMouseDown(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	mAnchor = CellUnder(x, y);
	if (TVortelDocument* document = mpActive->Document())
		document->SelectedDevice().Set(mAnchor.mY);
	if (CellAt(mAnchor.mY, mAnchor.mX) == kStepEmpty) {
		mBlockStart = mBlockEnd = mAnchor;
		ClearOriginal();
		mGesture = kDrawBlock;
	} else {
		GrabBlock(mAnchor, x);
	}
	Invalidate();
	return true;
}

void TVortelSequencerMatrixView::GrabBlock(TCell cell, int x) {
	const TBlock block = BlockAround(cell);
	const TZone zone = ZoneUnder(x, block);
	mBlockStart = mOrigStart = {block.mFirst, cell.mY};
	mBlockEnd = mOrigEnd = {block.mLast, cell.mY};
	mGesture = zone == TZone::kInside ? kMoveBlock : kResizeBlock;
	if (zone != TZone::kInside)
		mAnchor.mX = zone == TZone::kRightEdge ? block.mFirst : block.mLast;
	ShowCursor(zone == TZone::kInside ? kMoveCursor : kResizeEdgeHorizontalCursor);
}

bool TVortelSequencerMatrixView::OnMouseDrag(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	if (modifiers & kMouseRightHeld) {
		EraseBlockAt(x, y);
		ShowCursor(kDefaultCursor);
		return true;
	}
	const TCell cell = CellUnder(x, y);
	if (mGesture == kMoveBlock)
		MovePreview(cell);
	else if (mGesture != kNoGesture)
		ResizePreview(cell.mX);
	Invalidate();
	return true;
}

void TVortelSequencerMatrixView::MovePreview(TCell cell) {
	const int length = mOrigEnd.mX - mOrigStart.mX;
	const int last = std::max(0, mColumns - 1 - length);
	const int first = std::clamp(mOrigStart.mX + cell.mX - mAnchor.mX, 0, last);
	mBlockStart = {first, cell.mY};
	mBlockEnd = {first + length, cell.mY};
}

void TVortelSequencerMatrixView::ResizePreview(int column) {
	mBlockStart.mX = mBlockEnd.mX = column;
	if (column > mAnchor.mX)
		mBlockStart.mX = mOrigStart.mX >= 0 ? mOrigStart.mX : mAnchor.mX;
	else if (column < mAnchor.mX)
		mBlockEnd.mX = mOrigEnd.mX >= 0 ? mOrigEnd.mX : mAnchor.mX;
}

void TVortelSequencerMatrixView::ClearOriginal() {
	mOrigStart = mOrigEnd = kNoCell;
}

bool TVortelSequencerMatrixView::OnLeftMouseUp(int, int, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	if (mGesture != kNoGesture)
		WritePreview();
	ClearOriginal();
	mBlockStart = mBlockEnd = mAnchor = kNoCell;
	EndGesture();
	return true;
}

/// The grid may have become smaller since the press: what lies outside it is left alone.
void TVortelSequencerMatrixView::WritePreview() {
	if (mOrigStart != kNoCell)
		for (int column = mOrigStart.mX; column <= std::min(mOrigEnd.mX, mColumns - 1); ++column)
			SetCell(mOrigStart.mY, column, kStepEmpty);
	const int row = mBlockStart.mY;
	const int first = mBlockStart.mX;
	const int last = std::min(mBlockEnd.mX, mColumns - 1);
	if (row < 0 || first < 0 || last < first)
		return;
	SetCell(row, first, kStepBlockStart);
	for (int column = first + 1; column <= last; ++column)
		SetCell(row, column, kStepBlockContinue);
	// What is left of a block that the new one covers is a block of its own.
	if (last < mColumns - 1 && CellAt(row, last + 1) != kStepEmpty)
		SetCell(row, last + 1, kStepBlockStart);
}

bool TVortelSequencerMatrixView::OnRightMouseDown(int, int, int modifiers) {
	return !(modifiers & kMouseAutoRepeat);
}

bool TVortelSequencerMatrixView::OnRightMouseUp(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	EraseBlockAt(x, y);
	return true;
}

bool TVortelSequencerMatrixView::OnLeftDoubleClick(int x, int y, int modifiers) {
	return OnRightMouseUp(x, y, modifiers);
}

void TVortelSequencerMatrixView::EraseBlockAt(int x, int y) {
	const TCell cell = CellUnder(x, y);
	if (CellAt(cell.mY, cell.mX) != kStepEmpty) {
		const TBlock block = BlockAround(cell);
		for (int column = block.mFirst; column <= block.mLast; ++column)
			SetCell(cell.mY, column, kStepEmpty);
	}
	mGesture = kNoGesture;
	Invalidate();
}

bool TVortelSequencerMatrixView::OnRightDoubleClick(int x, int y, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) || !(modifiers & kMouseRightHeld))
		return false;
	if (TVortelSequence* sequence = SequenceAt(CellUnder(x, y).mY))
		sequence->Clear();
	EndGesture();
	Invalidate();
	return true;
}

/// Splits a block, or joins two that touch, at the nearest boundary of two columns.
bool TVortelSequencerMatrixView::OnMiddleMouseDown(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	const auto [column, row] = CellUnder(x, y);
	if (CellAt(row, column) == kStepEmpty)
		return true;
	const int middle = ColumnLeft(column) + static_cast<int>(mColumnWidth * 0.5);
	const int boundary = x - AbsolutePosition().mX < middle ? column : column + 1;
	const bool isInside = boundary >= 1 && boundary < mColumns;
	if (isInside && CellAt(row, boundary - 1) != kStepEmpty && CellAt(row, boundary) != kStepEmpty)
		SetCell(row, boundary, CellAt(row, boundary) == kStepBlockStart ? kStepBlockContinue : kStepBlockStart);
	mGesture = kNoGesture;
	Invalidate();
	return true;
}

bool TVortelSequencerMatrixView::OnMouseHover(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	const TCell cell = CellUnder(x, y);
	if (CellAt(cell.mY, cell.mX) == kStepEmpty)
		ShowCursor(kDefaultCursor);
	else
		ShowCursor(ZoneUnder(x, BlockAround(cell)) == TZone::kInside ? kMoveCursor : kResizeEdgeHorizontalCursor);
	return false;
}

void TVortelSequencerMatrixView::OnMouseCaptureReleased(int, int, int) {
	EndGesture();
}

void TVortelSequencerMatrixView::OnMouseLeave(int, int, int) {
	EndGesture();
}

void TVortelSequencerMatrixView::EndGesture() {
	ShowCursor(kDefaultCursor);
	if (std::exchange(mGesture, kNoGesture) != kNoGesture)
		Invalidate();
}

void TVortelSequencerMatrixView::ShowCursor(int id) {
	if (Cursor() != id)
		SetCursor(id);
}
