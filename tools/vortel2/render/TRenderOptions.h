// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/documents/TInstanceSettings.h"
#include "tools/vortel2/render/TAutomationSetting.h"
#include "tools/vortel2/render/TEventList.h"
#include "tools/vortel2/render/THostTransport.h"
#include "tools/vortel2/sound/TSoundFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Everything that the command line says about a render, checked but for what only an instance or a file can tell.
struct TRenderOptions {
	/// Beats per minute. Beyond any music; a beat is never shorter than 48 samples nor longer than a minute.
	static constexpr double kSlowest = 1.0;
	static constexpr double kFastest = 10000.0;

	std::vector<std::string> mFiles; // IN and OUT; with a folder for the outputs only INs
	std::string mFolder;             // for the outputs of several INs; empty: none
	std::string mDemoOutput;         // the processed demo loop
	std::string mDemoDryOutput;      // the loop itself
	std::optional<ESampleFormat> mFormat;
	std::optional<EContainer> mContainer; // where no extension decides
	std::string mPlot;                    // the picture to draw; none if empty
	std::string mSave;                    // where the state that is rendered goes, by the extension; nowhere if empty
	bool mQuiet = false;
	bool mIsStrict = false;

	TInstanceSettings mSettings;

	std::vector<int32_t> mBlockSizes{256}; // cycled through
	float mTempo = 120.0f;
	bool mHasMidiTempo = false; // the MIDI file's instead
	double mPosition = 0.0;     // beats, at the first sample
	std::vector<THostTransport::TChange> mTransportChanges;
	bool mIsStopped = false; // at the first sample
	bool mHasNoTransport = false;
	std::vector<TAutomationSetting> mAutomation;
	std::vector<TNote> mNotes;
	std::string mMidiFile;
	double mTail = 0.0; // seconds

	/// This must outlive the parsing.
	void AddOptions(CLI::App& app);
	/// After the parsing: files are given either way and not both, what is written is nothing that is read, and has a
	/// form that can be written. Throws a TUsageError.
	void CheckFiles() const;

	/// What is rendered: a sound file, or the demo loop.
	struct TJob {
		std::string mInput; // empty: the demo loop
		std::string mOutput;

		/// For messages.
		std::string InputName() const;
		std::string OutputName() const;
	};

	std::vector<TJob> Jobs() const;
	/// How to write a file, named by that argument. Throws a TUsageError.
	TSoundFormat FormatOf(const std::string& argument, const std::string& output) const;

private:
	void AddFileOptions(CLI::App& app);
	void AddHostOptions(CLI::App& app);
	void AddTransportChanges(CLI::App& app);
	void AddEventOptions(CLI::App& app);
	void CheckArguments(bool isDemo) const;
	void CheckPaths() const;
	std::string OutputIn(const std::string& folder, const std::string& input) const;
};
