// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TPortalDialog.h"

#include "platform/linux/dialogs/TSystemFileDialog.h"
#include "platform/linux/text/FileUri.h"
#include "platform/linux/text/Utf8Text.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <unistd.h>

namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kFileChooser = "org.freedesktop.portal.FileChooser";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr uint64_t kLongestWait = 10'000'000; // microseconds until the portal has taken the request

/// Unlike that of any other request of this user.
std::string NewToken() {
	static std::atomic<unsigned> sRequests{0};
	const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
	return "vortel" + std::to_string(getpid()) + "_" + std::to_string(now) + "_" + std::to_string(++sRequests);
}

std::string Hexadecimal(uint32_t number) {
	char digits[8];
	return {digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr};
}

} // namespace

TPortalDialog::TPortalDialog(const TFileDialogSettings& settings, uint32_t parentWindow) : mToken(NewToken()) {
	if (!mLibrary.IsLoaded() || mLibrary.mOpenUser(&mpBus) < 0)
		return;
	mLibrary.mMatchSignal(
	    mpBus, nullptr, kPortal, nullptr, kRequest, "Response",
	    [](sd_bus_message* signal, void* self, sd_bus_error*) {
		    static_cast<TPortalDialog*>(self)->OnResponse(signal);
		    return 0;
	    },
	    nullptr, this);
	if (Ask(settings, parentWindow))
		mState = TState::kOpen;
}

TPortalDialog::~TPortalDialog() {
	if (!mpBus)
		return;
	if (mState == TState::kOpen)
		WithdrawRequest();
	mLibrary.mCloseUnref(mpBus);
}

bool TPortalDialog::Ask(const TFileDialogSettings& settings, uint32_t parentWindow) {
	sd_bus_message* call = nullptr;
	if (mLibrary.mNewCall(mpBus, &call, kPortal, kPortalPath, kFileChooser, settings.mSave ? "SaveFile" : "OpenFile") <
	    0)
		return false;
	const std::string parent = parentWindow != 0 ? "x11:" + Hexadecimal(parentWindow) : std::string();
	const bool isSent = mLibrary.mAppend(call, "ss", parent.c_str(), Utf8Of(settings.mCaption).c_str()) >= 0 &&
	                    mLibrary.mOpenContainer(call, 'a', "{sv}") >= 0 && AppendOptions(call, settings) &&
	                    mLibrary.mCloseContainer(call) >= 0 &&
	                    mLibrary.mCall(
	                        mpBus, nullptr, call,
	                        [](sd_bus_message* reply, void* self, sd_bus_error*) {
		                        static_cast<TPortalDialog*>(self)->OnAccepted(reply);
		                        return 0;
	                        },
	                        this, kLongestWait) >= 0;
	mLibrary.mUnref(call);
	return isSent;
}

bool TPortalDialog::AppendOptions(sd_bus_message* call, const TFileDialogSettings& settings) const {
	const std::string folder = Utf8Of(settings.mDirectory.Path());
	const std::string name = Utf8Of(settings.mName);
	bool isDone = mLibrary.mAppend(call, "{sv}", "handle_token", "s", mToken.c_str()) >= 0 &&
	              mLibrary.mAppend(call, "{sv}", "modal", "b", 1) >= 0 && AppendFilter(call, settings);
	if (isDone && !folder.empty())
		isDone = AppendBytes(call, "current_folder", folder);
	if (isDone && settings.mSave && !name.empty())
		isDone = mLibrary.mAppend(call, "{sv}", "current_name", "s", name.c_str()) >= 0;
	return isDone;
}

/// A list with one filter, which is a name and a list of patterns (kind 0).
bool TPortalDialog::AppendFilter(sd_bus_message* call, const TFileDialogSettings& settings) const {
	const TList<TString> patterns = TSystemFileDialog::PatternsOf(settings.mFilter);
	if (patterns.IsEmpty())
		return true;
	const auto open = [&](char kind, const char* contents) {
		return mLibrary.mOpenContainer(call, kind, contents) >= 0;
	};
	const auto close = [&] { return mLibrary.mCloseContainer(call) >= 0; };
	bool isDone = open('e', "sv") && mLibrary.mAppend(call, "s", "filters") >= 0 && open('v', "a(sa(us))") &&
	              open('a', "(sa(us))") && open('r', "sa(us)") &&
	              mLibrary.mAppend(call, "s", Utf8Of(settings.mFilter).c_str()) >= 0 && open('a', "(us)");
	for (const TString& pattern : patterns)
		isDone = isDone && mLibrary.mAppend(call, "(us)", 0u, Utf8Of(pattern).c_str()) >= 0;
	return isDone && close() && close() && close() && close() && close();
}

