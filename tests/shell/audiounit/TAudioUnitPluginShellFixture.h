// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "shell/audiounit/AudioUnitEntry.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"
#include "tests/shell/FakeProgram.h"
#include "tests/shell/audiounit/FakeAudioUnitHost.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TLogFolder.h"

#include <memory>
#include <string>
#include <utility>

/// The adapter in front of a fake program, opened by a fake host.
class TAudioUnitPluginShellFixture : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		sDocument = MakePtr<TFakeDocument>();
		sEngine = MakePtr<TFakeEngine>(sDocument.Get());
	}

	void TearDown() override {
		mpUnit = nullptr;
		EXPECT_TRUE(mSystem.Timers().empty());
		sShell = nullptr;
		sEngine = nullptr;
		sDocument = nullptr;
		TThreadCommunicator::Instance()->FlushAllCommands();
		TFrameworkFixture::TearDown();
	}

	void Open() {
		mpUnit = std::make_unique<TFakeAudioUnit>([] {
			return AudioUnitEntry::NewPlugIn(
			    [](AudioComponentInstance instance) {
				    sShell = MakePtr<TAudioUnitPluginShell>(sDocument.Get(), sEngine.Get(), nullptr, instance);
				    return sShell.Get();
			    },
			    [](TAudioUnitPluginShell*) { sShell = nullptr; });
		});
	}

	/// With a stereo input and output; the input gives 0.5 on the left and -0.25 on the right.
	void OpenAndInitialize(UInt32 frames = 64) {
		Open();
		EXPECT_EQ(mpUnit->SetFrames(frames), noErr);
		EXPECT_EQ(mpUnit->SetInput(&GiveSound, nullptr), noErr);
		EXPECT_EQ(mpUnit->Initialize(), noErr);
	}

	static OSStatus GiveSound(
	    void* /*refCon*/, AudioUnitRenderActionFlags* flags, const AudioTimeStamp*, UInt32, UInt32 frames,
	    AudioBufferList* data) {
		*flags |= kAudioUnitRenderAction_OutputIsSilence; // must not be taken for the output's
		for (UInt32 i = 0; i < data->mNumberBuffers; ++i)
			std::fill_n(static_cast<float*>((data->mBuffers + i)->mData), frames, i == 0 ? 0.5f : -0.25f);
		return noErr;
	}

	std::string TakeCalls() { return std::exchange(sEngine->mCalls, {}); }

	TLogFolder mLog;
	TFakeAudioUnitSystem mSystem;
	static inline TPtr<TFakeDocument> sDocument;
	static inline TPtr<TFakeEngine> sEngine;
	static inline TPtr<TAudioUnitPluginShell> sShell;
	std::unique_ptr<TFakeAudioUnit> mpUnit;
};
