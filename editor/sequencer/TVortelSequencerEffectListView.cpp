// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sequencer/TVortelSequencerEffectListView.h"

#include "editor/skin/TVortelSkin.h"
#include "editor/skin/TVortelSkinColors.h"
#include "editor/support/DrawBlockFrame.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/windows/TCursor.h"

#include <algorithm>
#include <array>
#include <utility>

using enum TVortelSkinColors::TVortelColor;

namespace {

constexpr int kButtonWidth = 20;
constexpr int kSoloFromRight = 41;
constexpr int kRandomizeFromRight = 21;
constexpr int kButtonsWidth = 42; // with the gaps around them

constexpr int kHandleWidth = 28; // of the part of a row that begins a drag
constexpr int kHandleLeft = 8;
constexpr int kNameLeft = 25;
constexpr int kNameHeight = 13;

constexpr float kBrightBlock = 0.8f;
constexpr float kDimBlock = 0.4f;
constexpr float kBrightButton = 0.5f;
constexpr float kDimButton = 0.33f;

constexpr int kDragMarkFromRight = 54;
constexpr float kDragLineWidth = 2.0f;
constexpr double kArrowTip = 2.5;
constexpr double kArrowBase = 5.0;
constexpr int kInsertBarHeight = 3;

constexpr int kShortestBlock = 1;
constexpr int kLongestBlock = 4;

TPointT<float> Point(double x, double y) {
	return {static_cast<float>(x), static_cast<float>(y)};
}

/// direction: -1 up, 1 down.
void DrawArrowHead(TSurface& port, double x, double y, int direction, const TColor& color) {
	const std::array<TPointT<float>, 3> points{
	    Point(x, y + direction * kArrowTip), Point(x - kArrowBase, y - direction * kArrowBase),
	    Point(x + kArrowBase, y - direction * kArrowBase)};
	port.FillPolygon(points, color, 1.0f);
}

void DrawShaft(TSurface& port, double x, double from, double to, const TColor& color) {
	const std::array<TPointT<float>, 2> points{Point(x, from), Point(x, to)};
	port.StrokePolyline(points, color, StrokeWidth(port, kDragLineWidth), 1.0f);
}

/// With a shadow below bright letters, which the brighter rows would swallow.
void DrawName(TSurface& port, TPointT<int> point, const TString& name, const TColor& color, int font) {
	constexpr float kShadow = 0.45f;
	constexpr int kBrightSum = 3 * 128;
	TFont* face = TGraphPort::Instance()->Font(font);
	if (!face)
		return;
	if (color.mRed + color.mGreen + color.mBlue >= kBrightSum)
		face->DrawText(port, {point.mX, point.mY + 1}, name, {0, 0, 0}, TFont::kLeaveMask, kShadow);
	face->DrawText(port, point, name, color, TFont::kLeaveMask, 1.0f);
}

/// Of the button that acts: it still has the mouse.
template <class TButtons>
int RowOfActingButton(const TButtons& buttons) {
	const auto acting =
	    std::ranges::find_if(buttons, [](const auto& button) { return TGuiEventTarget::IsCapturing(button.Get()); });
	return acting == buttons.end() ? -1 : static_cast<int>(acting - buttons.begin());
}

} // namespace

TVortelSequencerEffectListView::TVortelSequencerEffectListView(TVortelDocument& document, TVortelAudioEngine& engine)
    : mpActive(TVortelActiveScene::Create(document, *this)),
      mEngine(&engine),
      mDragHandle(MakePtr<TRecolorableBitmap>("Icons/DragHandle.png")) {
	SetEventOrder(kChildrenFirst);
	mDragHandle->SetColors({255, 255, 255}, {0, 0, 0});
	AddButtons();
	mpActive->Start();
	document.SelectedDevice().AddObserver({this, &TVortelSequencerEffectListView::OnSelectedDevice});
	document.SoloRow().AddObserver({this, &TVortelSequencerEffectListView::OnSoloRow});
}

void TVortelSequencerEffectListView::AddButtons() {
	for (std::size_t row = 0; row < kRows; ++row) {
		const auto solo = MakePtr<TButton>("S", kToolButton);
		solo->SetClickAction({this, &TVortelSequencerEffectListView::OnSoloPressed});
		const auto randomize = MakePtr<TButton>("Randomize", kToolButton);
		const auto dice = MakePtr<TRecolorableBitmap>("Icons/Randomise.bmp");
		randomize->SetBitmaps(dice, dice, true);
		randomize->SetClickAction({this, &TVortelSequencerEffectListView::OnRandomizePressed});
		mSoloButtons[row] = solo;
		mRandomizeButtons[row] = randomize;
		AddChild(solo);
		AddChild(randomize);
	}
}

