// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelMainFrameView.h"

#include "editor/devices/TVortelEffectControlsView.h"
#include "editor/panels/TVortelAboutBox.h"
#include "editor/panels/TVortelLogoPanelView.h"
#include "editor/panels/TVortelMasterPanelView.h"
#include "editor/panels/TVortelProgramPanelView.h"
#include "editor/sequencer/TVortelSequencerView.h"
#include "editor/support/EditorControls.h"
#include "engine/TVortelAudioEngine.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/views/TViewWindow.h"

#include <utility>

using namespace EditorControls;

namespace {

constexpr int kGap = 3; // between panels, and around them
constexpr int kPanelMargins = 10;
constexpr int kHeadHeight = 80;
constexpr int kSidePanelWidth = 170;
constexpr int kEffectsHeight = 150;

bool IsProgramFile(const TString& path) {
	return path.EndsWithIgnoringCase(".v2prg");
}

bool IsBankFile(const TString& path) {
	return path.EndsWithIgnoringCase(".v2bnk");
}

} // namespace

TVortelMainFrameView::TVortelMainFrameView(
    TVortelDocument* document, TVortelAudioEngine* engine, TFunctionPtr<void> startServices)
    : TGui(document),
      mDocument(document),
      mEngine(engine),
      mStartServices(startServices) {
	SetSize(kWidth, kHeight);
}

void TVortelMainFrameView::Prepare() {
	mStartServices();
	if (!mLayout)
		Build();
}

void TVortelMainFrameView::Build() {
	mLayout = MakeColumn(kGap, kGap);
	mLayout->SetBackground(TSkin::kBodyBackground);
	mLayout->SetHorizontalAlignment(kLayoutCenter);
	mLayout->SetVerticalAlignment(kLayoutSpread);
	mLayout->AddChild(MakeHead());
	mLayout->AddChild(MakeSequencer());
	mLayout->AddChild(MakeEffects());
	AddChild(mLayout);
	OnResized();
}

TVortelMainFrameView::~TVortelMainFrameView() = default;

TPtr<TView> TVortelMainFrameView::MakeHead() {
	mLogoPanel = MakePtr<TVortelLogoPanelView>(*mDocument);
	SetFixedLengths(*mLogoPanel, kSidePanelWidth, kHeadHeight);
	const auto program = MakePtr<TVortelProgramPanelView>(*mDocument);
	program->SetSizePolicy(MakePtr<TDynamicLength>(610, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kHeadHeight));
	const auto master = MakePtr<TVortelMasterPanelView>(*mDocument);
	SetFixedLengths(*master, kSidePanelWidth, kHeadHeight);

	const auto programPanel = MakeColumn(0, 0);
	programPanel->SetBackground(TSkin::kPanelBackground);
	programPanel->AddChild(program);
	const auto head = MakeRow(kGap, 0);
	head->AddChild(mLogoPanel);
	head->AddChild(programPanel);
	head->AddChild(master);
	return head;
}

TPtr<TView> TVortelMainFrameView::MakeSequencer() {
	const auto sequencer = MakePtr<TVortelSequencerView>(*mDocument, *mEngine);
	SetLengths(*sequencer, 936, 330);
	const auto panel = MakeColumn(0, kPanelMargins);
	panel->SetBackground(TSkin::kPanelBackground);
	panel->AddChild(sequencer);
	return panel;
}

TPtr<TView> TVortelMainFrameView::MakeEffects() {
	const auto effects = MakePtr<TVortelEffectControlsView>(*mDocument);
	effects->SetSizePolicy(
	    MakePtr<TDynamicLength>(956, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kEffectsHeight));
	return effects;
}

bool TVortelMainFrameView::AcceptsFiles(const TList<TString>& paths) const {
	return paths.Count() == 1 && (IsProgramFile(paths[0]) || IsBankFile(paths[0]));
}

void TVortelMainFrameView::OnFilesDropped(const TList<TString>& paths) {
	if (!mDocument)
		return;
	if (IsBankFile(paths[0]))
		mDocument->LoadBank(paths[0]);
	else
		mDocument->LoadProgram(paths[0]);
}

void TVortelMainFrameView::OnResized() {
	if (mLayout)
		mLayout->SetSize(Width(), Height());
}

void TVortelMainFrameView::OnUiScaleChanged() {
	if (!Window())
		return;
	const TPointT<int> scale = Window()->UiScale();
	const TPointT<int> before = Scaled(Size(), std::exchange(mLastScale, scale));
	RequestWindowResize(before, Scaled(Size(), scale));
}

void TVortelMainFrameView::OnAttachedToWindow() {
	mLastScale = Window()->UiScale();
}

void TVortelMainFrameView::OnDetachedFromWindow() {
	if (const TPtr<TVortelAboutBox> box{mLogoPanel->AboutBox()})
		box->Close();
}
