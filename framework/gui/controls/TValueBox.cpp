// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TValueBox.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/text/TTextView.h"

#include <algorithm>

namespace {

constexpr int kStepperWidth = 13;
constexpr int kTitleHeight = 18;
constexpr int kNarrowestBox = 40;
constexpr float kRestingOpacity = 0.55f;

} // namespace

/// The value as a text: what is typed goes to the box.
template <class T>
class TValueBox<T>::TText final : public TObservableBaseType<TString> {
public:
	explicit TText(TValueBox& box) : mBox(box) {}

	void ForceSet(const TString& text) override { mBox.SetFromText(text); }

	void Show(const TString& text) {
		if (!(Get() == text))
			TObservableBaseType<TString>::ForceSet(text);
	}

private:
	TValueBox& mBox;
};

template <class T>
TValueBox<T>::TValueBox(const TGetter& getter, const TSetter& setter, T minimum, T maximum)
    : mValue(new TLinkedViewValue<T>(this, getter, setter)),
      mMinimum(minimum),
      mMaximum(maximum),
      mpConverter(MakePtr<TValueConverter<T>>(Range())),
      mText(std::make_unique<TText>(*this)),
      mField(MakePtr<TTextField>(mText.get(), TSkin::kNoBackground)),
      mTitle(MakePtr<TTextView>(TString())),
      mCoarse(MakePtr<TIncDecButtonPair>(TIncDecButtonPair::kUpDown)),
      mFine(MakePtr<TIncDecButtonPair>(TIncDecButtonPair::kUpDown)) {
	mField->SetNumericOnly(true);
	mField->SetLabelTextAlignment(kAlignCenter);
	mField->SetEditAction({this, &TValueBox::OnEdit});
	mCoarse->SetActions({this, &TValueBox::CoarseDown}, {this, &TValueBox::CoarseUp});
	mFine->SetActions({this, &TValueBox::FineDown}, {this, &TValueBox::FineUp});
	mTitle->SetVisible(false);
	for (const TPtr<TView>& child : TList<TPtr<TView>>{mTitle, mField, mCoarse, mFine})
		AddChild(child);
	ShowHovered(false);
	TValueBox::ApplyColors();
	mValue->AddObserver({this, &TValueBox::OnValueChanged});
}

template <class T>
TValueBox<T>::~TValueBox() = default;

// Value

template <class T>
TValueRange TValueBox<T>::Range() const {
	return {static_cast<float>(mMinimum), static_cast<float>(mMaximum)};
}

template <class T>
void TValueBox<T>::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		mText->Show(mpConverter->ToString(Range(), Value()));
}

template <class T>
void TValueBox<T>::SetFromText(const TString& text) {
	T value{};
	if (mValue && mpConverter->FromString(Range(), text, value))
		mValue->Set(std::clamp(value, mMinimum, mMaximum));
}

template <class T>
void TValueBox<T>::StepBy(int64_t step) {
	if (mValue && IsEnabled())
		mValue->Set(static_cast<T>(std::clamp(int64_t{Value()} + step, int64_t{mMinimum}, int64_t{mMaximum})));
}

template <class T>
void TValueBox<T>::CoarseUp(int /*mouseButton*/) {
	StepBy(mpConverter->DragAmountAt(Range(), Value()));
}

template <class T>
void TValueBox<T>::CoarseDown(int /*mouseButton*/) {
	StepBy(-int64_t{mpConverter->DragAmountAt(Range(), Value())});
}

template <class T>
void TValueBox<T>::FineUp(int /*mouseButton*/) {
	StepBy(mpConverter->FineAmountAt(Range(), Value()));
}

template <class T>
void TValueBox<T>::FineDown(int /*mouseButton*/) {
	StepBy(-int64_t{mpConverter->FineAmountAt(Range(), Value())});
}

template <class T>
bool TValueBox<T>::OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	CoarseUp(0);
	return IsEnabled();
}

template <class T>
bool TValueBox<T>::OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	CoarseDown(0);
	return IsEnabled();
}

