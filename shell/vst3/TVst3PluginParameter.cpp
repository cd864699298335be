// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3PluginParameter.h"

#include "shell/vst3/Vst3Text.h"

#include <algorithm>

using namespace Steinberg::Vst;

TVst3PluginShell::TPluginParameter::TPluginParameter(TDocument* document, int32_t index)
    : mpDocument(document),
      mIndex(index) {
	info.id = static_cast<ParamID>(index);
	info.flags = ParameterInfo::kCanAutomate;
	info.unitId = kRootUnitId;
	info.defaultNormalizedValue = valueNormalized = document->ParameterValue(index);
	RefreshTitle();
}

void TVst3PluginShell::TPluginParameter::RefreshTitle() {
	const TDocument::TParameterTitle title = mpDocument->ParameterName(mIndex);
	CopyText(title.mName.View(), info.title);
	CopyText(title.mUnit.View(), info.units);
}

void TVst3PluginShell::TPluginParameter::toString(ParamValue value, String128 text) const {
	const TGlobalStorageScope storage(StorageId());
	const auto normalized = static_cast<float>(std::clamp(value, 0.0, 1.0));
	CopyText(mpDocument->ParameterValueText(mIndex, normalized).View(), text);
}

bool TVst3PluginShell::TPluginParameter::fromString(const TChar* text, ParamValue& value) const {
	const TGlobalStorageScope storage(StorageId());
	float parsed = 0.0f;
	if (!mpDocument->ParameterValueFromText(mIndex, TString(std::u16string_view(text)), parsed))
		return false;
	value = parsed;
	return true;
}