// What the document does

void TVortelSequencerEffectListView::OnProgramChanged(TVortelProgram* previous) {
	const TObserverCallback callback{this, &TVortelSequencerEffectListView::OnDeviceOrderChanged};
	if (previous)
		previous->DeviceOrderChanged().RemoveObserver(callback);
	mpActive->Program()->DeviceOrderChanged().AddObserver(callback);
}

void TVortelSequencerEffectListView::OnDeviceOrderChanged(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	UpdateToolTips();
	Invalidate();
}

void TVortelSequencerEffectListView::OnSelectedDevice(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mSelectedRow = mpActive->Document()->SelectedDevice().Get();
	UpdateButtonColors();
}

void TVortelSequencerEffectListView::OnSoloRow(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mSoloRow = mpActive->Document()->SoloRow().Get();
	UpdateButtonColors();
}

void TVortelSequencerEffectListView::OnFrame() {
	const int device = mEngine ? mEngine->RandomDevice() : -1;
	if (std::exchange(mRandomDeviceRow, device) != device)
		Invalidate();
}

TVortelDevice* TVortelSequencerEffectListView::DeviceAt(int row) const {
	TVortelDocument* document = mpActive->Document();
	return document ? document->Device(mpActive->Program()->DeviceAtPosition(row)) : nullptr;
}

// Buttons

void TVortelSequencerEffectListView::UpdateToolTips() {
	for (int row = 0; row < kRows; ++row)
		if (const TVortelDevice* device = DeviceAt(row)) {
			const auto index = static_cast<std::size_t>(row);
			mSoloButtons[index]->SetToolTip(TString("Solo the ") + device->Name() + ".");
			mRandomizeButtons[index]->SetToolTip(TString("Randomize the ") + device->Name() + " sequence.");
		}
}

void TVortelSequencerEffectListView::UpdateButtonColors() {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	for (int row = 0; row < kRows; ++row) {
		const bool isDim = mSoloRow != -1 && mSoloRow != row;
		const TColor back =
		    Mix(colors.RowColor(row), colors.VortelColor(kGridBack), isDim ? kDimButton : kBrightButton);
		const TColor text = colors.VortelColor(kPaletteText);
		const TColor fore = isDim ? Mix(text, back, kDimButton) : text;
		const auto index = static_cast<std::size_t>(row);
		mRandomizeButtons[index]->SetTextColor(fore);
		mRandomizeButtons[index]->SetBackColor(back);
		mSoloButtons[index]->SetTextColor(row == mSoloRow ? back : fore);
		mSoloButtons[index]->SetBackColor(row == mSoloRow ? fore : back);
	}
	Invalidate();
}

void TVortelSequencerEffectListView::OnSoloPressed() {
	const int row = RowOfActingButton(mSoloButtons);
	TVortelDocument* document = mpActive->Document();
	if (row == -1 || !document)
		return;
	document->SoloRow().Set(mSoloRow == row ? -1 : row);
	SelectRow(row);
}

void TVortelSequencerEffectListView::OnRandomizePressed() {
	const int row = RowOfActingButton(mRandomizeButtons);
	TVortelDocument* document = mpActive->Document();
	if (row == -1 || !document)
		return;
	const int device = mpActive->Program()->DeviceAtPosition(row);
	mpActive->Scene()->Sequencer()->Sequence(device).Randomize(kShortestBlock, kLongestBlock);
	SelectRow(row);
	document->SequenceChangedBang().Bang();
}

void TVortelSequencerEffectListView::SelectRow(int row) {
	if (TVortelDocument* document = mpActive->Document())
		document->SelectedDevice().Set(row);
}

// Geometry

void TVortelSequencerEffectListView::OnResized() {
	mRowHeight = static_cast<double>(Height() - 1) / kRows;
	for (int row = 0; row < kRows; ++row) {
		const int top = RowTop(row) + 1;
		const int height = RowTop(row + 1) - top;
		const auto index = static_cast<std::size_t>(row);
		mSoloButtons[index]->SetRect({Width() - kSoloFromRight, top, kButtonWidth, height});
		mRandomizeButtons[index]->SetRect({Width() - kRandomizeFromRight, top, kButtonWidth, height});
	}
}

