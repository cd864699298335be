// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TRenderOptions.h"

#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/files/CheckFiles.h"
#include "tools/vortel2/files/SpoolFile.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/AddOption.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 3> kFormats{"pcm16", "pcm24", "float"};
constexpr std::array<std::string_view, 4> kContainers{"wav", "flac", "ogg", "aiff"};
constexpr int32_t kMaximumBlockSize = 65536;
constexpr double kFurthestPosition = 1e6; // beats; more than a day

float ParseTempo(const TOptionText& text) {
	return static_cast<float>(text.Number(TRenderOptions::kSlowest, TRenderOptions::kFastest));
}

std::vector<int32_t> ParseBlockSizes(const TOptionText& text) {
	std::vector<int32_t> sizes;
	for (const TOptionText& size : text.List())
		sizes.push_back(size.Integer(1, kMaximumBlockSize));
	return sizes;
}

TNote ParseNote(const TOptionText& text) {
	static constexpr std::string_view kForm = "PITCH[:VELOCITY]@ON[-OFF]";
	const auto [key, times] = text.SplitAt('@', kForm);
	const auto [pitch, velocity] = key.SplitIf(":");
	TNote note{static_cast<uint8_t>(pitch.Integer(0, 127)), 100, 0.0};
	if (velocity)
		note.mVelocity = static_cast<uint8_t>(velocity->Integer(1, 127));
	// A minus may also be that of an exponent, so the first time is read before the second is looked for.
	const auto [on, rest] = times.LeadingSeconds();
	note.mOn = on;
	if (!rest.empty()) {
		if (rest[0] != '-')
			times.Fail("is not of the form " + std::string(kForm));
		note.mOff = TOptionText(text.Option(), rest.substr(1)).Seconds();
		if (note.mOff < note.mOn)
			times.Fail("ends before it begins");
	}
	return note;
}

} // namespace

void TRenderOptions::AddOptions(CLI::App& app) {
	AddFileOptions(app);
	mSettings.AddOptions(app);
	AddHostOptions(app);
	AddTransportChanges(app);
	AddEventOptions(app);
}

void TRenderOptions::AddFileOptions(CLI::App& app) {
	app.add_option(
	       "FILE", mFiles,
	       "IN, the sound file to process, and OUT, the stereo file to write (.wav, .flac, .ogg or "
	       ".aiff); - is standard input or output")
	    ->type_name("");
	AddOption(app, "--demo", "OUT", "process a built-in drum loop instead of IN", [this](const TOptionText& text) {
		mDemoOutput = text.Text();
	});
	AddOption(app, "--demo-dry", "OUT", "write the built-in drum loop itself", [this](const TOptionText& text) {
		mDemoDryOutput = text.Text();
	});
	AddOption(
	    app, "--format", "pcm16|pcm24|float", "sample format of OUT; default float, in a .flac pcm24",
	    [this](const TOptionText& text) { mFormat = static_cast<ESampleFormat>(text.Choice(kFormats)); });
	AddOption(
	    app, "--container", "wav|flac|ogg|aiff", "kind of the files of --to, or on standard output; default wav",
	    [this](const TOptionText& text) { mContainer = static_cast<EContainer>(text.Choice(kContainers)); });
	AddOption(app, "--plot", "FILE", "also draw input and output as a PNG image", [this](const TOptionText& text) {
		mPlot = text.Text();
	});
	AddOption(
	    app, "--to", "FOLDER", "render all INs, side by side, into files of their names in this folder",
	    [this](const TOptionText& text) { mFolder = text.Text(); });
	AddOption(
	    app, "--save", "FILE", "also write what is rendered as a bank or a program, by the extension",
	    [this](const TOptionText& text) {
		    DocumentFiles::KindOf(text);
		    mSave = text.Text();
	    });
	AddFlag(app, "--quiet", "no progress bar", mQuiet);
	AddFlag(app, "--strict", "write nothing, and fail, where there would be a warning", mIsStrict);
}

