// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <exception>

/// The one exception type of our own code: carries a text that is meant for the user's eyes.
/// Making one writes the text to the log, if there is a log, whether or not the exception is ever shown.
class TReadableException : public std::exception {
public:
	/// Hears the text of every exception that is made.
	using TListener = void (*)(const TString& message);

	explicit TReadableException(const TString& message);

	/// One for the process: the log sets it.
	static void SetListener(TListener listener) noexcept;

	const TString& Message() const noexcept { return mMessage; }

	/// The message in kPlatformEncoding; valid as long as any CString() of this thread.
	const char* what() const noexcept override;

private:
	TString mMessage;
};

/// Thrown where memory cannot be had. Its text is prepared when the framework starts, so that making one allocates
/// nothing; before that and after the framework has ended the text is empty.
class TOutOfMemoryException final : public TReadableException {
public:
	TOutOfMemoryException();

	/// Framework start and end.
	static void PrepareMessage();
	static void ReleaseMessage();
};