TRectT<int> TVortelSequencerEffectListView::RowRect(int row) const {
	const int top = RowTop(row) + 2;
	return {
	    AbsolutePosition().mX + 2, AbsolutePosition().mY + top, Width() - kButtonsWidth - 2, RowTop(row + 1) - 1 - top};
}

int TVortelSequencerEffectListView::RowUnder(int y, int first) const {
	return std::clamp(static_cast<int>((y - AbsolutePosition().mY) / mRowHeight), first, kRows - 1);
}

bool TVortelSequencerEffectListView::IsOverHandle(int x, int y) const {
	return x - AbsolutePosition().mX < kHandleWidth && y - AbsolutePosition().mY > mRowHeight;
}

// Drawing

bool TVortelSequencerEffectListView::IsBright(int row) const {
	if (mDragging)
		return row == mDragSourceRow || (mDragSwapMode && row == mDragTargetRow);
	return mSoloRow == -1 || mSoloRow == row;
}

void TVortelSequencerEffectListView::Draw(TSurface& port) {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	port.FillRect(AbsoluteRect(), colors.VortelColor(kGridBack), 1.0f);
	for (int row = 1; row < kRows; ++row)
		port.DrawHorizontalLine(
		    {AbsolutePosition().mX, AbsolutePosition().mY + RowTop(row)}, Width(), colors.VortelColor(kGridLine), 1.0f);
	for (int row = 0; row < kRows; ++row)
		DrawRow(port, row);
	if (mDragging && mDragSourceRow != -1 && mDragTargetRow != -1)
		DrawDragMark(port);
}

void TVortelSequencerEffectListView::DrawRow(TSurface& port, int row) const {
	const TVortelSkinColors& colors = *TVortelSkinColors::Instance();
	const TRectT<int> rect = RowRect(row);
	const float strength = IsBright(row) ? kBrightBlock : kDimBlock;
	const TColor back = colors.VortelColor(kGridBack);
	TVortelSkin::Instance()->DrawBlock(port, rect, Mix(colors.RowColor(row), back, strength), 1.0f);
	if (row > 0) {
		const int top = rect.mTop + (rect.mHeight - mDragHandle->Size().mY) / 2;
		mDragHandle->DrawAt(port, {rect.mLeft + kHandleLeft, top}, strength);
	}
	const TColor text = colors.VortelColor(kPaletteText);
	if (const TVortelDevice* device = DeviceAt(row))
		DrawName(
		    port, {rect.mLeft + kNameLeft, rect.mTop + (rect.mHeight - kNameHeight) / 2 - 1}, device->Name(),
		    IsBright(row) ? text : Mix(text, back, kDimBlock),
		    row == mSelectedRow ? TFontEngine::kBold : TFontEngine::kStandard);
	if (mDragging && mDragSwapMode && row == mDragTargetRow)
		DrawBlockFrame(port, rect, text, 1.0f);
}

void TVortelSequencerEffectListView::DrawDragMark(TSurface& port) const {
	if (mDragSwapMode)
		DrawSwapMark(port);
	else
		DrawInsertMark(port);
}

void TVortelSequencerEffectListView::DrawSwapMark(TSurface& port) const {
	if (mDragSourceRow == mDragTargetRow)
		return;
	const TColor color = TVortelSkinColors::Instance()->VortelColor(kPaletteText);
	const int x = AbsolutePosition().mX + Width() - kDragMarkFromRight;
	const auto [upper, lower] = std::minmax({RowMiddle(mDragSourceRow), RowMiddle(mDragTargetRow)});
	DrawShaft(port, x, upper, lower, color);
	DrawArrowHead(port, x, upper, -1, color);
	DrawArrowHead(port, x, lower, 1, color);
}

void TVortelSequencerEffectListView::DrawInsertMark(TSurface& port) const {
	const TColor color = TVortelSkinColors::Instance()->VortelColor(kPaletteText);
	const TPointT<int> corner = AbsolutePosition();
	const int barTop = std::min(RowTop(mDragTargetRow) - 1, Height() - 4);
	TVortelSkin::Instance()->DrawBlock(
	    port, {corner.mX + 2, corner.mY + barTop, Width() - kButtonsWidth - 2, kInsertBarHeight}, color, 1.0f);

	const int x = corner.mX + Width() - kDragMarkFromRight;
	const double source = RowMiddle(mDragSourceRow);
	const double target = RowMiddle(mDragTargetRow > mDragSourceRow ? mDragTargetRow - 1 : mDragTargetRow);
	if (mDragTargetRow <= mDragSourceRow - 1) {
		const double end = std::min(source, target) - mRowHeight / 4;
		DrawShaft(port, x, std::max(source, target), end, color);
		DrawArrowHead(port, x, end, -1, color);
	} else if (mDragTargetRow > mDragSourceRow + 1) {
		const double end = std::max(source, target) + mRowHeight / 4;
		DrawShaft(port, x, std::min(source, target), end, color);
		DrawArrowHead(port, x, end, 1, color);
	}
}

