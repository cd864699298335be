// SPDX-License-Identifier: GPL-3.0-or-later
// juce-host make BUNDLE AUDIO OUT STATE BLOCK TEMPO PRESET [SETTING...]
//     loads a preset file, sets parameters, keeps the host's state in STATE and plays AUDIO into OUT
// juce-host reopen BUNDLE AUDIO OUT STATE BLOCK TEMPO INSTANCES [SETTING...]
//     gives STATE to so many instances, which play at once, each into a file of its own: OUT and OUT-2, OUT-3 ...
// A SETTING is ID=VALUE (make only), ID@FRAME=VALUE or note@FRAME=PITCH; a parameter's frame begins a block. Says on
// standard output what it finds; complaints of the host's classes go to standard error.
#include <juce_audio_formats/juce_audio_formats.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <pluginterfaces/base/funknown.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

constexpr int kTurnMilliseconds = 10;
constexpr int kPatienceMilliseconds = 60000;

void Demand(bool isTrue, const juce::String& text) {
	if (!isTrue)
		throw std::runtime_error(text.toStdString());
}

/// Main thread: serves timers and messages until it holds.
void ServeUntil(const std::function<bool()>& condition, const juce::String& what) {
	for (int waited = 0; !condition(); waited += kTurnMilliseconds) {
		Demand(waited < kPatienceMilliseconds, "waited in vain until " + what);
		juce::MessageManager::getInstance()->runDispatchLoopUntil(kTurnMilliseconds);
	}
}

struct TSetting {
	explicit TSetting(const juce::String& text)
	    : mTarget(text.upToFirstOccurrenceOf("=", false, false).upToFirstOccurrenceOf("@", false, false)),
	      mValue(text.fromFirstOccurrenceOf("=", false, false).getFloatValue()) {
		if (text.containsChar('@'))
			mFrame = text.fromFirstOccurrenceOf("@", false, false).getIntValue();
	}

	bool IsNote() const { return mTarget == "note"; }

	juce::String mTarget;
	float mValue;
	int mFrame = -1;
};

struct TSession {
	explicit TSession(const juce::StringArray& arguments)
	    : mBundle(arguments[1]),
	      mAudio(arguments[2]),
	      mOut(arguments[3]),
	      mState(arguments[4]),
	      mBlock(arguments[5].getIntValue()),
	      mTempo(arguments[6].getDoubleValue()) {
		for (int i = 8; i < arguments.size(); ++i)
			mSettings.emplace_back(arguments[i]);
	}

	juce::String mBundle;
	juce::File mAudio;
	juce::File mOut;
	juce::File mState;
	int mBlock;
	double mTempo;
	std::vector<TSetting> mSettings;
};

struct TSound {
	juce::AudioBuffer<float> mSamples;
	double mRate = 0.0;
};

TSound ReadSound(const juce::File& file) {
	const std::unique_ptr<juce::AudioFormatReader> reader(
	    juce::WavAudioFormat().createReaderFor(new juce::FileInputStream(file), true));
	Demand(reader && reader->numChannels == 2, "no stereo WAV file: " + file.getFullPathName());
	TSound sound;
	sound.mRate = reader->sampleRate;
	sound.mSamples.setSize(2, static_cast<int>(reader->lengthInSamples));
	reader->read(&sound.mSamples, 0, sound.mSamples.getNumSamples(), 0, true, true);
	return sound;
}

void WriteSound(const TSound& sound, const juce::File& file) {
	file.deleteFile();
	const std::unique_ptr<juce::AudioFormatWriter> writer(
	    juce::WavAudioFormat().createWriterFor(new juce::FileOutputStream(file), sound.mRate, 2, 32, {}, 0));
	Demand(
	    writer && writer->writeFromAudioSampleBuffer(sound.mSamples, 0, sound.mSamples.getNumSamples()),
	    "cannot write " + file.getFullPathName());
}

class TPlayHead final : public juce::AudioPlayHead {
public:
	TPlayHead(double rate, double tempo) : mRate(rate), mTempo(tempo) {}

	juce::Optional<PositionInfo> getPosition() const override {
		PositionInfo info;
		info.setIsPlaying(true);
		info.setBpm(mTempo);
		info.setTimeSignature(TimeSignature{4, 4});
		info.setTimeInSamples(mFrame);
		info.setPpqPosition(mFrame * mTempo / (60.0 * mRate));
		return info;
	}

