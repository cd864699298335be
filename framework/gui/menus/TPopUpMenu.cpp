// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TPopUpMenu.h"

#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/menus/TPopupListView.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TDesktop.h"

#include <algorithm>

namespace {

constexpr int kFont = 0;
constexpr int kFrameInset = 2;
constexpr int kLowestTextRoom = 5;
constexpr int kAroundArrow = 4; // of the open button, at its left
constexpr int kIconIndent = 1;
constexpr int kIconGap = 2;
constexpr int kAroundRowText = 6;
constexpr int kAroundRowIcon = 4;
constexpr float kHoverBrightness = 1.2f;
constexpr float kDisabledMix = 0.35f;

TColor MainColor(int index) {
	return TSkinColors::Instance()->MainColor(index);
}

} // namespace

TPopUpMenu::TPopUpMenu(TValue<int>* value)
    : mOpenButton(MakePtr<TButton>()),
      mIncDecButtons(MakePtr<TIncDecButtonPair>(TIncDecButtonPair::kLeftRight)),
      mEmptyText("None") {
	const TPtr<TBitmap> arrow = MakePtr<TRecolorableBitmap>("Icons/ArrowDown.bmp");
	mOpenButton->SetStyle(kBitmapButton);
	mOpenButton->SetBitmaps(arrow, arrow, true);
	mOpenButton->SetClickAction({this, &TPopUpMenu::Open});
	mOpenButton->SetVisible(false);
	mIncDecButtons->SetActions({this, &TPopUpMenu::StepBack}, {this, &TPopUpMenu::StepForward});
	mIncDecButtons->SetVisible(false);
	AddChild(mIncDecButtons);
	AddChild(mOpenButton);
	mLabels = mClosedLabels = {mEmptyText};
	TPopUpMenu::ApplyColors();
	SetValue(value);
}

TPopUpMenu::~TPopUpMenu() {
	CloseList();
}

// Value and entries

void TPopUpMenu::SetValue(TValue<int>* value) {
	if (mValue)
		mValue->RemoveObserver({this, &TPopUpMenu::OnValueChanged});
	mValue = value;
	if (value)
		value->AddObserver({this, &TPopUpMenu::OnValueChanged});
}

void TPopUpMenu::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mLastValue = mValue->Get();
	SelectInList();
	Invalidate();
}

int TPopUpMenu::Value() const {
	return mValue ? mValue->Get() : mLastValue;
}

void TPopUpMenu::WriteValue(int value) {
	if (mValue && mHasEntries)
		mValue->Set(value);
}

void TPopUpMenu::SetEntries(const TList<TString>& labels, const TList<TString>& closedLabels) {
	const bool hasEntries = !labels.IsEmpty();
	const TList<TString> shown = hasEntries ? labels : TList<TString>{mEmptyText};
	const TList<TString> closed = hasEntries && !closedLabels.IsEmpty() ? closedLabels : shown;
	if (hasEntries == mHasEntries && shown == mLabels && closed == mClosedLabels)
		return;
	mHasEntries = hasEntries;
	mLabels = shown;
	mClosedLabels = closed;
	UpdateOpenButton();
	if (TPopupListView* list = OpenedList()) {
		list->SetEntries(mLabels);
		SelectInList();
	}
	Invalidate();
}

void TPopUpMenu::SetEmptyText(const TString& text) {
	mEmptyText = text;
	if (!mHasEntries)
		mLabels = mClosedLabels = {text};
	Invalidate();
}

TString TPopUpMenu::ClosedText() const {
	const int value = Value();
	return mHasEntries && value >= 0 && value < mClosedLabels.Count() ? mClosedLabels[value] : mEmptyText;
}

TRecolorableBitmap* TPopUpMenu::Icon(int entry) const {
	return entry >= 0 && entry < mIcons.Count() ? mIcons[entry].Get() : nullptr;
}

// Looks

void TPopUpMenu::SetIcons(const TList<TPtr<TRecolorableBitmap>>& icons) {
	mIcons = icons;
	Invalidate();
}

