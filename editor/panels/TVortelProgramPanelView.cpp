// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelProgramPanelView.h"

#include "document/TVortelPrefs.h"
#include "editor/menus/TVortelEditMenu.h"
#include "editor/menus/VortelMenus.h"
#include "editor/support/EditorControls.h"
#include "framework/foundation/files/Folders.h"
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "framework/gui/dialogs/TFileDialog.h"
#include "framework/gui/layout/TDynamicLayoutView.h"
#include "framework/gui/layout/TRackView.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/text/TTextView.h"

using namespace EditorControls;

namespace {

constexpr int kMargins = 10;
constexpr int kColumnGap = 10;
constexpr int kTriggerWidth = 55;
constexpr int kQuantizeWidth = 50;
constexpr const char* kProgramFilter = "*.v2prg";
constexpr const char* kBankFilter = "*.v2bnk";

void SetMenuLengths(TView& view) {
	view.SetSizePolicy(
	    MakePtr<TDynamicLength>(kButtonHeight, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kButtonHeight));
}

/// A caption above a menu, both with the tool tip.
TPtr<TView> MakeCaptioned(const TString& caption, TView& menu, int width, const TString& toolTip) {
	const auto title = MakeCaption(caption);
	title->SetSize(width, TTextView::kLineHeight);
	menu.SetSize(width, kButtonHeight);
	const auto column = MakePtr<TColumnRack>();
	column->SetMargin(0);
	column->SetSpacing(0, 0);
	column->SetToolTip(toolTip);
	column->AddChild(title);
	column->AddChild(TPtr<TView>(&menu));
	return column;
}

void LoadProgramFile(TVortelDocument* document, const TString& path) {
	document->LoadProgram(path);
}

void SaveProgramFile(TVortelDocument* document, const TString& path) {
	document->SaveProgram(path);
}

void LoadBankFile(TVortelDocument* document, const TString& path) {
	document->LoadBank(path);
}

void SaveBankFile(TVortelDocument* document, const TString& path) {
	document->SaveBank(path);
}

TDirectory StartFolder() {
	TVortelPrefs* preferences = TVortelPrefs::Instance();
	return preferences ? TDirectory(preferences->LastUsedPath().Get()) : Folders::Documents();
}

} // namespace

TVortelProgramPanelView::TVortelProgramPanelView(TVortelDocument& document)
    : mDocument(&document),
      mLayout(MakeColumn(0, kMargins)) {
	mLayout->SetVerticalAlignment(kLayoutSpread);
	AddControls(document);
	AddChild(mLayout);
	mRenaming.AddObserver({this, &TVortelProgramPanelView::OnRenaming});
}

void TVortelProgramPanelView::OnResized() {
	mLayout->SetSize(Width(), Height());
}

void TVortelProgramPanelView::AddControls(TVortelDocument& document) {
	mTriggerMenu = MakePtr<TVortelTriggerMenu>(document);
	mQuantizeMenu = MakePtr<TVortelQuantizeMenu>(document);
	const auto columns = MakeRow(kColumnGap, 0);
	columns->AddChild(MakeProgramColumn(document));
	columns->AddChild(MakeCaptioned(
	    "Trigger", *mTriggerMenu, kTriggerWidth,
	    "Host: Sequencer starts in sync with the host transport.\n"
	    "Gate: Sequencer starts when a MIDI note is triggered, stops when the MIDI note is released.\n"
	    "Latch: Sequencer starts when a MIDI note is triggered, continues to run until stopped."));
	columns->AddChild(MakeCaptioned(
	    "Quantize", *mQuantizeMenu, kQuantizeWidth,
	    "Quantize the timing of scene changes triggered by incoming MIDI notes."));
	const auto row = MakeRow(0, 0);
	row->SetHorizontalAlignment(kLayoutJustified);
	row->SetVerticalAlignment(kLayoutCenter);
	SetLengths(*row, 0, 0);
	row->AddChild(columns);
	mLayout->AddChild(row);
}

TPtr<TView> TVortelProgramPanelView::MakeProgramColumn(TVortelDocument& document) {
	mFileButton =
	    MakeMenuButton("File", "Open the Program file menu...", {this, &TVortelProgramPanelView::OpenFileMenu});
	mEditButton =
	    MakeMenuButton("Edit", "Open the Program edit menu...", {this, &TVortelProgramPanelView::OpenEditMenu});
	mProgramMenu = MakePtr<TVortelProgramMenu>(document);
	mProgramMenu->SetToolTip("Set the current program.");
	SetMenuLengths(*mProgramMenu);
	mNameField = MakeNameField();

	const auto row = MakeRow(kSpacing, 0);
	row->AddChild(mFileButton);
	row->AddChild(mProgramMenu);
	row->AddChild(mNameField);
	row->AddChild(MakeRenameSwitch());
	row->AddChild(MakeIconButton(
	    "Randomize name", "Icons/Randomise.bmp", "Randomize the program name.",
	    {&document, &TVortelDocument::RandomizeProgramName}));
	row->AddChild(mEditButton);
	row->SetSizePolicy(MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit), MakePtr<TFixedLength>(kButtonHeight));

	const auto column = MakeColumn(0, 0);
	column->SetHorizontalAlignment(kLayoutCenter);
	column->AddChild(MakeCaption("PROGRAM"));
	column->AddChild(row);
	return column;
}