	int mFrame = 0;

private:
	double mRate;
	double mTempo;
};

/// One instance, and the interface behind it.
class TPlugin final : private juce::ExtensionsVisitor {
public:
	TPlugin(
	    juce::AudioPluginFormatManager& formats, const juce::PluginDescription& description, double rate, int block) {
		juce::String error;
		mpInstance = formats.createPluginInstance(description, rate, block, error);
		Demand(mpInstance != nullptr, error);
		for (int i = 0; i < mpInstance->getParameters().size(); ++i)
			mParameters.push_back(mpInstance->getHostedParameter(i));
		mpInstance->getExtensions(*this);
		Demand(mpController, "the component is no controller");
	}

	juce::AudioPluginInstance& Instance() { return *mpInstance; }

	juce::HostedAudioProcessorParameter& Parameter(const juce::String& id) {
		for (auto* parameter : mParameters)
			if (parameter->getParameterID() == id)
				return *parameter;
		throw std::runtime_error(("no parameter " + id).toStdString());
	}

	void LoadPreset(const juce::File& file) {
		juce::MemoryBlock bytes;
		Demand(file.loadFileAsData(bytes), "cannot read " + file.getFullPathName());
		mPreset = bytes;
		mpInstance->getExtensions(*this);
	}

	float OwnValue(const juce::HostedAudioProcessorParameter& parameter) const {
		const auto id = static_cast<Steinberg::Vst::ParamID>(parameter.getParameterID().getLargeIntValue());
		return static_cast<float>(mpController->getParamNormalized(id));
	}

	bool HostShowsOwnValues() {
		for (const auto* parameter : mParameters)
			if (parameter->isAutomatable() && parameter->getValue() != OwnValue(*parameter))
				return false;
		return true;
	}

	void PrintParameters() {
		for (const auto* parameter : mParameters)
			std::printf(
			    "parameter %s %s = %.9g\n", parameter->getParameterID().toRawUTF8(),
			    parameter->getName(128).toRawUTF8(), static_cast<double>(OwnValue(*parameter)));
	}

private:
	void visitVST3Client(const VST3Client& client) override {
		mpController = Steinberg::FUnknownPtr<Steinberg::Vst::IEditController>(client.getIComponentPtr());
		if (!mPreset.isEmpty())
			Demand(client.setPreset(mPreset), "the preset is refused");
		mPreset.reset();
	}

	std::unique_ptr<juce::AudioPluginInstance> mpInstance;
	std::vector<juce::HostedAudioProcessorParameter*> mParameters;
	Steinberg::IPtr<Steinberg::Vst::IEditController> mpController;
	juce::MemoryBlock mPreset;
};

/// Plays the sound through an instance on a thread of its own and keeps what comes out in its place.
class TPlayer final {
public:
	TPlayer(TPlugin& plugin, const TSession& session, TSound& sound)
	    : mPlugin(plugin),
	      mSession(session),
	      mSound(sound),
	      mPlayHead(sound.mRate, session.mTempo) {
		mPlugin.Instance().setPlayHead(&mPlayHead);
		mPlugin.Instance().setNonRealtime(true);
		mPlugin.Instance().prepareToPlay(sound.mRate, session.mBlock);
		mThread = std::thread([this] { Play(); });
	}

	~TPlayer() {
		mThread.join();
		mPlugin.Instance().releaseResources();
		mPlugin.Instance().setPlayHead(nullptr);
	}

	bool HasEnded() const { return mHasEnded; }

private:
	void Play() {
		const int frames = mSound.mSamples.getNumSamples();
		for (int& frame = mPlayHead.mFrame; frame < frames; frame += mSession.mBlock)
			PlayBlock(frame, std::min(mSession.mBlock, frames - frame));
		mHasEnded = true;
	}

	void PlayBlock(int frame, int samples) {
		juce::MidiBuffer midi;
		for (const TSetting& setting : mSession.mSettings) {
			if (setting.mFrame < frame || setting.mFrame >= frame + samples)
				continue;
			if (setting.IsNote())
				midi.addEvent(
				    juce::MidiMessage::noteOn(1, static_cast<int>(setting.mValue), 1.0f), setting.mFrame - frame);
			else
				mPlugin.Parameter(setting.mTarget).setValue(setting.mValue);
		}
		juce::AudioBuffer<float> block(mSound.mSamples.getArrayOfWritePointers(), 2, frame, samples);
		mPlugin.Instance().processBlock(block, midi);
	}