void TPopUpMenu::SetShowIncDecButtons(bool show) {
	mShowIncDec = show;
	mIncDecButtons->SetVisible(show);
	Invalidate();
}

void TPopUpMenu::SetShowOpenButton(bool show) {
	mShowOpenButton = show;
	UpdateOpenButton();
}

void TPopUpMenu::UpdateOpenButton() {
	mOpenButton->SetVisible(mShowOpenButton && mLabels.Count() > 1);
}

void TPopUpMenu::SetDrawFrame(bool drawFrame) {
	mDrawFrame = drawFrame;
	Invalidate();
}

void TPopUpMenu::ApplyColors() {
	if (TSkinColors::Instance())
		mOpenButton->SetTextColor(MainColor(TSkinColors::kValueBoxFontIcons));
}

void TPopUpMenu::OnResized() {
	TControl::OnResized();
	mIncDecButtons->SetPosition(kFrameInset, (Height() - mIncDecButtons->Height()) / 2);
	mOpenButton->SetRect({Width() - Height(), 0, Height(), Height()});
}

TRectT<int> TPopUpMenu::TextRect() const {
	TRectT<int> rect = AbsoluteRect();
	if (mDrawFrame)
		rect = {
		    rect.mLeft + kFrameInset, rect.mTop + kFrameInset, rect.mWidth - 2 * kFrameInset,
		    rect.mHeight - 2 * kFrameInset};
	if (mShowIncDec) {
		const int taken = mIncDecButtons->Width() + 2 * kFrameInset;
		rect = {rect.mLeft + taken, rect.mTop, rect.mWidth - taken, rect.mHeight};
	}
	if (mOpenButton->IsVisible())
		rect.mWidth -= mOpenButton->Width() - kFrameInset - kAroundArrow;
	return rect;
}

int TPopUpMenu::TextRoom() const {
	TRecolorableBitmap* icon = Icon(Value());
	const int iconWidth = icon ? kIconIndent + icon->Size().mX + kIconGap : 0;
	return TextRect().mWidth - iconWidth - kFrameInset;
}

TString TPopUpMenu::MakeToolTip() {
	const TString text = ClosedText();
	return TextMetrics::CutAtEnd(text, kFont, TextRoom()) == text ? TString() : text;
}

void TPopUpMenu::Draw(TSurface& port) {
	if (mDrawFrame)
		TSkin::Instance()->DrawTextBoxFrame(port, AbsoluteRect(), IsEnabled(), IsOpen());
	if (TextRect().mHeight >= kLowestTextRoom)
		DrawText(port);
}

void TPopUpMenu::DrawText(TSurface& port) {
	constexpr float kLineOpacity = 0.16f;
	TRectT<int> rect = TextRect();
	const TColor back = MainColor(TSkinColors::kValueBoxBack);
	TColor color = MainColor(TSkinColors::kValueBoxFont);
	if (!IsEnabled())
		color = Mix(color, back, kDisabledMix);
	else if (mHighlighted)
		color = color * kHoverBrightness;
	if (mShowIncDec)
		port.FillRect(
		    {rect.mLeft - 1, rect.mTop + kFrameInset, 1, rect.mHeight - 2 * kFrameInset},
		    MainColor(TSkinColors::kValueBoxFontIcons), kLineOpacity);
	const int room = TextRoom();
	if (TRecolorableBitmap* icon = Icon(Value())) {
		const TPointT<int> size = icon->Size();
		icon->SetColors(color, back);
		icon->DrawAt(port, {rect.mLeft + kIconIndent, rect.mTop + (rect.mHeight - size.mY) / 2}, 1.0f);
		rect.mLeft += kIconIndent + size.mX + kIconGap;
	}
	const TString text = TextMetrics::CutAtEnd(ClosedText(), kFont, room);
	TSkin::Instance()->DrawText(
	    port, {rect.mLeft, rect.mTop, room + kFrameInset, rect.mHeight}, text, color, kFont, kAlignLeft);
}

