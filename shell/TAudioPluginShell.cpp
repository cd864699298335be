// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TAudioPluginShell.h"

TAudioPluginShell::TAudioPluginShell(TDocument* document, TEngine* engine, TGui* gui)
    : TObserver(kMainThread),
      mpDocument(document),
      mpEngine(engine),
      mpGui(gui) {
	mpDocument->mpShell = this;
	mpEngine->mpShell = this;
	if (mpGui)
		mpGui->mpShell = this;
}

// Others may hold references on the three for a moment longer, for instance a queued command.
TAudioPluginShell::~TAudioPluginShell() {
	if (mpGui)
		mpGui->mpShell = nullptr;
	mpEngine->mpShell = nullptr;
	mpDocument->mpShell = nullptr;
}

void TAudioPluginShell::TDocument::UndoTransactionBegun() {
	if (mpShell)
		mpShell->BeginHostEdits();
}

void TAudioPluginShell::TDocument::UndoTransactionEnded() {
	if (mpShell)
		mpShell->EndHostEdits();
}

TAudioPluginShell::TEngine::TEngine(TDocument* document) : TAudioPlayer(44100, 256), mpDocument(document) {
	Initialize();
}

int32_t TAudioPluginShell::TEngine::MaxInputChannels() {
	return mpDocument->IsInstrument() ? 0 : 1;
}

TString TAudioPluginShell::TEngine::InputChannelName(int32_t index) {
	return TString("Input ") + TString::ToString(index / 2 + 1);
}

TString TAudioPluginShell::TEngine::OutputChannelName(int32_t index) {
	return TString("Output ") + TString::ToString(index / 2 + 1);
}

bool TAudioPluginShell::TEngine::WantsMidiInput() {
	return mpDocument->IsInstrument();
}

bool TAudioPluginShell::TGui::RequestWindowResize(const TSize& oldSize, const TSize& newSize) {
	return mpShell && mpShell->RequestWindowResize(oldSize, newSize);
}
