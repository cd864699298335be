// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelParameterTable.h"

#include <algorithm>

namespace {

using TDeclaration = TVortelParameterDeclaration;
using TNames = std::span<const char* const>;

constexpr TVortelDeviceDeclaration kDevices[TVortelParameterTable::kNumberOfDevices] = {
    {"Randomizer", "MST", 0, 9},  {"Modulator", "MOD", 10, 29},    {"Tape Stop", "TAP", 30, 49},
    {"Retrigger", "RET", 50, 69}, {"Reverser", "REV", 70, 89},     {"Stretcher", "STR", 90, 109},
    {"Lofi", "LFI", 110, 129},    {"Distortion", "DIS", 130, 149}, {"Gater", "GAT", 150, 169},
    {"Delay", "DLY", 170, 189},   {"Shuffler", "SHF", 190, 209},
};

constexpr const char* kTimeModes[] = {"Free", "Even", "Triplet", "Dotted"};
constexpr const char* kFilterTypes[] = {"Off", "Lowpass", "Bandpass", "Bandstop", "Highpass"};
constexpr const char* kPlayModes[] = {"Stop / Start", "Stop", "Start / Stop", "Start"};
constexpr const char* kBitDepthTypes[] = {"Signed", "Unsigned"};
constexpr const char* kDistortionTypes[] = {"Razor", "Shape", "Fold", "Shift"};

struct TRealRange {
	float mMinimum;
	float mMaximum;
};

constexpr TDeclaration Percent(int32_t id, const char* name, float normalizedDefault, const char* toolTip) {
	TDeclaration declaration;
	declaration.mId = id;
	declaration.mName = name;
	declaration.mDefault = normalizedDefault;
	declaration.mToolTip = toolTip;
	return declaration;
}

constexpr TDeclaration Linear(
    int32_t id, const char* name, TRealRange range, const char* unit, const char* format, float realDefault,
    const char* toolTip) {
	TDeclaration declaration = Percent(id, name, realDefault, toolTip);
	declaration.mMinimum = range.mMinimum;
	declaration.mMaximum = range.mMaximum;
	declaration.mUnit = unit;
	declaration.mFormat = format;
	declaration.mDefaultIsReal = true;
	return declaration;
}

constexpr TDeclaration Curve(EVortelCurve curve, TDeclaration declaration) {
	declaration.mCurve = curve;
	return declaration;
}

constexpr TDeclaration Stepped(TDeclaration declaration) {
	declaration.mStepped = true;
	return declaration;
}

constexpr TDeclaration Bipolar(TDeclaration declaration) {
	declaration.mBipolar = true;
	return declaration;
}

constexpr TDeclaration WithPrefix(const char* prefix, TDeclaration declaration) {
	declaration.mPrefix = prefix;
	return declaration;
}

constexpr TDeclaration WithNormalizedDefault(float value, TDeclaration declaration) {
	declaration.mDefault = value;
	declaration.mDefaultIsReal = false;
	return declaration;
}

constexpr TDeclaration
BeatTime(int32_t id, const char* name, TRealRange range, float realDefault, const char* toolTip) {
	return Stepped(Curve(EVortelCurve::kBeatTime, Linear(id, name, range, "", "%.01f", realDefault, toolTip)));
}

constexpr TDeclaration
Frequency(int32_t id, const char* name, TRealRange range, float realDefault, const char* toolTip) {
	return Curve(EVortelCurve::kFrequency, Linear(id, name, range, "Hz", "%.00f", realDefault, toolTip));
}

constexpr TDeclaration Enum(int32_t id, const char* name, TNames names, int index, const char* toolTip) {
	const TRealRange range{0.0f, static_cast<float>(names.size() - 1)};
	TDeclaration declaration = Linear(id, name, range, "", "%.0f", static_cast<float>(index), toolTip);
	declaration.mNames = names;
	return Curve(EVortelCurve::kEnum, declaration);
}

constexpr TDeclaration TimeMode(int32_t id) {
	return Enum(id, "Mode", kTimeModes, 1, "Timing mode.");
}

/// Takes over the range, format and starting steps of the other one, whose converter it uses.
constexpr TDeclaration
Sharing(TDeclaration other, int32_t id, const char* name, float realDefault, const char* toolTip) {
	other.mConverterOf = other.mId;
	other.mId = id;
	other.mName = name;
	other.mDefault = realDefault;
	other.mToolTip = toolTip;
	return other;
}

constexpr TDeclaration FollowerAttack(int32_t id, const char* name) {
	return Linear(id, name, {0.5f, 250.0f}, "ms", "%.02f", 2.5f, "Envelope follower attack time.");
}

constexpr TDeclaration FollowerRelease(int32_t attackId, int32_t id, const char* name) {
	return Sharing(FollowerAttack(attackId, name), id, name, 25.0f, "Envelope follower release time.");
}

constexpr TDeclaration FollowerAmount(int32_t id, TRealRange range) {
	return Bipolar(Linear(id, "FM Depth", range, "Hz", "%.0f", 0.0f, "Amount of frequency modulation."));
}

using namespace VortelParameterIds;

constexpr TDeclaration kSlowDown =
    BeatTime(TapeStop::kSlowDown, "Slow Down", {0.5f, 64.0f}, 4.0f, "How quickly the sound will slow to a halt.");
constexpr TDeclaration kInitialSpeed =
    BeatTime(Retrigger::kTimeA, "Initial Speed", {4.0f, 256.0f}, 64.0f, "Initial retrigger speed.");
constexpr TDeclaration kMinTime =
    BeatTime(Shuffler::kMinTime, "Min Time", {4.0f, 256.0f}, 16.0f, "Minimum slice length.");

constexpr TDeclaration kOwnParameters[] = {
    // Modulator
    Frequency(Modulator::kFrequency, "Frequency", {1.0f, 5000.0f}, 440.0f, "Modulation frequency."),
    Percent(Modulator::kAmount, "Depth", 1.0f, "Modulation depth."),
    Percent(Modulator::kOscVolume, "Osc Vol", 0.0f, "Oscillator signal level."),
    FollowerAmount(Modulator::kFMAmount, {-5000.0f, 5000.0f}),
    FollowerAttack(Modulator::kFMAttack, "FM Attack"),
    FollowerRelease(Modulator::kFMAttack, Modulator::kFMRelease, "FM Release"),
    Bipolar(Linear(Modulator::kSpread, "Spread", {-180.0f, 180.0f}, "\xC2\xB0", "%.01f", 0.0f, "Stereo spread.")),
    // Tape Stop
    kSlowDown,
    Sharing(kSlowDown, TapeStop::kSpeedUp, "Speed Up", 1.0f, "How quickly the sound will speed up again."),
    TimeMode(TapeStop::kTimeMode),
    Enum(TapeStop::kPlayMode, "Play Mode", kPlayModes, 1, "Play mode."),
    // Retrigger
    TimeMode(Retrigger::kTimeMode),
    kInitialSpeed,
    Sharing(kInitialSpeed, Retrigger::kTimeB, "Final Speed", 16.0f, "Final retrigger speed."),
    BeatTime(
        Retrigger::kABTime, "Transition", {1.0f, 16.0f}, 4.0f,
        "The time it takes to transition from the initial speed to the final speed."),
    Percent(Retrigger::kDecay, "Decay", 0.0f, "How quickly the sound fades to silence."),
    // Reverser
    BeatTime(Reverser::kTime, "Time", {1.0f, 256.0f}, 32.0f, "Maximum duration of the reverser loop."),
    TimeMode(Reverser::kTimeMode),
    Percent(Reverser::kPointA, "Point A", 0.0f, "Left loop boundary."),
    Percent(Reverser::kPointB, "Point B", 1.0f, "Right loop boundary."),
    // Stretcher
    Percent(Stretcher::kSpeed, "Speed", 0.25f, "Playback speed."),
    Linear(Stretcher::kGrainSize, "Grain Size", {1.0f, 100.0f}, "ms", "%.01f", 25.0f, "Grain size."),
    Percent(Stretcher::kSmoothing, "Smoothing", 0.5f, "Amount of cross-fading between grains."),
    Bipolar(Linear(
        Stretcher::kFMAmount, "GM Depth", {-50.0f, 50.0f}, "ms", "%.01f", 0.0f,
        "How much the grain size is modulated by the envelope follower.")),
    FollowerAttack(Stretcher::kFMAttack, "GM Attack"),
    FollowerRelease(Stretcher::kFMAttack, Stretcher::kFMRelease, "GM Release"),
    WithPrefix("+/- ", Percent(Stretcher::kJitter, "Jitter", 0.0f, "Randomly vary the grain size.")),
    // Lofi
    Frequency(Lofi::kFrequency, "Frequency", {1.0f, 22050.0f}, 11025.0f, "Frequency."),
    Curve(
        EVortelCurve::kBitDepth,
        Linear(Lofi::kBitDepth, "Bit Depth", {1.0f, 13.0f}, "Bit", "%.02f", 8.0f, "Bit depth.")),
    Enum(
        Lofi::kType, "Type", kBitDepthTypes, 0,
        "Type of bit depth reduction.\n"
        "Warning: Unsigned mode can produce very loud output at low bit depths."),
    FollowerAmount(Lofi::kFMAmount, {-10000.0f, 10000.0f}),
    FollowerAttack(Lofi::kFMAttack, "FM Attack"),
    FollowerRelease(Lofi::kFMAttack, Lofi::kFMRelease, "FM Release"),
    // Distortion
    Enum(Distortion::kType, "Type", kDistortionTypes, 0, "Distortion Type."),
    Percent(Distortion::kDrive, "Drive", 0.2f, "Drive."),
    Bipolar(Linear(Distortion::kTone, "Tone", {-100.0f, 100.0f}, "%", "%.01f", 0.0f, "Tone.")),
    Percent(Distortion::kWetOut, "Wet", 0.75f, "Amount of wet signal to output."),
    Percent(Distortion::kDryOut, "Dry", 0.0f, "Amount of dry signal to output."),
    // Gater
    Percent(Gater::kSmoothing, "Smoothing", 0.05f, "Amount of smoothing between steps."),
    BeatTime(Gater::kTime, "Step Time", {4.0f, 256.0f}, 32.0f, "Duration of each gate step."),
    TimeMode(Gater::kTimeMode),
    Stepped(Linear(Gater::kNumVolumeSteps, "Vol Steps", {2.0f, 16.0f}, "", "%.01f", 8.0f, "Set the envelope length.")),
    // Delay
    BeatTime(Delay::kTime, "Time", {4.0f, 256.0f}, 16.0f, "Delay time."),
    TimeMode(Delay::kTimeMode),
    Percent(Delay::kFeedback, "Feedback", 0.5f, "Feedback."),
    Percent(Delay::kSlew, "Slew", 0.5f, "How quickly the delay responds to time changes."),
    Percent(Delay::kSend, "Send", 0.5f, "Amount of dry signal sent into the delay line."),
    Bipolar(Linear(Delay::kSpread, "Spread", {-100.0f, 100.0f}, "%", "%.01f", 0.0f, "Stereo spread/separation.")),
    Percent(Delay::kReturn, "Return", 1.0f, "Amount of wet signal returned from the delay line."),
    // Shuffler
    TimeMode(Shuffler::kTimeMode),
    kMinTime,
    Sharing(kMinTime, Shuffler::kMaxTime, "Max Time", 4.0f, "Maximum slice length."),
    Percent(Shuffler::kShuffleChance, "Shuffle", 1.0f, "Chance to pick a random slice."),
    Stepped(Linear(
        Shuffler::kRange, "Range", {1.0f, 8.0f}, "beats", "%.01f", 2.0f,
        "How far back in the audio buffer to pick slices from.")),
    Percent(Shuffler::kRepeatChance, "Repeat", 0.0f, "Chance to repeat the previous slice."),
    Percent(Shuffler::kReverseChance, "Reverse", 0.0f, "Chance to play a slice backwards."),
};

/// A device's common parameters. The tool tip of a weight begins with the device's name, which the parameter adds.
constexpr std::array<TDeclaration, TVortelParameterTable::kNumberOfCommonParameters> CommonParameters(int32_t first) {
	return {
	    Linear(first + kWeight, "Weight", {0.0f, 100.0f}, "%", "%.0f", 50.0f, " weight."),
	    Percent(first + kMix, "Mix", 1.0f, "Dry/wet mix."),
	    Bipolar(
	        Curve(EVortelCurve::kPanning, Linear(first + kPanning, "Pan", {0.0f, 1.0f}, "", "%.2f", 0.5f, "Panning"))),
	    Linear(first + kVolume, "Volume", {0.0f, 200.0f}, "%", "%.01f", 100.0f, "Volume."),
	    Enum(first + kFilterType, "Type", kFilterTypes, 0, ""),
	    WithNormalizedDefault(
	        0.5f, Frequency(first + kFilterFrequency, "Freq", {20.0f, 20000.0f}, 0.0f, "Filter frequency.")),
	    Percent(first + kFilterQ, "Q", 0.2f, "Filter Q/bandwidth."),
	};
}

using TTable = std::array<TDeclaration, TVortelParameterTable::kNumberOfParameters>;

constexpr TDeclaration WithToolTip(TDeclaration declaration, const char* toolTip) {
	declaration.mToolTip = toolTip;
	return declaration;
}

constexpr TTable BuildTable() {
	TTable table{};
	for (std::size_t id = 0; id < table.size(); ++id)
		table[id].mId = static_cast<int32_t>(id);
	for (const TVortelDeviceDeclaration& device : kDevices)
		for (const TDeclaration& common : CommonParameters(device.mFirstId))
			table[static_cast<std::size_t>(common.mId)] = common;
	for (const TDeclaration& own : kOwnParameters)
		table[static_cast<std::size_t>(own.mId)] = own;

	table[kMix] = WithToolTip(table[kMix], "Master dry/wet mix.");
	table[kPanning] = WithToolTip(table[kPanning], "Master panning.");
	table[kVolume] = WithToolTip(table[kVolume], "Master volume level.");
	for (const int32_t id : {kFilterType, kFilterFrequency, kFilterQ}) { // the master has no filter
		table[static_cast<std::size_t>(id)] = TDeclaration{};
		table[static_cast<std::size_t>(id)].mId = id;
	}
	return table;
}

constexpr TTable kTable = BuildTable();

} // namespace

