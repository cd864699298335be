// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3PluginFactory.h"

#include "framework/foundation/values/ProductInfo.h"
#include "shell/vst3/TVst3PluginShell.h"
#include "shell/vst3/Vst3HostCall.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/fstrdefs.h>

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr const char* kCategory = "Audio Module Class";
// The version of the interface that the adapter was written against, whichever headers it is compiled with.
constexpr const char* kInterfaceVersion = "VST 3.6.13";
constexpr int kFormatLetters = 0x565354; // "VST"
constexpr std::size_t kNameBytes = 9;

template <std::size_t kSize>
std::string Hexadecimal(const char (&format)[kSize], unsigned int number) {
	std::array<char, 16> text{};
	std::snprintf(text.data(), text.size(), format, number);
	return text.data();
}

/// The id that hosts store in sessions; it follows from the product and never changes.
FUID ClassId() {
	std::string text = Hexadecimal("%06X", kFormatLetters);
	text += Hexadecimal("%08X", static_cast<unsigned int>(ProductInfo::kPluginCode));
	const std::string_view name = ProductInfo::kProductName;
	for (std::size_t i = 0; i < kNameBytes; ++i) {
		const int letter = i < name.size() ? std::tolower(static_cast<unsigned char>(name[i])) : 0;
		text += Hexadecimal("%02X", static_cast<unsigned int>(letter));
	}
	FUID id;
	id.fromString(text.c_str());
	return id;
}

} // namespace

TVst3PluginFactory::TVst3PluginFactory(TCreator creator)
    : mCreator(creator),
      mClassInfo(
          ClassId(), PClassInfo::kManyInstances, kCategory, ProductInfo::kProductName, kSimpleModeSupported,
          ProductInfo::kSubCategory, ProductInfo::kVendorName, ProductInfo::VersionText(), kInterfaceVersion) {}

tresult PLUGIN_API TVst3PluginFactory::queryInterface(const TUID interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	*object = nullptr;
	const bool isOffered = Offer<IPluginFactory>(this, FUnknown_iid, interfaceId, object) ||
	                       Offer<IPluginFactory>(this, IPluginFactory_iid, interfaceId, object) ||
	                       Offer<IPluginFactory2>(this, IPluginFactory2_iid, interfaceId, object) ||
	                       Offer<IPluginFactory3>(this, IPluginFactory3_iid, interfaceId, object);
	return isOffered ? kResultOk : kNoInterface;
}

uint32 PLUGIN_API TVst3PluginFactory::addRef() {
	return static_cast<uint32>(mReferenceCount.fetch_add(1) + 1);
}

uint32 PLUGIN_API TVst3PluginFactory::release() {
	return static_cast<uint32>(mReferenceCount.fetch_sub(1) - 1);
}

tresult PLUGIN_API TVst3PluginFactory::getFactoryInfo(PFactoryInfo* info) {
	if (!info)
		return kInvalidArgument;
	*info = PFactoryInfo();
	strncpy8(info->vendor, ProductInfo::kVendorName, PFactoryInfo::kNameSize);
	strncpy8(info->url, ProductInfo::kVendorUrl, PFactoryInfo::kURLSize);
	strncpy8(info->email, ProductInfo::kSupportEMailAddress, PFactoryInfo::kEmailSize);
	return kResultOk;
}

int32 PLUGIN_API TVst3PluginFactory::countClasses() {
	return 1;
}

tresult PLUGIN_API TVst3PluginFactory::getClassInfo(int32 index, PClassInfo* info) {
	if (index != 0 || !info)
		return kInvalidArgument;
	*info = PClassInfo(mClassInfo.cid, mClassInfo.cardinality, mClassInfo.category, mClassInfo.name);
	return kResultOk;
}

tresult PLUGIN_API TVst3PluginFactory::getClassInfo2(int32 index, PClassInfo2* info) {
	if (index != 0 || !info)
		return kInvalidArgument;
	*info = mClassInfo;
	return kResultOk;
}

tresult PLUGIN_API TVst3PluginFactory::getClassInfoUnicode(int32 index, PClassInfoW* info) {
	if (index != 0 || !info)
		return kInvalidArgument;
	*info = PClassInfoW();
	info->fromAscii(mClassInfo);
	return kResultOk;
}

tresult PLUGIN_API TVst3PluginFactory::createInstance(FIDString classId, FIDString interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	*object = nullptr;
	if (!classId || !interfaceId)
		return kInvalidArgument;
	if (!IsSameId(classId, reinterpret_cast<const char*>(mClassInfo.cid)))
		return kNoInterface;
	return HostCall(TGlobalStorage::CurrentId(), [this, interfaceId, object]() -> tresult {
		TVst3PluginShell* shell = mCreator();
		if (!shell)
			return kInternalError;
		const tresult result = shell->queryInterface(interfaceId, object);
		shell->release();
		return result;
	});
}

tresult PLUGIN_API TVst3PluginFactory::setHostContext(FUnknown* /*context*/) {
	return kNotImplemented;
}
