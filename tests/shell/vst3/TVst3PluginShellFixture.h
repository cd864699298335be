// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "shell/vst3/TVst3PluginShell.h"
#include "tests/shell/FakeProgram.h"
#include "tests/shell/vst3/FakeVst3Host.h"
#include "tests/support/TFrameworkFixture.h"

#include <string>
#include <thread>
#include <utility>
#include <vector>

/// The adapter in front of a fake program, initialised by a fake host.
class TVst3PluginShellFixture : public TFrameworkFixture {
protected:
	static constexpr Steinberg::int32 kSamples = 20;

	void SetUp() override {
		TLog::SetEchoToConsole(false);
		TFrameworkFixture::SetUp();
		mpDocument = MakePtr<TFakeDocument>();
		mpEngine = MakePtr<TFakeEngine>(mpDocument.Get());
		mpShell = MakePtr<TVst3PluginShell>(
		    mpDocument.Get(), mpEngine.Get(), nullptr, [](TVst3PluginShell*) { ++sReleased; });
	}

	void TearDown() override {
		mpShell->terminate();
		mpShell = nullptr;
		mpEngine = nullptr;
		mpDocument = nullptr;
		TThreadCommunicator::Instance()->FlushAllCommands();
		TFrameworkFixture::TearDown();
	}

	void Initialize() {
		ASSERT_EQ(mpShell->initialize(static_cast<Steinberg::Vst::IHostApplication*>(&mHost)), Steinberg::kResultOk);
		mpShell->setComponentHandler(&mHost);
	}

	/// What a host's audio thread does: a thread that the plug-in has never seen.
	Steinberg::tresult ProcessElsewhere(Steinberg::Vst::ProcessData& data) {
		Steinberg::tresult result = Steinberg::kInternalError;
		std::thread([&] { result = mpShell->process(data); }).join();
		return result;
	}

	Steinberg::tresult ProcessChanges(std::vector<TFakeQueue> queues) {
		TFakeChanges changes(std::move(queues));
		Steinberg::Vst::ProcessData data;
		data.numSamples = kSamples;
		data.inputParameterChanges = &changes;
		return ProcessElsewhere(data);
	}

	std::string TakeCalls() { return std::exchange(mpEngine->mCalls, {}); }

	static inline int sReleased = 0;
	TFakeVst3Host mHost;
	TPtr<TFakeDocument> mpDocument;
	TPtr<TFakeEngine> mpEngine;
	TPtr<TVst3PluginShell> mpShell;
};