TPtr<TView> TVortelProgramPanelView::MakeRenameSwitch() {
	const auto rename = MakePtr<TSwitchButton<bool>>(&mRenaming, kToolSwitch);
	const auto icon = MakePtr<TRecolorableBitmap>("Icons/Rename.bmp");
	rename->SetBitmaps(icon, icon);
	rename->SetSize(kButtonHeight, kButtonHeight);
	rename->SetToolTip("Rename the current program.");
	return rename;
}

TPtr<TTextField> TVortelProgramPanelView::MakeNameField() {
	auto* name = new TLinkedViewValue<TString>(
	    this, TFunctionPtr<TString>(this, &TVortelProgramPanelView::ProgramName),
	    TFunctionPtr<void, const TString&>(this, &TVortelProgramPanelView::SetProgramName));
	const auto field = MakePtr<TTextField>(name, TSkin::kValueBoxBackground);
	field->SetEditAction({this, &TVortelProgramPanelView::OnNameFieldEdit});
	SetMenuLengths(*field);
	field->SetVisible(false);
	return field;
}

// Renaming

TString TVortelProgramPanelView::ProgramName() const {
	return mDocument ? mDocument->ActiveProgram()->Name().Get() : TString();
}

void TVortelProgramPanelView::SetProgramName(const TString& name) {
	if (mDocument)
		mDocument->ActiveProgram()->Name().Set(name);
}

void TVortelProgramPanelView::OnRenaming(TObservable*, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	if (mRenaming.Get()) {
		mProgramMenu->SetVisible(false);
		mNameField->SetVisible(true);
		mNameField->BeginEdit();
		mNameField->SelectAll();
		return;
	}
	mNameField->EndEdit();
	mNameField->SetVisible(false);
	mProgramMenu->UpdateEntries();
	mProgramMenu->SetVisible(true);
}

void TVortelProgramPanelView::OnNameFieldEdit() {
	if (!mNameField->IsEditing())
		mRenaming.Set(false);
}

// Menus

void TVortelProgramPanelView::OpenFileMenu() {
	OpenVortelMenu(
	    *mFileButton, {{"Load a program from disk.", {this, &TVortelProgramPanelView::LoadProgram}},
	                   {"Save the current program to disk.", {this, &TVortelProgramPanelView::SaveProgram}},
	                   {"Load a bank of programs from disk.",
	                    {this, &TVortelProgramPanelView::LoadBank},
	                    TVortelMenuCommand::kBelowSeparator},
	                   {"Save the current bank of programs to disk.", {this, &TVortelProgramPanelView::SaveBank}}});
}

void TVortelProgramPanelView::OpenEditMenu() {
	TVortelDocument* document = mDocument.Get();
	constexpr auto kBelow = TVortelMenuCommand::kBelowSeparator;
	const auto initOrder = [](TVortelDocument* target) { target->ActiveProgram()->InitDeviceOrder(); };
	const auto randomizeOrder = [](TVortelDocument* target) { target->ActiveProgram()->RandomizeDeviceOrder(); };
	OpenVortelMenu(
	    *mEditButton, {{"Init program.", {document, &TVortelDocument::InitProgram}},
	                   {"Copy program.", {document, &TVortelDocument::CopyProgram}, kBelow},
	                   {"Paste program.", {document, &TVortelDocument::PasteProgram}},
	                   {"Randomize program name.", {document, &TVortelDocument::RandomizeProgramName}, kBelow},
	                   {"Init effect processing order.", {document, +initOrder}, kBelow},
	                   {"Randomize effect processing order.", {document, +randomizeOrder}},
	                   {"Init all programs.", {document, &TVortelDocument::InitAllPrograms}, kBelow},
	                   {"Randomize all programs.", {document, &TVortelDocument::RandomizeAllPrograms}}});
}

// Files

/// One at a time.
void TVortelProgramPanelView::OpenFileDialog(
    const TFileDialogSettings& settings, const TFunctionPtr<void, const TString&>& accepted) {
	if (mFileDialog && mFileDialog->IsOpen())
		return;
	mFileDialog = MakePtr<TFileDialog>(*this, settings, accepted);
	mFileDialog->Open();
}

void TVortelProgramPanelView::LoadProgram() {
	OpenFileDialog(
	    {.mCaption = "Load a Vortel 2 program", .mFilter = kProgramFilter, .mDirectory = StartFolder(), .mName = {}},
	    {mDocument.Get(), &LoadProgramFile});
}

void TVortelProgramPanelView::SaveProgram() {
	TString name = ProgramName();
	name.Trim();
	if (name.IsEmpty())
		name = "Vortel 2 Program";
	OpenFileDialog(
	    {.mSave = true,
	     .mCaption = "Save a Vortel 2 program",
	     .mFilter = kProgramFilter,
	     .mDirectory = StartFolder(),
	     .mName = name},
	    {mDocument.Get(), &SaveProgramFile});
}

void TVortelProgramPanelView::LoadBank() {
	OpenFileDialog(
	    {.mCaption = "Load a Vortel 2 bank", .mFilter = kBankFilter, .mDirectory = StartFolder(), .mName = {}},
	    {mDocument.Get(), &LoadBankFile});
}

void TVortelProgramPanelView::SaveBank() {
	OpenFileDialog(
	    {.mSave = true,
	     .mCaption = "Save a Vortel 2 bank",
	     .mFilter = kBankFilter,
	     .mDirectory = StartFolder(),
	     .mName = "Vortel 2 Bank"},
	    {mDocument.Get(), &SaveBankFile});
}