void TRenderOptions::AddHostOptions(CLI::App& app) {
	AddOption(
	    app, "--block", "N[,N...]", "host block sizes in samples, cycled through; default 256",
	    [this](const TOptionText& text) { mBlockSizes = ParseBlockSizes(text); });
	AddOption(
	    app, "--tempo", "BPM|midi", "default 120; midi: as the file of --midi says", [this](const TOptionText& text) {
		    mHasMidiTempo = text.Text() == "midi";
		    if (!mHasMidiTempo)
			    mTempo = ParseTempo(text);
	    });
	AddOption(
	    app, "--position", "BEATS", "song position at the first sample; default 0",
	    [this](const TOptionText& text) { mPosition = text.Number(-kFurthestPosition, kFurthestPosition); });
	AddFlag(app, "--stopped", "the transport is stopped at first", mIsStopped);
	AddFlag(app, "--no-transport", "the host tells nothing of a transport", mHasNoTransport);
}

void TRenderOptions::AddTransportChanges(CLI::App& app) {
	using EChange = THostTransport::EChange;
	AddRepeatedOption(
	    app, "--tempo-at", "SECONDS=BPM", "a tempo from then on; repeatable", [this](const TOptionText& text) {
		    const auto [seconds, tempo] = text.SplitAt('=', "SECONDS=BPM");
		    mTransportChanges.push_back({EChange::kTempo, seconds.Seconds(), ParseTempo(tempo)});
	    });
	AddRepeatedOption(app, "--play-at", "SECONDS", "the transport starts; repeatable", [this](const TOptionText& text) {
		mTransportChanges.push_back({EChange::kPlay, text.Seconds()});
	});
	AddRepeatedOption(app, "--stop-at", "SECONDS", "the transport stops; repeatable", [this](const TOptionText& text) {
		mTransportChanges.push_back({EChange::kStop, text.Seconds()});
	});
}

void TRenderOptions::AddEventOptions(CLI::App& app) {
	AddRepeatedOption(
	    app, "--automate", "PARAM@SECONDS=V",
	    "a parameter change by the host: PARAM is an id, with a normalised value, or a name, with a text; "
	    "PARAM@FROM..TO=V..V is a ramp; repeatable",
	    [this](const TOptionText& text) { mAutomation.emplace_back(text); });
	AddRepeatedOption(
	    app, "--note", "PITCH[:VELOCITY]@ON[-OFF]", "a MIDI note, times in seconds; repeatable",
	    [this](const TOptionText& text) { mNotes.push_back(ParseNote(text)); });
	AddOption(app, "--midi", "FILE", "the channel events of a Standard MIDI File", [this](const TOptionText& text) {
		mMidiFile = text.Text();
	});
	AddOption(app, "--tail", "SECONDS", "silence behind the input", [this](const TOptionText& text) {
		mTail = text.Seconds();
	});
}

void TRenderOptions::CheckFiles() const {
	const bool isDemo = !mDemoOutput.empty() || !mDemoDryOutput.empty();
	CheckArguments(isDemo);
	if (mHasMidiTempo && mMidiFile.empty())
		throw TUsageError("--tempo: midi needs a file, --midi FILE");
	if (mHasMidiTempo && std::any_of(mTransportChanges.begin(), mTransportChanges.end(), [](const auto& change) {
		    return change.mChange == THostTransport::EChange::kTempo;
	    }))
		throw TUsageError("--tempo-at: --tempo midi takes every tempo from the MIDI file");
	const bool isOnlyDry = Jobs().empty();
	if (!mPlot.empty() && isOnlyDry)
		throw TUsageError("--plot: --demo-dry processes nothing that could be drawn");
	if (!mPlot.empty() && !mFolder.empty())
		throw TUsageError("--plot: with --to there is not one picture to draw");
	if (!mSave.empty() && isOnlyDry)
		throw TUsageError("--save: --demo-dry processes nothing that could be saved");
	CheckPaths();
	if (!mDemoDryOutput.empty())
		FormatOf("--demo-dry", mDemoDryOutput);
	for (const TJob& job : Jobs())
		FormatOf(isDemo ? "--demo" : "OUT", job.mOutput);
}