	TPlugin& mPlugin;
	const TSession& mSession;
	TSound& mSound;
	TPlayHead mPlayHead;
	std::atomic<bool> mHasEnded{false};
	std::thread mThread;
};

juce::PluginDescription Scan(juce::AudioPluginFormatManager& formats, const juce::String& bundle) {
	juce::OwnedArray<juce::PluginDescription> found;
	for (auto* format : formats.getFormats())
		format->findAllTypesForFile(found, bundle);
	Demand(found.size() == 1, juce::String(found.size()) + " plug-ins found");
	const juce::PluginDescription& plugin = *found[0];
	std::printf(
	    "plug-in %s by %s, %s, %s, %d in, %d out\n", plugin.name.toRawUTF8(), plugin.manufacturerName.toRawUTF8(),
	    plugin.version.toRawUTF8(), plugin.category.toRawUTF8(), plugin.numInputChannels, plugin.numOutputChannels);
	return plugin;
}

void PlayAtOnce(const std::vector<std::unique_ptr<TPlugin>>& plugins, const TSession& session) {
	std::vector<TSound> sounds(plugins.size(), ReadSound(session.mAudio));
	std::vector<std::unique_ptr<TPlayer>> players;
	for (std::size_t i = 0; i < plugins.size(); ++i)
		players.push_back(std::make_unique<TPlayer>(*plugins[i], session, sounds[i]));
	for (const auto& player : players)
		ServeUntil([&] { return player->HasEnded(); }, "the sound has been played");
	players.clear();
	for (std::size_t i = 0; i < sounds.size(); ++i) {
		const juce::File& out = session.mOut;
		const juce::String suffix = i == 0 ? "" : "-" + juce::String(i + 1);
		WriteSound(sounds[i], out.getSiblingFile(out.getFileNameWithoutExtension() + suffix + out.getFileExtension()));
	}
}

void Run(const juce::StringArray& arguments) {
	const bool isNew = arguments[0] == "make";
	Demand(arguments.size() >= 8 && (isNew || arguments[0] == "reopen"), "bad arguments");
	const TSession session(arguments);
	juce::AudioPluginFormatManager formats;
	formats.addFormat(new juce::VST3PluginFormat);
	const juce::PluginDescription description = Scan(formats, session.mBundle);
	std::vector<std::unique_ptr<TPlugin>> plugins;
	for (int i = 0; i < (isNew ? 1 : arguments[7].getIntValue()); ++i)
		plugins.push_back(std::make_unique<TPlugin>(formats, description, 48000.0, session.mBlock));
	std::printf("takes MIDI: %s\n", plugins[0]->Instance().acceptsMidi() ? "yes" : "no");

	juce::MemoryBlock state;
	if (isNew) {
		plugins[0]->LoadPreset(arguments[7]);
		for (const TSetting& setting : session.mSettings)
			if (setting.mFrame < 0)
				plugins[0]->Parameter(setting.mTarget).setValueNotifyingHost(setting.mValue);
		plugins[0]->Instance().getStateInformation(state);
		Demand(session.mState.replaceWithData(state.getData(), state.getSize()), "cannot write the state");
	} else {
		Demand(session.mState.loadFileAsData(state), "cannot read the state");
		for (const auto& plugin : plugins)
			plugin->Instance().setStateInformation(state.getData(), static_cast<int>(state.getSize()));
	}
	plugins[0]->PrintParameters();
	PlayAtOnce(plugins, session);
	for (const auto& plugin : plugins)
		ServeUntil([&] { return plugin->HostShowsOwnValues(); }, "the host shows the values that the plug-in has");
}

} // namespace

int main(int count, char** arguments) {
	const juce::ScopedJuceInitialiser_GUI juce;
	try {
		Run(juce::StringArray(const_cast<const char**>(arguments + 1), count - 1));
	} catch (const std::exception& error) {
		std::printf("FAILED: %s\n", error.what());
		return 1;
	}
	return 0;
}