void TPopUpMenu::DrawEntry(
    TSurface& port, const TRectT<int>& rect, int row, bool isHovered, bool isSelected, bool isFocused) {
	TColor back = MainColor(TSkinColors::kMainBack);
	TColor color = MainColor(TSkinColors::kValueBoxFont);
	if (isSelected) {
		back = MainColor(isFocused ? TSkinColors::kSelectionBack : TSkinColors::kStandBySelectionBack);
		color = MainColor(isFocused ? TSkinColors::kSelectionFont : TSkinColors::kStandBySelectionFont);
		port.FillRect(rect, back, 1.0f);
	} else if (isHovered) {
		color = color * kHoverBrightness;
		TSkin::Instance()->DrawListEntryBackground(port, rect, TSkin::kEntryHovered);
	}
	int left = rect.mLeft;
	if (TRecolorableBitmap* icon = Icon(row)) {
		const TPointT<int> size = icon->Size();
		icon->SetColors(color, back);
		icon->DrawAt(port, {left + kIconIndent, rect.mTop + (rect.mHeight - size.mY) / 2}, 1.0f);
		left += kIconIndent + size.mX + kIconGap;
	}
	const int room = rect.Right() - left;
	const TString text = TextMetrics::CutAtEnd(mLabels[row], kFont, room - 2 * kFrameInset);
	TSkin::Instance()->DrawText(
	    port, {left + kFrameInset, rect.mTop, room - kFrameInset, rect.mHeight}, text, color, kFont, kAlignLeft);
	const bool hasLine = (mSeparatorBelowFirst && row == 0) || (mSeparatorAboveLast && row == mLabels.Count() - 2);
	if (hasLine && mLabels.Count() >= 2)
		port.FillRect({rect.mLeft, rect.Bottom() - 1, rect.mWidth, 1}, Mix(color, back, 0.5f), 1.0f);
}

// The list

bool TPopUpMenu::IsOpen() const {
	return mListWindow && mListWindow->IsVisible();
}

TPopupListView* TPopUpMenu::OpenedList() const {
	return IsOpen() ? &static_cast<TPopupMainFrameView*>(mListWindow->MainFrame())->List() : nullptr;
}

void TPopUpMenu::SelectInList() {
	if (TPopupListView* list = OpenedList())
		list->Select(list->RowOfEntry(Value()));
}

void TPopUpMenu::CloseList() {
	if (const TPtr<TViewWindow> window = mListWindow.Get())
		window->Close();
	Invalidate();
}

int TPopUpMenu::WidestRow() const {
	int label = 0;
	int icon = 0;
	for (const TString& text : mLabels)
		label = std::max(label, TextMetrics::Width(text, kFont));
	for (const TPtr<TRecolorableBitmap>& bitmap : mIcons)
		icon = std::max(icon, bitmap ? bitmap->Size().mX : 0);
	return label + kAroundRowText + icon + kAroundRowIcon;
}

// Below the control in the upper half of the screen, else above it, with as many rows as there is room for.
TRectT<int> TPopUpMenu::PlaceForList() const {
	constexpr int kRowHeight = TPopupListView::kRowHeight;
	const TWindow& window = *MainFrame()->Window();
	const TUiScale scale = window.UiScale();
	const TRectT<int> rect = AbsoluteRect();
	const TPointT<int> corner = window.ClientToScreen({rect.mLeft, rect.mTop});
	const TPointT<int> farCorner = window.ClientToScreen({rect.Right(), rect.Bottom()});
	const TRectT<int> area = TDesktop::Instance()->WorkAreaAt(corner);
	const auto toLogical = [&](int pixels) { return pixels * scale.mY / scale.mX; };

	const bool isBelow = corner.mY < area.mTop + area.mHeight / 2;
	const int room = toLogical(isBelow ? area.Bottom() - farCorner.mY : corner.mY - area.mTop);
	const int search = mSearchable ? TListView::kSearchFieldHeight : 0;
	int rows = mLabels.Count();
	if (search + rows * kRowHeight > room)
		rows = std::max((room - search) / kRowHeight - 1, 1);
	const int scrollBar = rows < mLabels.Count() ? TSkin::Instance()->ScrollBarThickness() : 0;
	const int widest = std::max(toLogical(area.mWidth) * 3 / 4, 1);
	const TPointT<int> size{std::min(std::max(Width(), WidestRow() + scrollBar), widest), search + rows * kRowHeight};
	const TPointT<int> pixels = Scaled(size, scale);
	const int left = std::max(std::min(corner.mX, area.Right() - pixels.mX), area.mLeft);
	return {left, isBelow ? farCorner.mY : corner.mY - pixels.mY, size.mX, size.mY};
}