/// A frame around the effect that the randomizer plays.
void TVortelSequencerEffectListView::DrawOverlay(TSurface& port) {
	const bool isHidden = mDragging || mRandomDeviceRow == -1 || (mSoloRow != -1 && mSoloRow != 0);
	const int row = isHidden || !mpActive->Program() ? -1 : mpActive->Program()->PositionOfDevice(mRandomDeviceRow);
	if (row != -1)
		DrawBlockFrame(port, RowRect(row), TVortelSkinColors::Instance()->VortelColor(kPaletteText), 1.0f);
}

// Mouse

bool TVortelSequencerEffectListView::OnLeftMouseDown(int x, int y, int modifiers) {
	if (modifiers & kMouseAutoRepeat)
		return false;
	const int row = RowUnder(y, 0);
	SelectRow(row);
	if (x - AbsolutePosition().mX < kHandleWidth && row >= 1 && !mDragging)
		BeginDrag(row, y);
	return true;
}

void TVortelSequencerEffectListView::BeginDrag(int row, int y) {
	mDragging = true;
	mDragSwapMode = false;
	mDragSourceRow = mDragTargetRow = row;
	mDragPressY = mDragCurrentY = y;
	SetCursor(kMoveCursor);
}

bool TVortelSequencerEffectListView::OnMouseDrag(int, int y, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) || !mDragging)
		return false;
	DragTo(y);
	return true;
}

bool TVortelSequencerEffectListView::OnMouseHover(int x, int y, int modifiers) {
	if (mDragging)
		return OnMouseDrag(x, y, modifiers);
	SetCursor(IsOverHandle(x, y) ? kMoveCursor : kDefaultCursor);
	return false;
}

void TVortelSequencerEffectListView::OnMouseLeave(int, int, int) {
	if (!mDragging)
		SetCursor(kDefaultCursor);
}

/// On the middle half of a row two effects would change places, near an edge the source would be put there.
void TVortelSequencerEffectListView::DragTo(int y) {
	mDragCurrentY = y;
	const int inView = y - AbsolutePosition().mY;
	const int row = RowUnder(y, 1);
	const int quarter = static_cast<int>(mRowHeight / 4);
	mDragSwapMode = inView >= RowTop(row) + quarter && inView <= RowTop(row + 1) - quarter;
	const int nearestEdge = static_cast<int>((inView + static_cast<int>(mRowHeight / 2)) / mRowHeight);
	mDragTargetRow = mDragSwapMode ? row : std::clamp(nearestEdge, 1, kRows);
	Invalidate();
}

bool TVortelSequencerEffectListView::OnLeftMouseUp(int, int, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) || !mDragging)
		return false;
	EndDrag();
	return true;
}

void TVortelSequencerEffectListView::OnMouseCaptureReleased(int, int, int) {
	if (mDragging)
		EndDrag();
}

void TVortelSequencerEffectListView::EndDrag() {
	if (mDragSourceRow != -1 && mDragTargetRow != -1 && mpActive->Document())
		DropRow();
	mDragging = mDragSwapMode = false;
	mDragSourceRow = mDragTargetRow = mDragPressY = mDragCurrentY = -1;
	SetCursor(kDefaultCursor);
	UpdateButtonColors();
}

void TVortelSequencerEffectListView::DropRow() {
	TVortelDocument& document = *mpActive->Document();
	TVortelProgram& program = *mpActive->Program();
	const bool isSoloed = mSoloRow != -1;
	const int device = program.DeviceAtPosition(isSoloed ? mSoloRow : mSelectedRow);
	int target = mDragTargetRow;
	// A target below was counted with the source still above it.
	if (!mDragSwapMode && mDragCurrentY > mDragPressY)
		--target;
	target = std::clamp(target, 1, kRows - 1);
	const int source = std::clamp(mDragSourceRow, 1, kRows - 1);
	if (source != target && mDragSwapMode)
		program.SwapDevices(source, target);
	else if (source != target)
		program.MoveDevice(source, target);
	const int position = program.PositionOfDevice(device);
	if (isSoloed)
		document.SoloRow().Set(position);
	SelectRow(position);
}
