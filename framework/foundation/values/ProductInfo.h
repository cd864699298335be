// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// What the product is called and which version it is. The only place that knows.
namespace ProductInfo {

inline constexpr const char* kProductName = "Vortel2";
inline constexpr const char* kVendorName = "Brightfen";
/// Below the checkout's "Projects" folder.
inline constexpr const char* kPreferencesFolder = "Brightfen/XVortel";

inline constexpr int kMajorVersion = 2;
inline constexpr int kMinorVersion = 1;
inline constexpr int kPatchVersion = 5;
/// Empty in a release, otherwise such as "Beta 1".
inline constexpr const char* kPreReleaseTag = "";

/// The version that documents and TDocument::ProductVersion carry.
inline constexpr int32_t kDocumentVersion = (kMajorVersion << 16) + (kMinorVersion << 8) + kPatchVersion;
inline constexpr int32_t kVst2Version = kMajorVersion * 100 + kMinorVersion * 10 + kPatchVersion;
/// "kmq7", first character in the highest byte.
inline constexpr int32_t kPluginCode = ('k' << 24) | ('m' << 16) | ('q' << 8) | '7';
inline constexpr const char* kSubCategory = "Fx";

inline constexpr const char* kVendorUrl = "https://www.brightfen.example";
inline constexpr const char* kProductHomeUrl = "https://www.brightfen.example/vortel2";
inline constexpr const char* kSupportEMailAddress = "support@brightfen.example";
inline constexpr const char* kBugReportEMailAddress = "bugs@brightfen.example";

/// "2.1.5"
const char* VersionText() noexcept;
/// "V2.1.5", as folders and messages show it.
const char* PrefixedVersionText() noexcept;
/// The day of the build, in the form "Jul 29 2026".
const char* BuildDate() noexcept;

} // namespace ProductInfo
