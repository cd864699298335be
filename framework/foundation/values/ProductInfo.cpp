// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/values/ProductInfo.h"

namespace ProductInfo {

namespace {

static_assert(kMajorVersion < 10 && kMinorVersion < 10 && kPatchVersion < 10, "one digit each in the text below");
constexpr char kVersion[] = {
    'V', '0' + kMajorVersion, '.', '0' + kMinorVersion, '.', '0' + kPatchVersion, '\0',
};

} // namespace

const char* VersionText() noexcept {
	return kVersion + 1;
}

const char* PrefixedVersionText() noexcept {
	return kVersion;
}

const char* BuildDate() noexcept {
	return VORTEL_BUILD_DATE;
}

} // namespace ProductInfo
