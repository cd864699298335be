// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <systemd/sd-bus.h>

/// The client library of the message bus, loaded when a dialog is wanted; systems without systemd may have a twin of
/// it.
class TBusLibrary {
public:
	TBusLibrary();
	~TBusLibrary();

	TBusLibrary(const TBusLibrary&) = delete;
	TBusLibrary& operator=(const TBusLibrary&) = delete;

	/// All functions below are there, or none.
	bool IsLoaded() const { return mpLibrary != nullptr; }

	decltype(&sd_bus_open_user) mOpenUser = nullptr;
	decltype(&sd_bus_close_unref) mCloseUnref = nullptr;
	decltype(&sd_bus_process) mProcess = nullptr;
	decltype(&sd_bus_match_signal_async) mMatchSignal = nullptr;
	decltype(&sd_bus_message_new_method_call) mNewCall = nullptr;
	decltype(&sd_bus_call_async) mCall = nullptr;
	decltype(&sd_bus_send) mSend = nullptr;
	decltype(&sd_bus_message_set_expect_reply) mSetExpectReply = nullptr;
	decltype(&sd_bus_message_append) mAppend = nullptr;
	decltype(&sd_bus_message_append_array) mAppendArray = nullptr;
	decltype(&sd_bus_message_open_container) mOpenContainer = nullptr;
	decltype(&sd_bus_message_close_container) mCloseContainer = nullptr;
	decltype(&sd_bus_message_unref) mUnref = nullptr;
	decltype(&sd_bus_message_is_method_error) mIsError = nullptr;
	decltype(&sd_bus_message_get_path) mGetPath = nullptr;
	decltype(&sd_bus_message_read) mRead = nullptr;
	decltype(&sd_bus_message_skip) mSkip = nullptr;
	decltype(&sd_bus_message_enter_container) mEnterContainer = nullptr;
	decltype(&sd_bus_message_exit_container) mExitContainer = nullptr;

private:
	bool FindAll();

	void* mpLibrary = nullptr;
};
