// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TSystemGlobals.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <cstdio>
#include <string>

namespace {

void LogLines(const TString& category, const TString& text) {
	std::string categoryBytes; // a CString would not outlive the lines
	category.ToBytes(categoryBytes, kPlatformEncoding);
	const TPtr<TLog> log = TLog::Instance();
	for (const TString& line : text.SplitLines()) {
		TString trimmed = line;
		trimmed.Trim();
		if (!trimmed.IsEmpty())
			log->LogString(categoryBytes.c_str(), line);
	}
}

void Print(const TString& text) {
	std::FILE* stream = TLog::EchoesToConsole() ? stdout : stderr;
	std::fprintf(stream, "%s\n", text.CString(kPlatformEncoding));
	std::fflush(stream);
}

bool MayOpenDialogs() {
	const TThreadManager* manager = TThreadManager::Instance();
	return !manager || manager->IsCurrentThread(kMainThread);
}

} // namespace

void TSystemGlobals::ShowMessage(const TString& text, TMessageKind kind) {
	if (mQuietCount.load(std::memory_order_relaxed) > 0 && kind != kInformationMessage) {
		LogLines(kind == kErrorMessage ? "Error Message" : "Warning Message", text);
		kind = kInformationMessage;
	}
	if (!MayOpenDialogs() && kind != kInformationMessage)
		TLog::Instance()->Log(
		    "System", kind == kErrorMessage ? "Error: %s" : "Warning: %s", text.CString(kPlatformEncoding));
	if (!MayOpenDialogs() || kind == kInformationMessage)
		Print(text);
	else if (kind == kWarningMessage)
		ShowDialog("Warning", text, kind);
	else
		ShowErrorDialog("Error", text);
}

void TSystemGlobals::ShowErrorDialog(const TString& title, const TString& text) {
	LogLines(title, text);
	ShowDialog(title, text, kErrorMessage);
}

void TSystemGlobals::ShowBugDialog(const TString& title, const TString& text) {
	LogLines(title, text);
	const TString request = TString::ExpandMacros(
	    "\n\nPlease report this problem by sending a mail with the Log.txt,\na detailed description of the error and "
	    "your system configuration to: $MBugReportEMailAddress");
	ShowDialog(title, text + request, kErrorMessage);
}

void TSystemGlobals::ShowDialog(const TString& title, const TString& text, TMessageKind kind) const {
	if (mpMessageDialogFunction)
		return mpMessageDialogFunction(title, text, kind);
	std::fprintf(stderr, "%s: %s\n", title.CString(kPlatformEncoding), text.CString(kPlatformEncoding));
}

TSystemGlobals::TQuietMessages::TQuietMessages() : mpGlobals(TSystemGlobals::Instance()) {
	if (mpGlobals)
		mpGlobals->mQuietCount.fetch_add(1, std::memory_order_relaxed);
}

TSystemGlobals::TQuietMessages::~TQuietMessages() {
	if (mpGlobals)
		mpGlobals->mQuietCount.fetch_sub(1, std::memory_order_relaxed);
}

void ShowUserMessage(const TString& text, TMessageKind kind) {
	if (TSystemGlobals* globals = TSystemGlobals::Instance())
		globals->ShowMessage(text, kind);
}