void TPopUpMenu::Open() {
	if (!IsEnabled() || IsOpen())
		return;
	const TPtr<TPopUpMenu> keepAlive(this);
	if (mOpenAction)
		mOpenAction();
	if (!MainFrame() || !MainFrame()->Window())
		return;
	try {
		OpenList();
	} catch (const TReadableException& exception) {
		TSystemGlobals::Instance()->ShowMessage(exception.Message(), kErrorMessage);
	}
}

void TPopUpMenu::OpenList() {
	const TPtr<TViewWindow> window = MakePtr<TViewWindow>(MainFrame()->Window(), kPopupWindow);
	const TPtr<TPopupMainFrameView> frame = MakePtr<TPopupMainFrameView>(*this, mLabels, mSearchable);
	const TRectT<int> place = PlaceForList();
	frame->SetSize(place.mWidth, place.mHeight);
	window->SetMainFrame(frame);
	window->SetClientRect({place.mLeft, place.mTop}, {place.mWidth, place.mHeight});
	mListWindow = window;
	window->Show(false, true);
	TPopupListView& list = frame->List();
	list.Select(list.RowOfEntry(Value()));
	list.EnsureVisible(list.FirstSelected());
	if (mSearchable)
		list.FocusSearchField();
	Invalidate();
}

// What is chosen is written when the list has gone.
void TPopUpMenu::Choose(int entry, int mouseButton) {
	const TPtr<TPopUpMenu> keepAlive(this);
	CloseList();
	if (entry < 0 || !mHasEntries)
		return;
	if (mStepAction)
		mStepAction(mouseButton);
	WriteValue(entry);
}

// Mouse

bool TPopUpMenu::OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	return IsCapturing(this);
}

bool TPopUpMenu::OnLeftMouseUp(int x, int y, int modifiers) {
	if (!IsCapturing(this) || (modifiers & kMouseAutoRepeat) || !ContainsPoint(x, y))
		return false;
	Open();
	return true;
}

bool TPopUpMenu::StepByWheel(int step) {
	if (!IsEnabled() || !mWheelSteps || IsOpen() || mLabels.Count() < 2)
		return false;
	WriteValue(std::clamp(Value() + step, 0, mLabels.Count() - 1));
	return true;
}

bool TPopUpMenu::OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	return StepByWheel(-1);
}

bool TPopUpMenu::OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	return StepByWheel(1);
}

void TPopUpMenu::StepBack(int mouseButton) {
	StepAround(-1, mouseButton);
}

void TPopUpMenu::StepForward(int mouseButton) {
	StepAround(1, mouseButton);
}

// From no valid value to the first or the last.
void TPopUpMenu::StepAround(int step, int mouseButton) {
	const TPtr<TPopUpMenu> keepAlive(this);
	if (mStepAction)
		mStepAction(mouseButton);
	const int count = mLabels.Count();
	const int value = Value();
	if (value < 0 || value >= count)
		WriteValue(step > 0 ? 0 : count - 1);
	else
		WriteValue((count + value + step) % count);
}

void TPopUpMenu::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	mHighlighted = true;
	Invalidate();
}

void TPopUpMenu::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	mHighlighted = false;
	Invalidate();
}

void TPopUpMenu::OnEnabledChanged() {
	mOpenButton->SetEnabled(IsEnabled());
	mIncDecButtons->SetEnabled(IsEnabled());
	if (!IsEnabled())
		CloseList();
}

void TPopUpMenu::OnVisibilityChanged() {
	if (!IsVisibleInTree())
		CloseList();
}

void TPopUpMenu::OnMainFrameChanged() {
	CloseList();
}
