// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TReadableException.h"

#include "framework/foundation/TLog.h"

namespace {

TString& PreparedMessage() {
	static TString sMessage;
	return sMessage;
}

} // namespace

TReadableException::TReadableException(const TString& message) : mMessage(message) {
	if (const TPtr<TLog> log = TLog::Existing())
		log->LogString("Exception", mMessage);
}

const char* TReadableException::what() const noexcept {
	try {
		return mMessage.CString(kPlatformEncoding);
	} catch (const TReadableException&) {
		return "Out of memory";
	}
}

TOutOfMemoryException::TOutOfMemoryException() : TReadableException(PreparedMessage()) {}

void TOutOfMemoryException::PrepareMessage() {
	PreparedMessage() = TString::ExpandMacros("Out of Memory! Please try to free up some memory and try again.");
}

void TOutOfMemoryException::ReleaseMessage() {
	PreparedMessage() = TString();
}
