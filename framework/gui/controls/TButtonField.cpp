// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TButtonField.h"

#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/gui/layout/TextMetrics.h"

#include <algorithm>

TButtonField::TButtonField(int count, int orientation) : mOrientation(orientation) {
	for (int i = 0; i < count; ++i) {
		const auto button = MakePtr<TButton>(TString(), kToolButton);
		button->SetClickAction({this, &TButtonField::OnClicked});
		mButtons.Append(button);
		AddChild(button);
		if (count > 1)
			button->SetGroupPosition(PositionOf(i, count));
	}
}

TButtonLook::TGroupPosition TButtonField::PositionOf(int index, int count) const {
	if (index == 0)
		return mOrientation == kRow ? TButtonLook::kLeftPiece : TButtonLook::kTopPiece;
	if (index == count - 1)
		return mOrientation == kRow ? TButtonLook::kRightPiece : TButtonLook::kBottomPiece;
	return mOrientation == kRow ? TButtonLook::kMiddlePiece : TButtonLook::kMiddleOfColumn;
}

void TButtonField::SetButtonName(int index, const TString& text) {
	mButtons[index]->SetLabel(text);
}

void TButtonField::SetButtonToolTip(int index, const TString& text) {
	mButtons[index]->SetToolTip(text);
}

void TButtonField::SetButtonBitmap(int index, const TPtr<TBitmap>& bitmap) {
	mButtons[index]->SetBitmaps(bitmap, bitmap, true);
}

void TButtonField::SetFont(int font) {
	for (const TPtr<TButton>& button : mButtons)
		button->SetFont(font);
}

void TButtonField::SetButtonGap(int gap) {
	mButtonGap = gap;
	Layout();
}

int TButtonField::LengthNeededBy(const TButton& button) const {
	constexpr int kAroundText = 8;
	constexpr int kAroundPicture = 4;
	constexpr int kBetween = 6;
	constexpr int kOutside = 2;
	const int textWidth = TextMetrics::Width(button.Label(), button.Font());
	const int pictureWidth = button.PictureWidth();
	return pictureWidth == 0 ? textWidth + kAroundText
	                         : pictureWidth + kAroundPicture + textWidth + kBetween + kOutside;
}

void TButtonField::FitToText() {
	int widest = 0;
	for (const TPtr<TButton>& button : mButtons)
		widest = std::max(widest, LengthNeededBy(*button));
	const int count = mButtons.Count();
	if (mOrientation == kRow)
		SetSize(widest * count + (count - 1) * Gap(), Height());
	else
		SetSize(widest, Height());
}

void TButtonField::OnResized() {
	TControl::OnResized();
	Layout();
}

// The last button takes what the others leave.
void TButtonField::Layout() {
	const int count = mButtons.Count();
	const int length = mOrientation == kRow ? Width() : Height();
	if (count == 0 || length <= 0)
		return;
	const int each = std::max((length - (count - 1) * Gap()) / count, 0);
	for (int i = 0; i < count; ++i) {
		const int start = i * (each + Gap());
		const int end = i == count - 1 ? length : start + each;
		if (mOrientation == kRow)
			mButtons[i]->SetRect({start, 0, end - start, Height()});
		else
			mButtons[i]->SetRect({0, start, Width(), end - start});
	}
}

void TButtonField::OnEnabledChanged() {
	for (const TPtr<TButton>& button : mButtons)
		button->SetEnabled(IsEnabled());
}

// It is the one that has the mouse.
void TButtonField::OnClicked() {
	for (int i = 0; i < mButtons.Count(); ++i)
		if (IsCapturing(mButtons[i].Get()))
			return OnButtonClicked(i);
}

void TButtonField::OnButtonClicked(int index) {
	if (mClickedAction)
		mClickedAction(index);
}

// Switch

template <class T>
TSwitchButtonField<T>::TSwitchButtonField(const TGetter& getter, const TSetter& setter, int count, int columns)
    : TButtonField(count, columns == 1 ? kColumn : kRow) {
	Bind(new TLinkedViewValue<T>(this, getter, setter));
}

template <class T>
TSwitchButtonField<T>::TSwitchButtonField(TValue<T>* value, int count, int columns)
    : TButtonField(count, columns == 1 ? kColumn : kRow) {
	Bind(value);
}

template <class T>
void TSwitchButtonField<T>::Bind(TValue<T>* value) {
	for (int i = 0; i < NumberOfButtons(); ++i)
		mButtonValues.Append(static_cast<T>(i));
	mValue = value;
	if (value)
		value->AddObserver({this, &TSwitchButtonField::OnValueChanged});
}

template <class T>
void TSwitchButtonField<T>::SetButtonValue(int index, T value) {
	mButtonValues[index] = value;
	Refresh();
}

template <class T>
int TSwitchButtonField<T>::PressedIndex() const {
	return mValue ? mButtonValues.IndexOf(mValue->Get()) : -1;
}

template <class T>
void TSwitchButtonField<T>::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		Refresh();
}

template <class T>
void TSwitchButtonField<T>::Refresh() {
	const int pressed = PressedIndex();
	for (int i = 0; i < NumberOfButtons(); ++i)
		Button(i).SetRestState(i == pressed ? kButtonPressed : kButtonUp);
}

template <class T>
void TSwitchButtonField<T>::OnButtonClicked(int index) {
	if (!mValue)
		return;
	mValue->Set(mButtonValues[index]);
	TButtonField::OnButtonClicked(index);
}

template class TSwitchButtonField<int>;
