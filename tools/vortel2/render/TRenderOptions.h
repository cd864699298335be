// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/TInstanceSettings.h"
#include "tools/vortel2/render/TEventList.h"
#include "tools/vortel2/render/THostTransport.h"
#include "tools/vortel2/sound/TSoundFile.h"

#include <cstdint>
#include <string>
#include <vector>

/// Everything that the command line says about a render, checked but for what only an instance or a file can tell.
struct TRenderOptions {
	std::string mInput;
	std::string mOutput;
	std::string mDemoOutput;    // the processed demo loop
	std::string mDemoDryOutput; // the loop itself
	ESampleFormat mFormat = ESampleFormat::kFloat;
	std::string mPlot; // the picture to draw; none if empty
	bool mQuiet = false;

	TInstanceSettings mSettings;

	std::vector<int32_t> mBlockSizes{256}; // cycled through
	float mTempo = 120.0f;
	double mPosition = 0.0; // beats, at the first sample
	std::vector<THostTransport::TChange> mTransportChanges;
	bool mIsStopped = false; // at the first sample
	bool mHasNoTransport = false;
	std::vector<TAutomation> mAutomation;
	std::vector<TNote> mNotes;
	std::string mMidiFile;
	double mTail = 0.0; // seconds

	/// This must outlive the parsing.
	void AddOptions(CLI::App& app);
	/// After the parsing: files are given either way and not both, and the picture is none of them. Throws a
	/// TUsageError.
	void CheckFiles() const;

private:
	void AddFileOptions(CLI::App& app);
	void AddHostOptions(CLI::App& app);
	void AddTransportChanges(CLI::App& app);
	void AddEventOptions(CLI::App& app);
	void CheckPlot() const;
};
