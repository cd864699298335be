// SPDX-License-Identifier: GPL-3.0-or-later
// What a host asks and tells outside of rendering.
#include "tests/shell/audiounit/TAudioUnitPluginShellFixture.h"

#include <cmath>
#include <limits>

namespace {

class TAudioUnitPluginShellHostTest : public TAudioUnitPluginShellFixture {
protected:
	/// Why the layout is refused: the log behind the first line.
	std::string LogOfInitializing() {
		const std::string log = mLog.Logged();
		const auto start = log.find("Checking bus layouts...");
		return start == std::string::npos ? "" : log.substr(start);
	}

	bool HasLogged(const std::string& text) { return LogOfInitializing().find(text) != std::string::npos; }
};

TEST_F(TAudioUnitPluginShellHostTest, PropertiesHaveTheSizesThatHostsExpect) {
	Open();
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_InPlaceProcessing), "4w");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_CocoaUI), "-10851"); // there is no editor
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_ParameterStringFromValue), "24");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_ParameterValueFromString), "24");
	EXPECT_EQ(mpUnit->Info(kMusicDeviceProperty_InstrumentCount), "4");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_ParameterList), "12");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_SupportedNumChannels), "8");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_SupportedChannelLayoutTags, kAudioUnitScope_Input), "8");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_SupportedChannelLayoutTags, kAudioUnitScope_Output), "4");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output), "40w");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 1), "-10877");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_ElementCount, kAudioUnitScope_Input), "4");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_Latency, kAudioUnitScope_Input), "-10866");
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_TailTime), "-10879");
	EXPECT_EQ(mpUnit->Info(4711), "-10879");

	UInt32 value = 7;
	EXPECT_EQ(mpUnit->Get(kMusicDeviceProperty_InstrumentCount, value), noErr);
	EXPECT_EQ(value, 0u);
	EXPECT_EQ(mpUnit->Set(kMusicDeviceProperty_InstrumentCount, value), kAudioUnitErr_PropertyNotWritable);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_InPlaceProcessing, UInt32{8}), noErr);
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_InPlaceProcessing, value), noErr);
	EXPECT_EQ(value, 1u);
	UInt8 tooSmall = 0;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ClassInfo, tooSmall), kAudioUnitErr_InvalidPropertyValue);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_InPlaceProcessing, tooSmall), kAudioUnitErr_InvalidPropertyValue);
}

TEST_F(TAudioUnitPluginShellHostTest, LayoutsAreCheckedWhenInitialising) {
	Open();
	EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Input, 3, 48000.0), noErr);
	EXPECT_EQ(mpUnit->Initialize(), kAudioUnitErr_FormatNotSupported);
	EXPECT_TRUE(HasLogged("Input bus 0 is neither mono nor stereo. Rejecting layout..."));
	EXPECT_TRUE(HasLogged("Neglecting invalid channel configuration 3/2."));
	EXPECT_FALSE(HasLogged("Output bus"));
	EXPECT_EQ(sEngine->mRates.size(), 0u); // the engine keeps its set-up

	EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Input, 1, 48000.0), noErr);
	EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Output, 2, 48000.7), noErr);
	EXPECT_EQ(mpUnit->SetFrames(100), noErr);
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	EXPECT_TRUE(HasLogged("Initialized with 1/2 in/outputs at 48000Hz with 100 samples"));
	EXPECT_EQ(sEngine->SampleRate(), 48000);
	EXPECT_EQ(sEngine->BlockSize(), 100);
	EXPECT_EQ(sShell->SetBusCount(kAudioUnitScope_Input, 1), kAudioUnitErr_Initialized);
	EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Output, 2, 44100.0), kAudioUnitErr_Initialized);
	EXPECT_EQ(mpUnit->SetFrames(99), kAudioUnitErr_Initialized);
	EXPECT_EQ(mpUnit->Uninitialize(), noErr);
	EXPECT_EQ(sShell->SetBusCount(kAudioUnitScope_Input, 2), kAudioUnitErr_InvalidPropertyValue);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_ElementCount, 1u, 1), kAudioUnitErr_PropertyNotWritable);
	EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Output, 2, 44100.0), noErr);
}

TEST_F(TAudioUnitPluginShellHostTest, EveryWrongBusIsNamedAndNonsenseIsPutRight) {
	sEngine->mOutputs = 2;
	Open();
	for (const UInt32 bus : {0u, 1u})
		EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Output, 1, 0.0, bus), noErr);
	EXPECT_EQ(mpUnit->Initialize(), kAudioUnitErr_FormatNotSupported);
	EXPECT_TRUE(HasLogged("Output bus 0 is not stereo") && HasLogged("Output bus 1 is not stereo"));
	EXPECT_TRUE(HasLogged("configuration 2/2."));
	for (const double rate : {0.0, -5.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
		for (const UInt32 bus : {0u, 1u})
			EXPECT_EQ(mpUnit->SetFormat(kAudioUnitScope_Output, 2, rate, bus), noErr);
		EXPECT_EQ(mpUnit->SetFrames(0), noErr);
		EXPECT_EQ(mpUnit->Initialize(), noErr);
		EXPECT_EQ(sEngine->SampleRate(), 44100);
		EXPECT_EQ(sEngine->BlockSize(), 1024);
		EXPECT_EQ(mpUnit->Uninitialize(), noErr);
	}
	EXPECT_TRUE(HasLogged("Fixed bogus sample rate from host. Assume 44100 Hz..."));
	EXPECT_TRUE(HasLogged("Fixed bogus blocksize from host. Assume 1024 samples..."));
	sEngine->mLatency = 441;
	double latency = 0.0;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_Latency, latency), noErr);
	EXPECT_EQ(latency, 0.01);
}

