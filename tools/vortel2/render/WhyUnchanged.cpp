// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/WhyUnchanged.h"

#include "document/TVortelDocument.h"
#include "tools/vortel2/render/TRenderOptions.h"

#include <algorithm>

namespace {

bool HasBlocks(const TVortelScene& scene) {
	for (int32_t row = 0; row < TVortelSequencer::kNumberOfRows; ++row)
		if (!scene.Sequencer()->Sequence(row).IsEmpty())
			return true;
	return false;
}

bool EverPlays(const TRenderOptions& options) {
	return !options.mIsStopped ||
	       std::any_of(
	           options.mTransportChanges.begin(), options.mTransportChanges.end(),
	           [](const THostTransport::TChange& change) { return change.mChange == THostTransport::EChange::kPlay; });
}

} // namespace

std::string WhyUnchanged(TVortelDocument& document, const TRenderOptions& options, bool hasNotes) {
	TVortelProgram& program = *document.ActiveProgram();
	const TInstanceSettings& settings = options.mSettings;
	const std::string place =
	    "program " + std::to_string(document.CurrentProgramIndex()) + " \"" + program.Name().Get().CString() + "\"";
	if (!HasBlocks(*program.ActiveScene())) {
		if (settings.mProgramIndex && settings.mBankFile.empty() && settings.mProgramFile.empty())
			return "--program-index without --bank chooses one of sixteen empty programs";
		return "scene " + std::to_string(program.ActiveSceneIndex().Get()) + " of " + place + " has no block";
	}
	if (program.TriggerMode().Get() != kTriggerHost)
		return hasNotes ? "" : place + " plays notes, and there are none (--note, --midi, or --trigger host)";
	if (options.mHasNoTransport)
		return "with --no-transport the pattern of " + place + " never starts";
	return EverPlays(options) ? "" : "with --stopped the pattern of " + place + " never starts";
}
