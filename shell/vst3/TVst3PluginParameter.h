// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/TVst3PluginShell.h"

/// A parameter of the document, as the host lists it.
class TVst3PluginShell::TPluginParameter final : public Steinberg::Vst::Parameter, public TGlobalStorageAware {
public:
	/// The document outlives the parameter.
	TPluginParameter(TDocument* document, int32_t index);

	/// Main thread: reads title and unit again.
	void RefreshTitle();

	void toString(Steinberg::Vst::ParamValue value, Steinberg::Vst::String128 text) const override;
	bool fromString(const Steinberg::Vst::TChar* text, Steinberg::Vst::ParamValue& value) const override;

private:
	TDocument* mpDocument;
	int32_t mIndex;
};