TEST_F(TAudioUnitPluginShellHostTest, ParametersAndTheirTexts) {
	Open();
	sDocument->mTitle =
	    TString("\xC3\xA4 long name that does not fit into the record of \xC3\xA4 hosts", kUtf8Encoding);
	AudioUnitParameterInfo info{};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterInfo, info, 0, 1), noErr);
	const auto name = AURef<const AUString>::Adopt(info.cfNameString);
	const auto unit = AURef<const AUString>::Adopt(info.unitName);
	EXPECT_EQ(name->Units(), sDocument->ParameterName(1).mName.View());
	EXPECT_EQ(unit->Units(), u"Hz");
	EXPECT_EQ(
	    std::string(info.name), "\xC3\xA4 long name that does not fit into the record of "); // cut between characters
	EXPECT_EQ(info.flags, 0xC8A00010u);
	EXPECT_EQ(info.maxValue, 1.0f);
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterInfo, info, 0, 3), kAudioUnitErr_InvalidParameter);

	EXPECT_EQ(mpUnit->SetParameter(2, 0.75f), noErr);
	EXPECT_EQ(mpUnit->Parameter(2), 0.75f);
	EXPECT_EQ(mpUnit->SetParameter(2, 1.5f), noErr);
	EXPECT_EQ(mpUnit->Parameter(2), 1.0f);
	EXPECT_EQ(mpUnit->SetParameter(3, 0.5f), kAudioUnitErr_InvalidParameter);
	EXPECT_EQ(mpUnit->SetParameter(2, NAN), kAudioUnitErr_InvalidParameterValue);
	EXPECT_EQ(mpUnit->SetParameter(2, 0.5f, kAudioUnitScope_Output), kAudioUnitErr_InvalidParameter);
	EXPECT_EQ(mpUnit->SetParameter(2, 0.5f, 9), kAudioUnitErr_InvalidScope);
	AudioUnitParameterEvent events[2]{};
	events[0].parameter = events[1].parameter = 1;
	events[0].eventType = kParameterEvent_Immediate;
	events[0].eventValues.immediate = {17, 0.25f};
	events[1].eventType = kParameterEvent_Ramped;
	events[1].eventValues.ramp = {0, 64, 0.0f, 1.0f};
	EXPECT_EQ(
	    mpUnit->Call(kAudioUnitScheduleParametersSelect, static_cast<const AudioUnitParameterEvent*>(events), 2u),
	    noErr);
	EXPECT_EQ(mpUnit->Parameter(1), 0.25f);

	const float half = 0.5f;
	AudioUnitParameterStringFromValue text{1, &half, nullptr};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterStringFromValue, text), noErr);
	EXPECT_EQ(AURef<const AUString>::Adopt(text.outString)->Units(), u"0.5");
	text.inValue = nullptr;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterStringFromValue, text), noErr);
	EXPECT_EQ(AURef<const AUString>::Adopt(text.outString)->Units(), u"0.25");
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterStringFromValue, text, 1), kAudioUnitErr_InvalidScope);
	const auto good = AURef<AUString>::Make(u"a quarter");
	AudioUnitParameterValueFromString value{0, good.Get(), 0.7f};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterValueFromString, value), noErr);
	EXPECT_EQ(value.outValue, 0.25f);
	value = {0, nullptr, 0.7f};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterValueFromString, value), noErr);
	EXPECT_EQ(value.outValue, 0.7f);
	value.inParamID = 3;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_ParameterValueFromString, value), kAudioUnitErr_InvalidParameter);
}

