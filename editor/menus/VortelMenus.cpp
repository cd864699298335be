// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/menus/VortelMenus.h"

#include "framework/gui/controls/TLinkedViewValue.h"

#include <array>

namespace {

constexpr int kHeight = 18;
constexpr int kProgramWidth = 290;
constexpr int kSceneWidth = 100;
constexpr int kTriggerWidth = 55;
constexpr int kQuantizeWidth = 50;

constexpr std::array<const char*, 12> kNotes{"C-", "C#", "D-", "D#", "E-", "F-", "F#", "G-", "G#", "A-", "A#", "B-"};

TString Numbered(int index, const TString& text) {
	return TString::Format("%03d", index + 1) + ": " + text;
}

/// As MIDI notes count, from C-0 on.
TString NoteName(int note) {
	return TString(kNotes[static_cast<std::size_t>(note % 12)]) + TString::ToString(note / 12);
}

TList<TString> Texts(std::initializer_list<const char*> texts) {
	TList<TString> list;
	for (const char* text : texts)
		list.Append(text);
	return list;
}

} // namespace

TVortelMenu::TVortelMenu(TVortelDocument& document, int width) : mDocument(&document), mMenu(MakePtr<TPopUpMenu>()) {
	AddChild(mMenu);
	SetSize(width, kHeight);
}

void TVortelMenu::Bind(const TFunctionPtr<int>& getter, const TFunctionPtr<void, int>& setter) {
	mMenu->SetValue(new TLinkedViewValue<int>(this, getter, setter));
}

void TVortelMenu::OnResized() {
	mMenu->SetSize(Width(), Height());
}

// Program

TVortelProgramMenu::TVortelProgramMenu(TVortelDocument& document) : TVortelMenu(document, kProgramWidth) {
	Bind(this, &TVortelProgramMenu::Value, &TVortelProgramMenu::SetValue);
	Menu().SetShowIncDecButtons(true);
	document.ProgramChangedBang().AddObserver({this, &TVortelProgramMenu::OnProgramsChanged});
}

void TVortelProgramMenu::OnProgramsChanged(TObservable*, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		UpdateEntries();
}

void TVortelProgramMenu::UpdateEntries() {
	if (!Document())
		return;
	TList<TString> labels;
	TList<TString> closedLabels;
	for (int index = 0; index < TVortelDocument::kNumberOfPrograms; ++index) {
		const TString name = Document()->Program(index)->Name().Get();
		labels.Append(Numbered(index, name));
		closedLabels.Append(name);
	}
	Menu().SetEntries(labels, closedLabels);
}

int TVortelProgramMenu::Value() const {
	return Document() ? Document()->ActiveProgramIndex().Get() : 0;
}

void TVortelProgramMenu::SetValue(int program) {
	if (Document())
		Document()->ActiveProgramIndex().Set(program);
}

// Scene

TVortelSceneMenu::TVortelSceneMenu(TVortelDocument& document) : TVortelMenu(document, kSceneWidth) {
	Bind(this, &TVortelSceneMenu::Value, &TVortelSceneMenu::SetValue);
	Menu().SetShowIncDecButtons(true);
	TList<TString> labels;
	for (int scene = 0; scene < TVortelProgram::kNumberOfScenes; ++scene)
		labels.Append(Numbered(scene, NoteName(scene)));
	Menu().SetEntries(labels);
}

int TVortelSceneMenu::Value() const {
	return Program() ? Program()->ActiveSceneIndex().Get() : 0;
}

void TVortelSceneMenu::SetValue(int scene) {
	if (Program())
		Program()->ActiveSceneIndex().Set(scene);
}

// Trigger mode

TVortelTriggerMenu::TVortelTriggerMenu(TVortelDocument& document) : TVortelMenu(document, kTriggerWidth) {
	Bind(this, &TVortelTriggerMenu::Value, &TVortelTriggerMenu::SetValue);
	Menu().SetEntries(Texts({"Host", "Gate", "Latch"}));
}

int TVortelTriggerMenu::Value() const {
	return Program() ? Program()->TriggerMode().Get() : 0;
}

void TVortelTriggerMenu::SetValue(int mode) {
	if (Program())
		Program()->TriggerMode().Set(mode);
}

// Quantizing

TVortelQuantizeMenu::TVortelQuantizeMenu(TVortelDocument& document) : TVortelMenu(document, kQuantizeWidth) {
	Bind(this, &TVortelQuantizeMenu::Value, &TVortelQuantizeMenu::SetValue);
	Menu().SetEntries(Texts({"Off", "Beat", "1/8th", "1/16th"}));
}

int TVortelQuantizeMenu::Value() const {
	return Program() ? Program()->QuantizeFactor().Get() : 0;
}

void TVortelQuantizeMenu::SetValue(int factor) {
	if (Program())
		Program()->QuantizeFactor().Set(factor);
}
