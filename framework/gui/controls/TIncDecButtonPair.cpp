// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TIncDecButtonPair.h"

#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/layout/TDynamicLayoutView.h"

#include <array>

namespace {

constexpr int kArrowLength = 11; // along the pair
constexpr int kDefaultHeight = 18;
constexpr float kDisabledMix = 0.35f;
constexpr const char* kFiles[2][2]{
    {"Icons/ArrowLeft.bmp", "Icons/ArrowRight.bmp"}, {"Icons/ArrowDown.bmp", "Icons/ArrowUp.bmp"}};

/// The pictures of all pairs, by colour: enabled, disabled, highlighted. They live as long as there is a pair.
struct TSharedArrows {
	enum TLook { kNormal, kDimmed, kBright, kNumberOfLooks };

	using TLooks = std::array<TPtr<TRecolorableBitmap>, kNumberOfLooks>;

	int mUsers = 0;
	std::array<std::array<TLooks, 2>, 2> mArrows; // by orientation and direction

	const TLooks& At(int orientation, bool forward) {
		TLooks& looks = mArrows[static_cast<std::size_t>(orientation)][forward ? 1 : 0];
		for (TPtr<TRecolorableBitmap>& look : looks)
			if (!look)
				look = MakePtr<TRecolorableBitmap>(kFiles[orientation][forward ? 1 : 0]);
		return looks;
	}
};

TSharedArrows& SharedArrows() {
	static TSharedArrows arrows;
	return arrows;
}

} // namespace

TIncDecButtonPair::TIncDecButtonPair(int orientation)
    : mOrientation(orientation),
      mBack(MakeArrow(orientation, false)),
      mForward(MakeArrow(orientation, true)) {
	++SharedArrows().mUsers;
	mBack->SetLeftUpAction({this, &TIncDecButtonPair::BackByLeft});
	mBack->SetRightUpAction({this, &TIncDecButtonPair::BackByRight});
	mForward->SetLeftUpAction({this, &TIncDecButtonPair::ForwardByLeft});
	mForward->SetRightUpAction({this, &TIncDecButtonPair::ForwardByRight});
	const bool inARow = orientation == kLeftRight;
	if (inARow)
		mLayout = MakePtr<TDynamicRowLayoutView>();
	else
		mLayout = MakePtr<TDynamicColumnLayoutView>();
	// Up is above, and left is on the left.
	mLayout->AddChild(inARow ? mBack : mForward);
	mLayout->AddChild(inARow ? mForward : mBack);
	AddChild(mLayout);
	SetSize(inARow ? 2 * kArrowLength : kArrowLength, kDefaultHeight);
	TIncDecButtonPair::ApplyColors();
}

TIncDecButtonPair::~TIncDecButtonPair() {
	TSharedArrows& arrows = SharedArrows();
	if (--arrows.mUsers == 0)
		arrows.mArrows = {};
}

TPtr<TRecolorableBitmapView> TIncDecButtonPair::MakeArrow(int orientation, bool forward) {
	const auto& looks = SharedArrows().At(orientation, forward);
	const auto arrow = MakePtr<TRecolorableBitmapView>(looks[TSharedArrows::kNormal]);
	const auto anyLength = [] { return MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit); };
	arrow->SetSizePolicy(anyLength(), anyLength());
	arrow->SetHighlightBitmap(looks[TSharedArrows::kBright]);
	arrow->SetRepeat(true);
	return arrow;
}

void TIncDecButtonPair::SetActions(const TFunctionPtr<void, int>& back, const TFunctionPtr<void, int>& forward) {
	mBackAction = back;
	mForwardAction = forward;
}

void TIncDecButtonPair::SetOpacity(float opacity) {
	mBack->SetOpacity(opacity);
	mForward->SetOpacity(opacity);
}

void TIncDecButtonPair::OnResized() {
	TControl::OnResized();
	mLayout->SetRect({0, 0, Width(), Height()});
}

void TIncDecButtonPair::OnEnabledChanged() {
	mBack->SetEnabled(IsEnabled());
	mForward->SetEnabled(IsEnabled());
	ApplyColors();
}

void TIncDecButtonPair::ApplyColors() {
	const TSkinColors* colors = TSkinColors::Instance();
	if (!colors)
		return;
	const TColor back = colors->MainColor(TSkinColors::kValueBoxBack);
	const TColor fore = colors->MainColor(TSkinColors::kValueBoxFontIcons);
	for (const bool forward : {false, true}) {
		const auto& looks = SharedArrows().At(mOrientation, forward);
		TRecolorableBitmapView& arrow = forward ? *mForward : *mBack;
		arrow.SetBitmap(looks[IsEnabled() ? TSharedArrows::kNormal : TSharedArrows::kDimmed]);
		arrow.Recolor(IsEnabled() ? fore : Mix(fore, back, kDisabledMix), back);
	}
}
