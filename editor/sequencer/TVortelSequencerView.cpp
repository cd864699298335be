// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sequencer/TVortelSequencerView.h"

#include "editor/menus/TVortelEditMenu.h"
#include "editor/menus/VortelMenus.h"
#include "editor/sequencer/TVortelSequencerEffectListView.h"
#include "editor/sequencer/TVortelSequencerMatrixView.h"
#include "editor/sequencer/TVortelSequencerPlayerPositionView.h"
#include "editor/support/EditorControls.h"
#include "editor/support/TVortelSeparatorView.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/fonts/TFontEngine.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "framework/gui/controls/TValueBox.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/text/TTextView.h"

using namespace EditorControls;

namespace {

constexpr int kToolsHeight = 43;
constexpr int kListWidth = 150;
constexpr int kPositionHeight = 6;
constexpr int kGrooveWidth = 20;
constexpr int kGrooveHeight = 40;
constexpr int kGridBoxWidth = 50;
constexpr int kSeedBoxWidth = 56;
constexpr int kSceneMenuWidth = 100;
constexpr int kLockWidth = 19;
constexpr int kLoopWidth = 30;
constexpr int kLargestSeed = 99999999;
constexpr int kMostBeats = 8;
constexpr int kFewestSteps = 2;
constexpr int kMostSteps = 8;

/// Controls with what they are called below them.
TPtr<TView> MakeLabelled(std::initializer_list<TPtr<TView>> controls, const TString& caption) {
	const auto row = MakeRow(kSpacing, 0);
	for (const TPtr<TView>& control : controls)
		row->AddChild(control);
	const auto column = MakeColumn(kSpacing, 0);
	column->SetHorizontalAlignment(kLayoutCenter);
	column->AddChild(row);
	column->AddChild(MakeCaption(caption));
	return column;
}

TPtr<TView> MakeGroove() {
	const auto groove = MakePtr<TVortelSeparatorView>();
	groove->SetSize(kGrooveWidth, kGrooveHeight);
	return groove;
}

void RandomizeWholeScene(TVortelDocument* document) {
	document->RandomizeScene(true);
}

void RandomizeNewSequence(TVortelDocument* document) {
	document->RandomizeSequence(false);
}

void MixRandomizeSequence(TVortelDocument* document) {
	document->RandomizeSequence(true);
}

} // namespace

TVortelSequencerView::TVortelSequencerView(TVortelDocument& document, TVortelAudioEngine& engine)
    : mDocument(&document),
      mLayout(MakeColumn(kSpacing, 0)) {
	mLayout->SetVerticalAlignment(kLayoutSpread);
	AddTools();
	AddMatrix(document, engine);
	AddChild(mLayout);
}

void TVortelSequencerView::OnResized() {
	mLayout->SetSize(Width(), Height());
}

void TVortelSequencerView::AddTools() {
	const auto tools = MakeRow(0, 0);
	tools->SetHorizontalAlignment(kLayoutJustified);
	tools->SetSizePolicy(MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kToolsHeight));
	const auto scene = MakeRow(kSpacing, 0);
	scene->AddChild(MakeSceneTools());
	scene->AddChild(MakeSeedTools());
	scene->AddChild(MakeGroove());
	tools->AddChild(scene);
	tools->AddChild(MakeSequenceTools());
	tools->AddChild(MakeEffectTools());
	mLayout->AddChild(tools);
}

void TVortelSequencerView::AddMatrix(TVortelDocument& document, TVortelAudioEngine& engine) {
	const auto middle = MakeRow(kSpacing, 0);
	const auto list = MakePtr<TVortelSequencerEffectListView>(document, engine);
	list->SetSizePolicy(MakePtr<TFixedLength>(kListWidth), MakePtr<TDynamicLength>(100, TLengthPolicy::kNoLimit));
	middle->AddChild(list);
	const auto matrix = MakePtr<TVortelSequencerMatrixView>(document);
	SetLengths(*matrix, 100, 100);
	middle->AddChild(matrix);
	mLayout->AddChild(middle);

	const auto bottom = MakeRow(kSpacing, 0);
	bottom->AddSpacer(kListWidth, 1);
	const auto position = MakePtr<TVortelSequencerPlayerPositionView>(document, engine);
	position->SetSizePolicy(
	    MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kPositionHeight));
	bottom->AddChild(position);
	mLayout->AddChild(bottom);
}

// Tools