TEST_F(TAudioUnitPluginShellHostTest, ListenersHearEditsAndProgramChangesButNotTheHostsOwn) {
	Open();
	const auto listen = [](void* user, AudioUnit, AudioUnitPropertyID id, AudioUnitScope, AudioUnitElement) {
		static_cast<TFakeAudioUnitSystem*>(user)->Hear("property" + std::to_string(id));
	};
	const auto add = [&](AudioUnitPropertyID id) {
		return mpUnit->Call(
		    kAudioUnitAddPropertyListenerSelect, id, static_cast<AudioUnitPropertyListenerProc>(listen),
		    static_cast<void*>(&mSystem));
	};
	EXPECT_EQ(add(kAudioUnitProperty_PresentPreset), noErr);
	EXPECT_EQ(add(kAudioUnitProperty_FactoryPresets), noErr);
	sDocument->SetParameterValue(0, 0.1f);
	sShell->BeginHostEdits();
	mpUnit->SetParameter(2, 0.9f);
	sDocument->SetParameterValue(0, 0.2f);
	sDocument->SetParameterValue(0, 0.3f);
	sShell->EndHostEdits();
	EXPECT_EQ(mSystem.Take(), "begin0 value0 value0 end0 ");

	sDocument->SetCurrentProgramIndex(1);
	EXPECT_EQ(mSystem.Take(), "property36 value-1 ");
	EXPECT_EQ(mpUnit->PresentPreset(), std::pair(1, std::u16string(u"Name1")));
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_PresentPreset, AUPreset{2, nullptr}), noErr);
	EXPECT_EQ(sDocument->CurrentProgramIndex(), 2);
	EXPECT_EQ(mSystem.Take(), "property36 ");
	EXPECT_EQ(mpUnit->PresentPreset(), std::pair(2, std::u16string(u"Name2")));
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_PresentPreset, AUPreset{4, nullptr}), kAudioUnitErr_InvalidParameter);
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_PresentPreset, AUPreset{-1, nullptr}), kAudioUnitErr_InvalidPropertyValue);
	sDocument->SetProgramName(1, "x");
	EXPECT_EQ(mSystem.Take(), "property24 property36 ");

	const AUArray* presets = nullptr;
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_FactoryPresets, presets), noErr);
	const auto array = AURef<const AUArray>::Adopt(presets);
	ASSERT_EQ(array->Presets().size(), 4u);
	EXPECT_EQ(array->Presets()[3].presetNumber, 3);
	EXPECT_EQ(array->Presets()[3].presetName->Units(), u"Name3");
	mpUnit->Call(
	    kAudioUnitRemovePropertyListenerSelect, AudioUnitPropertyID{kAudioUnitProperty_PresentPreset},
	    static_cast<AudioUnitPropertyListenerProc>(listen));
	sDocument->SetCurrentProgramIndex(3);
	EXPECT_EQ(mSystem.Take(), "value-1 ");
}

TEST_F(TAudioUnitPluginShellHostTest, StateIsTheBankOrWhatAnotherHostKeptOfAProgram) {
	Open();
	const auto saved = mpUnit->State();
	ASSERT_TRUE(saved && saved->Find<AUData>("BankChunk"));
	EXPECT_FALSE(saved->Find<AUData>("ProgramChunk"));
	EXPECT_EQ(saved->Find<AUData>("BankChunk")->Bytes()[0], 7);
	sDocument->mState = 66;
	EXPECT_EQ(mpUnit->Load(*saved), noErr);
	EXPECT_EQ(sDocument->mState, 7);
	// What the state brings is no edit of the user's; it is reported when the host's call is over.
	EXPECT_EQ(mSystem.Take(), "");
	EXPECT_EQ(mpUnit->PresentPreset().first, 3);
	mSystem.Tick();
	EXPECT_EQ(mSystem.Take(), "value-1 ");

	auto both = mpUnit->State();
	both->Set("BankChunk", DataOf({9}));
	both->Set("ProgramChunk", DataOf({8}));
	EXPECT_EQ(mpUnit->Load(*both), noErr);
	EXPECT_EQ(sDocument->mState, 7) << "only the program is read, which this document does not keep";
	both->Set("subtype", AURef<const AUObject>::Adopt(new AUNumber(1)));
	both->Remove("ProgramChunk");
	EXPECT_EQ(mpUnit->Load(*both), kAudioUnitErr_InvalidPropertyValue);
	const AUDictionary* none = nullptr;
	EXPECT_EQ(mpUnit->Set(kAudioUnitProperty_ClassInfo, none), kAudioUnitErr_InvalidPropertyValue);
	EXPECT_EQ(sDocument->mLoadedSizes, std::vector<int64_t>{1});
}

TEST_F(TAudioUnitPluginShellHostTest, InstrumentsTakeFewerInputs) {
	sDocument->mIsInstrument = true;
	Open();
	AUChannelInfo channels{};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_SupportedNumChannels, channels), noErr);
	EXPECT_EQ(channels.inChannels, 0);
	EXPECT_EQ(mpUnit->Info(kAudioUnitProperty_SupportedChannelLayoutTags, kAudioUnitScope_Input), "-10877");
	EXPECT_EQ(mpUnit->Initialize(), noErr);
	EXPECT_TRUE(HasLogged("Initialized with 0/2 in/outputs at 44100Hz"));
	AudioChannelLayout layout{};
	EXPECT_EQ(mpUnit->Get(kAudioUnitProperty_AudioChannelLayout, layout, kAudioUnitScope_Output), noErr);
	EXPECT_EQ(layout.mChannelLayoutTag, UInt32{kAudioChannelLayoutTag_Stereo});
	layout.mChannelLayoutTag = kAudioChannelLayoutTag_Mono;
	EXPECT_EQ(
	    mpUnit->Set(kAudioUnitProperty_AudioChannelLayout, layout, kAudioUnitScope_Output),
	    kAudioUnitErr_FormatNotSupported);
}

} // namespace