void TRenderOptions::CheckArguments(bool isDemo) const {
	for (const std::string& file : mFiles) {
		const bool isOutput = mFolder.empty() && &file != &mFiles.front();
		if (file.empty())
			TOptionText(isOutput ? "OUT" : "IN", file).FailEmpty();
	}
	if (!mFolder.empty() && std::find(mFiles.begin(), mFiles.end(), kStandardStream) != mFiles.end())
		throw TUsageError("--to: standard input has no name to write it under; give IN and OUT");
	if (isDemo && !mFiles.empty())
		throw TUsageError("render: \"" + mFiles[0] + "\" is one file too many with --demo or --demo-dry");
	if (isDemo && !mFolder.empty())
		throw TUsageError("--to: --demo and --demo-dry name their file");
	if (!isDemo && mFiles.empty())
		throw TUsageError(mFolder.empty() ? "render: IN and OUT are missing" : "render: IN is missing");
	if (!isDemo && mFiles.size() == 1 && mFolder.empty())
		throw TUsageError("render: OUT is missing");
	if (mFolder.empty() && mFiles.size() > 2)
		throw TUsageError(
		    "render: \"" + mFiles[2] + "\" is one file too many behind IN and OUT; --to FOLDER takes several INs");
}

// A bank may be saved where it came from.
void TRenderOptions::CheckPaths() const {
	std::vector<TNamedFile> outputs{{"--demo", mDemoOutput}, {"--demo-dry", mDemoDryOutput}};
	std::vector<TNamedFile> inputs{{"--midi", mMidiFile}};
	for (const TJob& job : Jobs()) {
		if (job.mInput.empty())
			continue;
		const std::string of = mFolder.empty() ? "" : " \"" + job.mInput + "\"";
		inputs.push_back({"IN" + of, job.mInput});
		outputs.push_back({mFolder.empty() ? "OUT" : "--to", job.mOutput});
	}
	outputs.push_back({"--plot", mPlot});
	outputs.push_back({"--save", mSave});
	CheckOutputs(outputs, inputs);
	outputs.pop_back();
	CheckOutputs(
	    outputs, std::vector<TNamedFile>{{"--bank", mSettings.mBankFile}, {"--program", mSettings.mProgramFile}});
}

std::string TRenderOptions::TJob::InputName() const {
	return mInput.empty() ? "the drum loop" : mInput == kStandardStream ? "standard input" : mInput;
}

std::string TRenderOptions::TJob::OutputName() const {
	return mOutput == kStandardStream ? "standard output" : mOutput;
}

/// "loop.mp3" becomes "loop.wav", or another container's extension.
std::string TRenderOptions::OutputIn(const std::string& folder, const std::string& input) const {
	const auto container = static_cast<std::size_t>(mContainer.value_or(EContainer::kWav));
	return (fs::path(folder) / fs::path(input).stem()).string() + "." + std::string(kContainers[container]);
}

std::vector<TRenderOptions::TJob> TRenderOptions::Jobs() const {
	std::vector<TJob> jobs;
	if (!mDemoOutput.empty())
		jobs.push_back({"", mDemoOutput});
	if (mFolder.empty() && mFiles.size() == 2)
		jobs.push_back({mFiles[0], mFiles[1]});
	if (!mFolder.empty())
		for (const std::string& file : mFiles)
			jobs.push_back({file, OutputIn(mFolder, file)});
	return jobs;
}

TSoundFormat TRenderOptions::FormatOf(const std::string& argument, const std::string& output) const {
	const auto byName = ContainerOf(output);
	const bool hasName = output != kStandardStream;
	if (mContainer && hasName && mFolder.empty())
		throw TUsageError("--container: the extension of \"" + output + "\" decides");
	// What stands there and is no file is refused as such when it is to be written.
	std::error_code error;
	const fs::file_status status = fs::status(output, error);
	const bool isPlace = output.ends_with('/') || (fs::exists(status) && !fs::is_regular_file(status));
	if (hasName && !byName && !isPlace)
		throw TUsageError(argument + ": \"" + output + "\" does not end in .wav, .flac, .ogg or .aiff");
	const EContainer container = byName.value_or(mContainer.value_or(EContainer::kWav));
	const auto format = FormatIn(container, mFormat);
	if (!format)
		throw TUsageError(
		    "--format: \"" + std::string(kFormats[static_cast<std::size_t>(*mFormat)]) + "\" is nothing that a " +
		    std::string(kContainers[static_cast<std::size_t>(container)]) + " file can hold");
	return *format;
}
