// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/open/TOpenOptions.h"

#include "tools/vortel2/options/AddOption.h"

#include <CLI/CLI.hpp>

namespace {

constexpr double kSlowestTempo = 1.0;
constexpr double kFastestTempo = 1000.0;

} // namespace

void TOpenOptions::AddOptions(CLI::App& app) {
	AddArgument(app, "IN", "a sound file that plays round; the built-in drum loop if there is none", mInput, false);
	mEditor.AddOptions(app);
	AddOption(app, "--tempo", "BPM", "of the transport; default 120", [this](const TOptionText& text) {
		mTempo = static_cast<float>(text.Number(kSlowestTempo, kFastestTempo));
	});
	AddFlag(app, "--silent", "play to nobody", mSilent);
}
