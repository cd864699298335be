// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/TXdgFolders.h"

#include "framework/foundation/ProductInfo.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

TDirectory AbsoluteFolder(const char* path) {
	return path && path[0] == '/' ? TDirectory(TString(path, kFileSystemEncoding)) : TDirectory();
}

/// The password database knows users whose environment says nothing, as under some service managers.
TDirectory Home() {
	const TDirectory home = AbsoluteFolder(std::getenv("HOME"));
	if (!home.IsEmpty())
		return home;
	const passwd* user = getpwuid(getuid());
	return AbsoluteFolder(user ? user->pw_dir : nullptr);
}

TDirectory StateHome() {
	const TDirectory state = AbsoluteFolder(std::getenv("XDG_STATE_HOME"));
	const TDirectory home = state.IsEmpty() ? Home() : TDirectory();
	return home.IsEmpty() ? state : home.Descend(".local").Descend("state");
}

} // namespace

TDirectory TXdgFolders::LogDirectory() const {
	const TDirectory state = StateHome();
	return state.IsEmpty() ? state : state.Descend(ProductInfo::kProductName);
}