TPtr<TView> TVortelSequencerView::MakeSceneTools() {
	TVortelDocument* document = mDocument.Get();
	const auto lock = MakePtr<TSwitchButton<bool>>(&document->SceneLocked(), kToolSwitch);
	lock->SetBitmaps(
	    MakePtr<TRecolorableBitmap>("Icons/Locked.png"), MakePtr<TRecolorableBitmap>("Icons/Unlocked.png"));
	lock->SetSize(kLockWidth, kButtonHeight);
	lock->SetToolTip("Lock the editor to the current scene and ignore incoming MIDI notes from the host.");
	const auto menu = MakePtr<TVortelSceneMenu>(*document);
	menu->SetSize(kSceneMenuWidth, kButtonHeight);
	menu->SetToolTip("Set the current scene. Tip: You can also change scene via MIDI notes.");
	mSceneEditButton =
	    MakeMenuButton("Edit", "Open the Scene edit menu...", {this, &TVortelSequencerView::OpenSceneMenu});
	return MakeLabelled(
	    {lock, menu, mSceneEditButton,
	     MakeTextButton("Init", "Initialize the current scene.", {document, &TVortelDocument::InitScene}),
	     MakeTextButton("Rand", "Randomize the current scene.", {document, &RandomizeWholeScene}),
	     MakeTextButton("Mutate", "Mutate the current scene.", {document, &TVortelDocument::MutateScene})},
	    "SCENE");
}

TPtr<TView> TVortelSequencerView::MakeSeedTools() {
	const auto box = MakePtr<TValueBox<int>>(
	    TFunctionPtr<int>(this, &TVortelSequencerView::Seed),
	    TFunctionPtr<void, int>(this, &TVortelSequencerView::SetSeed), 1, kLargestSeed);
	// Eight figures fill the box.
	box->SetShowSteppers(false);
	box->SetFont(TFontEngine::kMonospaced);
	box->SetSize(kSeedBoxWidth, kButtonHeight);
	box->SetToolTip("Set the random seed.");
	return MakeLabelled(
	    {box, MakeIconButton(
	              "Randomize seed", "Icons/Randomise.bmp", "Randomize the seed.",
	              {mDocument.Get(), &TVortelDocument::RandomizeSeed})},
	    "Seed");
}

TPtr<TView> TVortelSequencerView::MakeGridBox(
    const TString& toolTip, TIntRange range, int (TVortelSequencerView::*get)() const,
    void (TVortelSequencerView::*set)(int)) {
	const auto box = MakePtr<TValueBox<int>>(
	    TFunctionPtr<int>(this, get), TFunctionPtr<void, int>(this, set), range.mMinimum, range.mMaximum);
	box->SetSize(kGridBoxWidth, kButtonHeight);
	box->SetToolTip(toolTip);
	return box;
}

TPtr<TView> TVortelSequencerView::MakeSequenceTools() {
	TVortelDocument* document = mDocument.Get();
	mSequenceEditButton =
	    MakeMenuButton("Edit", "Open the Sequencer edit menu...", {this, &TVortelSequencerView::OpenSequenceMenu});
	const TPtr<TButton> randomize = MakeTextButton(
	    "Rand", "Randomize the current sequence.\nLeft click to randomize.\nRight click to mix-randomize.",
	    {document, &RandomizeNewSequence});
	randomize->SetSecondaryAction({document, &MixRandomizeSequence});

	auto* looped = new TLinkedViewValue<bool>(
	    this, {this, &TVortelSequencerView::IsLooped}, {this, &TVortelSequencerView::SetLooped});
	const auto loop = MakePtr<TSwitchButton<bool>>(looped, kToolSwitch);
	const auto icon = MakePtr<TRecolorableBitmap>("Icons/Loop.png");
	loop->SetBitmaps(icon, icon);
	loop->SetSize(kLoopWidth, kButtonHeight);
	loop->SetToolTip("Toggle sequencer looping.");

	const auto group = MakeRow(kSpacing, 0);
	group->AddChild(MakeLabelled(
	    {mSequenceEditButton,
	     MakeTextButton("Init", "Initialize the current sequence.", {document, &TVortelDocument::InitSequence}),
	     randomize,
	     MakeTextButton("Mutate", "Mutate the current sequence.", {document, &TVortelDocument::MutateSequence})},
	    "SEQUENCE"));
	group->AddChild(MakeLabelled(
	    {MakeGridBox(
	        "Set the number of beats.", {1, kMostBeats}, &TVortelSequencerView::Beats,
	        &TVortelSequencerView::SetBeats)},
	    "Beats"));
	group->AddChild(MakeLabelled(
	    {MakeGridBox(
	        "Set the number of divisions per beat.", {kFewestSteps, kMostSteps}, &TVortelSequencerView::StepsPerBeat,
	        &TVortelSequencerView::SetStepsPerBeat)},
	    "Divisions"));
	group->AddChild(MakeLabelled({loop}, "Loop"));
	group->AddChild(MakeGroove());
	return group;
}

