// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"
#include "document/TVortelPrefs.h"
#include "document/TVortelProgram.h"
#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

namespace {

void ShowError(const char* message, const TReadableException& error) {
	TSystemGlobals::Instance()->ShowMessage(TString::Format(message, error.Message()), kErrorMessage);
}

/// The next file dialog starts in the folder of this file.
void RememberFolder(const TString& path) {
	if (TVortelPrefs* preferences = TVortelPrefs::Instance())
		preferences->LastUsedPath().Set(path.SubString(0, path.FindChar(u'/', path.Length() - 1, true) + 1));
}

template <class TWork>
bool TryLoading(const TString& path, const TWork& work) {
	if (!TFile(path).Exists() && !TDirectory(path).Exists())
		return false;
	try {
		work();
		RememberFolder(path);
		return true;
	} catch (const TReadableException& error) {
		ShowError("Loading failed with the error:\n'%s'.", error);
		return false;
	}
}

bool TrySaving(TDocumentNode& node, const TString& path) {
	if (path.IsEmpty())
		return false;
	try {
		node.Save(path, false);
		RememberFolder(path);
		return true;
	} catch (const TReadableException& error) {
		ShowError("Saving failed with the error:\n'%s'.", error);
		return false;
	}
}

template <class TWork>
void TryChunk(const char* failure, const TWork& work) {
	try {
		work();
	} catch (const TReadableException& error) {
		if (const TPtr<TLog> log = TLog::Instance())
			log->LogString("Vortel", TString::Format(failure, error.Message()));
	}
}

} // namespace

std::vector<TString> TVortelDocument::ProgramNames() const {
	std::vector<TString> names;
	for (const auto& program : mpPrograms)
		names.push_back(program->Name().Get());
	return names;
}

/// A load that fails may have got to some of the programs.
template <class TWork>
void TVortelDocument::Replace(const TWork& work) {
	const std::vector<TString> names = ProgramNames();
	const auto tellOfNames = [&] {
		mHoldsNames = false;
		if (names != ProgramNames())
			mProgramNameChangedBang.Bang();
	};
	mHoldsNames = true;
	try {
		const TLoadGuard guard(*this);
		work();
		FireAllBangs();
	} catch (...) {
		tellOfNames();
		throw;
	}
	tellOfNames();
}

bool TVortelDocument::LoadBank(const TString& path) {
	return TryLoading(path, [&] { Replace([&] { Load(path); }); });
}

bool TVortelDocument::SaveBank(const TString& path) {
	return TrySaving(*this, path);
}

bool TVortelDocument::LoadProgram(const TString& path) {
	return TryLoading(path, [&] {
		Replace([&] {
			mpTempProgram->Load(path);
			ActiveProgram()->CopyFrom(*mpTempProgram);
		});
	});
}

bool TVortelDocument::SaveProgram(const TString& path) {
	return TrySaving(*ActiveProgram(), path);
}

void TVortelDocument::SaveBankChunk(TStream& stream) {
	TryChunk("Failed to save a bank chunk: %s", [&] { SaveToStream(stream, true); });
}

void TVortelDocument::LoadBankChunk(const TStream& stream) {
	TryChunk("Failed to load a bank chunk: %s", [&] { Replace([&] { LoadFromStream(stream); }); });
}

void TVortelDocument::SaveProgramChunk(TStream& stream) {
	TryChunk("Failed to save a program chunk: %s", [&] { ActiveProgram()->SaveToStream(stream, true); });
}

void TVortelDocument::LoadProgramChunk(const TStream& stream) {
	TryChunk("Failed to load a program chunk: %s", [&] {
		Replace([&] {
			mpTempProgram->LoadFromStream(stream);
			ActiveProgram()->CopyFrom(*mpTempProgram);
		});
	});
}