// Looks

template <class T>
void TValueBox<T>::SetTitle(const TString& title) {
	mTitle->SetText(title, true);
	Layout();
}

template <class T>
void TValueBox<T>::SetConverter(const TPtr<TValueConverter<T>>& converter) {
	mpConverter = converter;
	mText->Show(mpConverter->ToString(Range(), Value()));
}

template <class T>
void TValueBox<T>::SetShowSteppers(bool show) {
	mShowSteppers = show;
	Layout();
}

template <class T>
void TValueBox<T>::SetFont(int font) {
	mField->SetFont(font);
}

template <class T>
void TValueBox<T>::OnEdit() {
	Invalidate();
}

template <class T>
void TValueBox<T>::OnEnabledChanged() {
	for (TControl* stepper : {mCoarse.Get(), mFine.Get()})
		stepper->SetEnabled(IsEnabled());
	mField->SetReadOnly(!IsEnabled());
	ApplyColors();
}

template <class T>
void TValueBox<T>::ApplyColors() {
	const TSkinColors* colors = TSkinColors::Instance();
	if (!colors)
		return;
	const TColor color = colors->MainColor(TSkinColors::kValueBoxFont);
	const TColor back = colors->MainColor(TSkinColors::kValueBoxBack);
	mField->SetTextColor(IsEnabled() ? color : TSkin::Instance()->DisabledTextColor(color, back));
}

template <class T>
void TValueBox<T>::ShowHovered(bool hovered) {
	mCoarse->SetOpacity(hovered ? 1.0f : kRestingOpacity);
	mFine->SetOpacity(hovered ? 1.0f : kRestingOpacity);
}

template <class T>
void TValueBox<T>::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	ShowHovered(IsEnabled());
}

template <class T>
void TValueBox<T>::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	ShowHovered(false);
}

template <class T>
void TValueBox<T>::OnResized() {
	TControl::OnResized();
	Layout();
}

// The title stands above the box where there is room for two lines, else beside it, else nowhere.
template <class T>
TRectT<int> TValueBox<T>::BoxRect() const {
	if (!mTitle->IsVisible())
		return {0, 0, Width(), Height()};
	if (mTitle->Position().mY == 0 && mTitle->Width() == Width())
		return {0, kTitleHeight, Width(), Height() - kTitleHeight};
	return {mTitle->Width(), 0, Width() - mTitle->Width(), Height()};
}

template <class T>
void TValueBox<T>::Layout() {
	const int titleWidth = TextMetrics::Width(mTitle->Text(), mTitle->Font()) + 4;
	const bool isAbove = Height() >= 2 * kTitleHeight;
	const bool isBeside = !isAbove && Width() >= titleWidth + kNarrowestBox;
	mTitle->SetVisible(!mTitle->Text().IsEmpty() && (isAbove || isBeside));
	if (isAbove)
		mTitle->SetRect({0, 0, Width(), kTitleHeight});
	else
		mTitle->SetRect({0, (Height() - kTitleHeight) / 2, titleWidth, kTitleHeight});

	const TRectT<int> box = BoxRect();
	const int stepper = mShowSteppers ? kStepperWidth : 0;
	mCoarse->SetVisible(mShowSteppers);
	mFine->SetVisible(mShowSteppers);
	mCoarse->SetRect({box.mLeft, box.mTop, stepper, box.mHeight});
	mFine->SetRect({box.Right() - stepper, box.mTop, stepper, box.mHeight});
	mField->Label().SetOutsets(stepper, stepper);
	mField->SetRect({box.mLeft + stepper, box.mTop, box.mWidth - 2 * stepper, box.mHeight});
}

template <class T>
void TValueBox<T>::Draw(TSurface& port) {
	TRectT<int> box = BoxRect();
	box.mLeft += AbsolutePosition().mX;
	box.mTop += AbsolutePosition().mY;
	TSkin::Instance()->DrawTextBoxFrame(port, box, IsEnabled(), mField->IsEditing());
}

template class TValueBox<int>;