TPtr<TView> TVortelSequencerView::MakeEffectTools() {
	TVortelDocument* document = mDocument.Get();
	mEffectsEditButton =
	    MakeMenuButton("Edit", "Open the Effects edit menu...", {this, &TVortelSequencerView::OpenEffectsMenu});
	const auto group = MakeRow(kSpacing, 0);
	group->AddChild(MakeLabelled(
	    {mEffectsEditButton,
	     MakeTextButton("Init", "Initialize all effect parameters.", {document, &TVortelDocument::InitEffects}),
	     MakeTextButton("Rand", "Randomize all effect parameters.", {document, &TVortelDocument::RandomizeEffects}),
	     MakeTextButton("Mutate", "Mutate all effect parameters.", {document, &TVortelDocument::MutateEffects})},
	    "EFFECTS"));
	return group;
}

// Menus

void TVortelSequencerView::OpenSceneMenu() {
	TVortelDocument* document = mDocument.Get();
	constexpr auto kBelow = TVortelMenuCommand::kBelowSeparator;
	OpenVortelMenu(
	    *mSceneEditButton, {{"Init scene.", {document, &TVortelDocument::InitScene}},
	                        {"Copy scene.", {document, &TVortelDocument::CopyScene}, kBelow},
	                        {"Paste scene.", {document, &TVortelDocument::PasteScene}},
	                        {"Randomize scene.", {document, &RandomizeWholeScene}, kBelow},
	                        {"Mutate scene.", {document, &TVortelDocument::MutateScene}}});
}

void TVortelSequencerView::OpenSequenceMenu() {
	TVortelDocument* document = mDocument.Get();
	constexpr auto kBelow = TVortelMenuCommand::kBelowSeparator;
	OpenVortelMenu(
	    *mSequenceEditButton, {{"Init sequence.", {document, &TVortelDocument::InitSequence}},
	                           {"Copy sequence.", {document, &TVortelDocument::CopySequence}, kBelow},
	                           {"Paste sequence.", {document, &TVortelDocument::PasteSequence}},
	                           {"Mix-paste sequence.", {document, &TVortelDocument::MixPasteSequence}},
	                           {"Randomize sequence.", {document, &RandomizeNewSequence}, kBelow},
	                           {"Mix-randomize sequence.", {document, &MixRandomizeSequence}},
	                           {"Mutate sequence.", {document, &TVortelDocument::MutateSequence}},
	                           {"Mirror sequence horizontally.", {document, &TVortelDocument::MirrorSequence}, kBelow},
	                           {"Flip sequence vertically.", {document, &TVortelDocument::FlipSequence}}});
}

void TVortelSequencerView::OpenEffectsMenu() {
	TVortelDocument* document = mDocument.Get();
	constexpr auto kBelow = TVortelMenuCommand::kBelowSeparator;
	OpenVortelMenu(
	    *mEffectsEditButton,
	    {{"Init all effect parameters.", {document, &TVortelDocument::InitEffects}},
	     {"Copy all effect parameters.", {document, &TVortelDocument::CopyEffects}, kBelow},
	     {"Paste all effect parameters.", {document, &TVortelDocument::PasteEffects}},
	     {"Randomize all effect parameters.", {document, &TVortelDocument::RandomizeEffects}, kBelow},
	     {"Mutate all effect parameters.", {document, &TVortelDocument::MutateEffects}}});
}

// Values of the scene that is active at the time

int TVortelSequencerView::Seed() const {
	return Scene() ? Scene()->Seed().Get() : 1;
}

void TVortelSequencerView::SetSeed(int seed) {
	if (Scene())
		Scene()->Seed().Set(seed);
}

int TVortelSequencerView::Beats() const {
	return Sequencer() ? Sequencer()->NumBeats().Get() : 1;
}

void TVortelSequencerView::SetBeats(int beats) {
	if (Sequencer())
		Sequencer()->NumBeats().Set(beats);
}

int TVortelSequencerView::StepsPerBeat() const {
	return Sequencer() ? Sequencer()->NumStepsPerBeat().Get() : kFewestSteps;
}

void TVortelSequencerView::SetStepsPerBeat(int steps) {
	if (Sequencer())
		Sequencer()->NumStepsPerBeat().Set(steps);
}

bool TVortelSequencerView::IsLooped() const {
	return Sequencer() && Sequencer()->LoopEnabled().Get();
}

void TVortelSequencerView::SetLooped(bool isLooped) {
	if (Sequencer())
		Sequencer()->LoopEnabled().Set(isLooped);
}
