// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TReadableException.h"

#include "framework/foundation/memory/Memory.h"

#include <atomic>

namespace {

constinit std::atomic<TReadableException::TListener> sListener{nullptr};

TString& PreparedMessage() {
	static TString sMessage;
	return sMessage;
}

} // namespace

TReadableException::TReadableException(const TString& message) : mMessage(message) {
	if (const TListener listener = sListener.load())
		listener(mMessage);
}

void TReadableException::SetListener(TListener listener) noexcept {
	sListener.store(listener);
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

void Memory::ThrowOutOfMemory() {
	throw TOutOfMemoryException();
}
