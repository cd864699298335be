// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/text/TString.h"

#include <atomic>
#include <cstdint>

enum TMessageKind : int32_t { kInformationMessage = 0, kWarningMessage = 1, kErrorMessage = 2 };

/// Shows messages to the user of this plug-in instance, on any thread and with or without a window.
///
/// Dialogs open on the main thread only. Elsewhere, and for plain information, the text is printed on standard
/// output; on standard error if the log's echo is off, because then the program needs its standard output itself.
class TSystemGlobals final : public TSingleton<TSystemGlobals> {
public:
	/// Shows a dialog and returns when the user has closed it.
	using TMessageDialogFunction = void (*)(const TString& title, const TString& text, TMessageKind kind);

	void ShowMessage(const TString& text, TMessageKind kind);
	/// Logs each line of the text under the title and shows it.
	void ShowErrorDialog(const TString& title, const TString& text);
	/// The same for what should not happen; the dialog also asks for a report.
	void ShowBugDialog(const TString& title, const TString& text);

	/// Used instead of the platform's alert; null goes back to that. Main thread.
	void SetMessageDialogFunction(TMessageDialogFunction function) { mpMessageDialogFunction = function; }

	/// While one exists, warnings and errors go to the log and open no dialog.
	class [[nodiscard]] TQuietMessages {
	public:
		TQuietMessages();
		~TQuietMessages();
		TQuietMessages(const TQuietMessages&) = delete;
		TQuietMessages& operator=(const TQuietMessages&) = delete;

	private:
		TSystemGlobals* mpGlobals;
	};

private:
	void ShowDialog(const TString& title, const TString& text, TMessageKind kind) const;

	TMessageDialogFunction mpMessageDialogFunction = nullptr;
	std::atomic<int32_t> mQuietCount{0};
};

/// Through the instance's TSystemGlobals; nothing while the framework is not running.
void ShowUserMessage(const TString& text, TMessageKind kind);
