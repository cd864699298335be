// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TBusLibrary.h"

#include <dlfcn.h>
#include <utility>

TBusLibrary::TBusLibrary() {
	for (const char* name : {"libsystemd.so.0", "libelogind.so.0", "libbasu.so.0"}) {
		mpLibrary = dlopen(name, RTLD_NOW | RTLD_LOCAL);
		if (mpLibrary && FindAll())
			return;
		if (mpLibrary)
			dlclose(std::exchange(mpLibrary, nullptr));
	}
}

TBusLibrary::~TBusLibrary() {
	if (mpLibrary)
		dlclose(mpLibrary);
}

bool TBusLibrary::FindAll() {
	bool hasAll = true;
	const auto find = [&](auto& function, const char* name) {
		function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(mpLibrary, name));
		hasAll = hasAll && function;
	};
	find(mOpenUser, "sd_bus_open_user");
	find(mCloseUnref, "sd_bus_close_unref");
	find(mProcess, "sd_bus_process");
	find(mMatchSignal, "sd_bus_match_signal_async");
	find(mNewCall, "sd_bus_message_new_method_call");
	find(mCall, "sd_bus_call_async");
	find(mSend, "sd_bus_send");
	find(mSetExpectReply, "sd_bus_message_set_expect_reply");
	find(mAppend, "sd_bus_message_append");
	find(mAppendArray, "sd_bus_message_append_array");
	find(mOpenContainer, "sd_bus_message_open_container");
	find(mCloseContainer, "sd_bus_message_close_container");
	find(mUnref, "sd_bus_message_unref");
	find(mIsError, "sd_bus_message_is_method_error");
	find(mGetPath, "sd_bus_message_get_path");
	find(mRead, "sd_bus_message_read");
	find(mSkip, "sd_bus_message_skip");
	find(mEnterContainer, "sd_bus_message_enter_container");
	find(mExitContainer, "sd_bus_message_exit_container");
	return hasAll;
}
