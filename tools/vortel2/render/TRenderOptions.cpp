// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TRenderOptions.h"

#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/AddOption.h"

#include <CLI/CLI.hpp>

#include <array>
#include <filesystem>
#include <string_view>

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 3> kFormats{"pcm16", "pcm24", "float"};
constexpr int32_t kMaximumBlockSize = 65536;
/// Beyond any music; a beat is never shorter than 48 samples nor longer than a minute.
constexpr double kSlowest = 1.0;
constexpr double kFastest = 10000.0;
constexpr double kFurthestPosition = 1e6; // beats; more than a day

float ParseTempo(const TOptionText& text) {
	return static_cast<float>(text.Number(kSlowest, kFastest));
}

std::vector<int32_t> ParseBlockSizes(const TOptionText& text) {
	std::vector<int32_t> sizes;
	for (const TOptionText& size : text.List())
		sizes.push_back(size.Integer(1, kMaximumBlockSize));
	return sizes;
}

TAutomation ParseAutomation(const TOptionText& text) {
	static constexpr std::string_view kForm = "ID@SECONDS=V";
	const auto [target, value] = text.SplitAt('=', kForm);
	const auto [id, seconds] = target.SplitAt('@', kForm);
	return {id.Integer(0, TVortelDocument::kNumberOfParameters - 1), seconds.Seconds(), value.Fraction()};
}

TNote ParseNote(const TOptionText& text) {
	static constexpr std::string_view kForm = "PITCH[:VELOCITY]@ON[-OFF]";
	const auto [key, times] = text.SplitAt('@', kForm);
	const auto [pitch, velocity] = key.SplitIf(':');
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
	app.add_option("IN", mInput, "the sound file to process, mono or stereo");
	app.add_option("OUT", mOutput, "the stereo WAV file to write");
	AddOption(app, "--demo", "OUT", "process a built-in drum loop instead of IN", [this](const TOptionText& text) {
		mDemoOutput = text.Text();
	});
	AddOption(app, "--demo-dry", "OUT", "write the built-in drum loop itself", [this](const TOptionText& text) {
		mDemoDryOutput = text.Text();
	});
	AddOption(
	    app, "--format", "pcm16|pcm24|float", "sample format of OUT; default float",
	    [this](const TOptionText& text) { mFormat = static_cast<ESampleFormat>(text.Choice(kFormats)); });
	AddOption(app, "--plot", "FILE", "also draw input and output as a PNG image", [this](const TOptionText& text) {
		if (text.Text().empty())
			text.Fail("names no file");
		mPlot = text.Text();
	});
	AddFlag(app, "--quiet", "no progress bar", mQuiet);
}

void TRenderOptions::AddHostOptions(CLI::App& app) {
	AddOption(
	    app, "--block", "N[,N...]", "host block sizes in samples, cycled through; default 256",
	    [this](const TOptionText& text) { mBlockSizes = ParseBlockSizes(text); });
	AddOption(app, "--tempo", "BPM", "default 120", [this](const TOptionText& text) { mTempo = ParseTempo(text); });
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
	    app, "--automate", "ID@SECONDS=V", "a parameter change by the host; repeatable",
	    [this](const TOptionText& text) { mAutomation.push_back(ParseAutomation(text)); });
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
	if (isDemo && !mInput.empty())
		throw TUsageError("render: \"" + mInput + "\" is one file too many with --demo or --demo-dry");
	if (!isDemo && mOutput.empty())
		throw TUsageError(mInput.empty() ? "render: IN and OUT are missing" : "render: OUT is missing");
	if (!mPlot.empty())
		CheckPlot();
}

void TRenderOptions::CheckPlot() const {
	const std::string& output = mInput.empty() ? mDemoOutput : mOutput;
	if (output.empty())
		throw TUsageError("--plot: --demo-dry processes nothing that could be drawn");
	for (const std::string* other : {&mInput, &output, &mDemoDryOutput, &mMidiFile}) {
		if (!other->empty() && fs::weakly_canonical(*other) == fs::weakly_canonical(mPlot))
			throw TUsageError("--plot: \"" + mPlot + "\" is also another file of this render");
	}
}
