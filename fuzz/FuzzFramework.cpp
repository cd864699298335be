// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"

#include "document/TVortelPrefs.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/events/TBaseViewsPrefs.h"

#include <algorithm>
#include <cstdlib>

// What a fuzzer keeps in statics is made later and thus goes before this runs.
static void CloseDown() {
	TVortelPrefs::Destroy();
	TBaseViewsPrefs::Destroy();
	FinalizeFramework();
	TGlobalStorage::DestroyStorage(TGlobalStorage::CurrentId());
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
	TGlobalStorage::SetCurrentId(TGlobalStorage::CreateStorage());
	TLog::SetEchoToConsole(false);
	InitializeFramework();
	TSystemGlobals::Instance()->SetMessageDialogFunction([](const TString&, const TString&, TMessageKind) {});
	TBaseViewsPrefs::CreateService();
	std::atexit(&CloseDown);
	return 0;
}

namespace {

TStream SavedForm(TDocumentNode& node, bool writeEmptyElements) {
	TStream stream;
	node.SaveToStream(stream, writeEmptyElements);
	return stream;
}

} // namespace

TString FuzzFramework::TextOf(const uint8_t* data, std::size_t size) {
	return TString(std::string_view(reinterpret_cast<const char*>(data), size), kUtf8Encoding);
}

TStream FuzzFramework::StreamOf(const uint8_t* data, std::size_t size) {
	return TStream(std::span(data, size));
}

bool FuzzFramework::LoadAndCheck(TDocumentNode& node, const TStream& bytes) {
	try {
		node.LoadFromStream(bytes);
	} catch (const TReadableException&) {
		return false;
	}
	const bool writeEmptyElements = bytes.Bytes().size() % 2 == 0;
	// The first save drops what a load would drop, such as blanks around a name.
	node.LoadFromStream(SavedForm(node, false));
	const TStream once = SavedForm(node, writeEmptyElements);
	node.LoadFromStream(once);
	Require(std::ranges::equal(once.Bytes(), SavedForm(node, writeEmptyElements).Bytes()));
	return true;
}

void FuzzFramework::UseEverything(TVortelDocument& document) {
	const TVortelProgram& program = *document.ActiveProgram();
	uint32_t devices = 0;
	for (int32_t position = 0; position < TVortelProgram::kNumberOfDevices; ++position)
		devices |= 1u << program.DeviceAtPosition(position);
	Require(program.DeviceAtPosition(0) == 0 && devices == (1u << TVortelProgram::kNumberOfDevices) - 1);
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		document.ParameterValueText(id, document.ParameterValue(id));
	const TVortelSequencer& sequencer = *document.ActiveSequencer();
	Require(sequencer.StepCount() >= 0);
	document.ProgramName(document.CurrentProgramIndex());
	document.MirrorSequence();
	document.FlipSequence();
}