/// A path as bytes with a zero behind.
bool TPortalDialog::AppendBytes(sd_bus_message* call, const char* key, const std::string& bytes) const {
	return mLibrary.mOpenContainer(call, 'e', "sv") >= 0 && mLibrary.mAppend(call, "s", key) >= 0 &&
	       mLibrary.mOpenContainer(call, 'v', "ay") >= 0 &&
	       mLibrary.mAppendArray(call, 'y', bytes.c_str(), bytes.size() + 1) >= 0 &&
	       mLibrary.mCloseContainer(call) >= 0 && mLibrary.mCloseContainer(call) >= 0;
}

TFileDialogImpl::TState TPortalDialog::Poll() {
	while (mState == TState::kOpen) {
		const int result = mLibrary.mProcess(mpBus, nullptr);
		if (result == 0)
			break;
		if (result < 0)
			mState = mHandle.empty() ? TState::kUnavailable : TState::kCancelled;
	}
	return mState;
}

void TPortalDialog::OnAccepted(sd_bus_message* reply) {
	const char* handle = nullptr;
	if (mLibrary.mIsError(reply, nullptr) || mLibrary.mRead(reply, "o", &handle) < 0)
		mState = TState::kUnavailable;
	else
		mHandle = handle;
}

/// Those of other requests come here, too. The answer may overtake the request's own path.
void TPortalDialog::OnResponse(sd_bus_message* signal) {
	const char* path = mLibrary.mGetPath(signal);
	const std::string requested(path ? path : "");
	if (mState != TState::kOpen || (requested != mHandle && !requested.ends_with("/" + mToken)))
		return;
	constexpr uint32_t kSuccess = 0;
	constexpr uint32_t kEndedOtherwise = 2;
	uint32_t response = kEndedOtherwise;
	mState = TState::kCancelled;
	if (mLibrary.mRead(signal, "u", &response) >= 0 && response == kSuccess)
		ReadResults(signal);
}

void TPortalDialog::ReadResults(sd_bus_message* signal) {
	if (mLibrary.mEnterContainer(signal, 'a', "{sv}") < 0)
		return;
	while (mLibrary.mEnterContainer(signal, 'e', "sv") > 0) {
		const char* key = nullptr;
		if (mLibrary.mRead(signal, "s", &key) < 0)
			return;
		if (std::string(key) == "uris" ? !ReadFirstUri(signal) : mLibrary.mSkip(signal, "v") < 0)
			return;
		mLibrary.mExitContainer(signal);
	}
	if (!mPath.IsEmpty())
		mState = TState::kAccepted;
}

bool TPortalDialog::ReadFirstUri(sd_bus_message* signal) {
	const char* uri = nullptr;
	if (mLibrary.mEnterContainer(signal, 'v', "as") < 0 || mLibrary.mEnterContainer(signal, 'a', "s") < 0)
		return false;
	while (mLibrary.mRead(signal, "s", &uri) > 0)
		if (mPath.IsEmpty())
			mPath = PathOfUri(uri);
	return mLibrary.mExitContainer(signal) >= 0 && mLibrary.mExitContainer(signal) >= 0;
}

/// Takes the dialog off the screen.
void TPortalDialog::WithdrawRequest() {
	sd_bus_message* call = nullptr;
	if (mHandle.empty() || mLibrary.mNewCall(mpBus, &call, kPortal, mHandle.c_str(), kRequest, "Close") < 0)
		return;
	mLibrary.mSetExpectReply(call, 0);
	mLibrary.mSend(mpBus, call, nullptr);
	mLibrary.mUnref(call);
}
