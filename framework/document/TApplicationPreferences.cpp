// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TApplicationPreferences.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

TString TApplicationPreferences::FilePath() {
	const TDirectory folder = Folders::Preferences();
	return folder.IsEmpty() ? TString() : folder.FilePath("Config.xml");
}

void TApplicationPreferences::AddPreference(TSerializable* value, const TString& name) {
	AddPreference(*this, value, name);
}

void TApplicationPreferences::AddPreference(TDocumentNode& group, TSerializable* value, const TString& name) {
	mValues.Append(value);
	group.AddProperty(value, name, kWrite);
}

TList<TString> TApplicationPreferences::Texts() const {
	TList<TString> texts;
	for (const TSerializable* value : mValues)
		texts.Append(value->ToString());
	return texts;
}

bool TApplicationPreferences::LoadIfGood(const TString& path) {
	if (!TFile(path).Exists())
		return false;
	try {
		Load(path);
		return true;
	} catch (const TReadableException&) {
		return false;
	}
}

void TApplicationPreferences::SaveChanges() {
	const TString path = FilePath();
	if (path.IsEmpty())
		return;
	const TList<TString> wanted = Texts();
	const bool hasFile = LoadIfGood(path);
	const TList<TString> inFile = Texts();
	for (int32_t i = 0; i < mValues.Count(); ++i)
		if (!hasFile || !(wanted[i] == mKnownTexts[i]))
			mValues[i]->FromString(wanted[i]);
	if (!hasFile || !(Texts() == inFile)) {
		Folders::Preferences().Create(true);
		Save(path, false);
	}
	mKnownTexts = Texts();
}

void TApplicationPreferences::SaveConfirmed() {
	try {
		SaveChanges();
	} catch (const TReadableException& failure) {
		TLog::Instance()->LogString("Vortel", TString::Format("FAILED to save preferences: %s", failure.Message()));
	}
}

void TApplicationPreferences::OnCreated() {
	const TString path = FilePath();
	try {
		if (TFile(path).Exists() || TDirectory(path).Exists())
			Load(path);
	} catch (const TReadableException& failure) {
		OnLoadBegin();
		TSystemGlobals::Instance()->ShowMessage(failure.Message(), kErrorMessage);
	}
	mKnownTexts = Texts();
}

void TApplicationPreferences::OnBeforeDestruction() {
	try {
		SaveChanges();
	} catch (const TReadableException& failure) {
		TSystemGlobals::Instance()->ShowMessage(failure.Message(), kWarningMessage);
	}
}