const TVortelParameterDeclaration& TVortelParameterTable::Declaration(int32_t id) noexcept {
	return kTable[static_cast<std::size_t>(id < 0 || id >= kNumberOfParameters ? kNumberOfParameters - 1 : id)];
}

const TVortelDeviceDeclaration& TVortelParameterTable::Device(int32_t deviceIndex) noexcept {
	const bool known = deviceIndex >= 0 && deviceIndex < kNumberOfDevices;
	return kDevices[static_cast<std::size_t>(known ? deviceIndex : kNumberOfDevices - 1)];
}

int32_t TVortelParameterTable::DeviceOfParameter(int32_t id) noexcept {
	return id < 10 ? 0 : 1 + (id - 10) / 20;
}

TString TVortelParameterTable::HostName(int32_t id) {
	const TString prefix = id == 0 ? "RND" : Device(DeviceOfParameter(id)).mPrefix;
	return prefix + ":" + Declaration(id).mName;
}

TPtr<TVortelValueConverter> TVortelParameterTable::MakeConverter(const TVortelParameterDeclaration& declaration) {
	const TVortelValueConverter::TRange range{declaration.mMinimum, declaration.mMaximum};
	const TString unit(declaration.mUnit, kUtf8Encoding);
	const TString format = declaration.mFormat;
	const TString prefix = declaration.mPrefix;
	switch (declaration.mCurve) {
	case EVortelCurve::kBeatTime:
		return MakePtr<TVortelBeatTimeValueConverter>(range, format, unit, prefix, declaration.mStepped);
	case EVortelCurve::kEnum:
		return MakePtr<TVortelEnumValueConverter>(declaration.mNames, prefix);
	case EVortelCurve::kFrequency:
		return MakePtr<TVortelFrequencyValueConverter>(range, format, unit, prefix, declaration.mStepped);
	case EVortelCurve::kPanning:
		return MakePtr<TVortelPanningValueConverter>();
	case EVortelCurve::kBitDepth:
		return MakePtr<TVortelLofiBitDepthConverter>(range, format, unit, prefix, declaration.mStepped);
	case EVortelCurve::kLinear:
		break;
	}
	return MakePtr<TVortelValueConverter>(range, format, unit, prefix, declaration.mStepped);
}

const std::array<float, TVortelParameterTable::kNumberOfParameters>& TVortelParameterTable::Defaults() {
	static const auto kDefaults = [] {
		std::array<float, kNumberOfParameters> defaults{};
		for (std::size_t id = 0; id < defaults.size(); ++id) {
			const TVortelParameterDeclaration& declaration = kTable[id];
			defaults[id] = declaration.mDefaultIsReal
			                   ? MakeConverter(declaration)->NormalizedFromReal(declaration.mDefault)
			                   : declaration.mDefault;
		}
		return defaults;
	}();
	return kDefaults;
}
