// SPDX-License-Identifier: GPL-3.0-or-later
// What do banks cost to keep? Processor time to save and to load one, by the number of scenes with content in each
// program; every value of such a scene is off its default. 128 is the full bank, 0 the fresh one.
#include "document/TVortelDocument.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

namespace {

/// Numbers with as many digits as a file can hold.
class TBankFiller {
public:
	void Fill(TVortelDocument& document, int32_t scenes) {
		for (int32_t p = 0; p < TVortelDocument::kNumberOfPrograms; ++p)
			for (int32_t s = 0; s < scenes; ++s)
				Fill(*document.Program(p)->Scene(s));
	}

private:
	float Number() { return std::uniform_real_distribution<float>(0.001f, 0.999f)(mRandom); }

	void Fill(TVortelScene& scene) {
		for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
			scene.SetParameterValue(id, Number());
		for (int32_t step = 0; step < TVortelScene::kNumberOfGaterSteps; ++step)
			scene.SetGaterStep(step, Number());
		scene.Seed().Set(static_cast<int>(mRandom() & 0x7FFFFFFF));
		scene.Sequencer()->NumBeats().Set(3);
		scene.Sequencer()->NumStepsPerBeat().Set(5);
		scene.Sequencer()->LoopEnabled().Set(false);
		for (int32_t row = 0; row < TVortelSequencer::kNumberOfRows; ++row)
			scene.Sequencer()->Sequence(row).Randomize(1, 4);
	}

	std::mt19937 mRandom{1};
};

TPtr<TVortelDocument> MakeBank(benchmark::State& state) {
	auto document = MakePtr<TVortelDocument>();
	TBankFiller().Fill(*document, static_cast<int32_t>(state.range(0)));
	return document;
}

class TBankFile {
public:
	TBankFile() {
		std::string pattern = (std::filesystem::temp_directory_path() / "vortel-bank-XXXXXX").string();
		mFolder = mkdtemp(pattern.data());
	}

	~TBankFile() {
		std::error_code ignored;
		std::filesystem::remove_all(mFolder, ignored);
	}

	TBankFile(const TBankFile&) = delete;
	TBankFile& operator=(const TBankFile&) = delete;

	TString Path() const { return TString((mFolder + "/Bank.v2bnk").c_str(), kFileSystemEncoding); }

private:
	std::string mFolder;
};

void SaveBankFile(benchmark::State& state) {
	const TPtr<TVortelDocument> document = MakeBank(state);
	const TBankFile file;
	for (auto _ : state)
		if (!document->SaveBank(file.Path()))
			state.SkipWithError("not saved");
}

void LoadBankFile(benchmark::State& state) {
	const TPtr<TVortelDocument> document = MakeBank(state);
	const TBankFile file;
	document->SaveBank(file.Path());
	for (auto _ : state)
		if (!document->LoadBank(file.Path()))
			state.SkipWithError("not loaded");
}

void SaveBankChunk(benchmark::State& state) {
	const TPtr<TVortelDocument> document = MakeBank(state);
	TStream stream;
	for (auto _ : state)
		document->SaveBankChunk(stream);
	state.counters["MiB"] = static_cast<double>(stream.Size()) / (1024.0 * 1024.0);
}

void LoadBankChunk(benchmark::State& state) {
	const TPtr<TVortelDocument> document = MakeBank(state);
	TStream stream;
	document->SaveBankChunk(stream);
	for (auto _ : state)
		document->LoadBankChunk(stream);
}

// What a user changes, one after another, may not cost a bank.
void RoundTripOfOneProgram(benchmark::State& state) {
	const TPtr<TVortelDocument> document = MakeBank(state);
	TStream stream;
	for (auto _ : state) {
		document->SaveProgramChunk(stream);
		document->LoadProgramChunk(stream);
	}
}

void OnBanks(benchmark::internal::Benchmark* benchmark) {
	benchmark->Arg(0)->Arg(32)->Arg(64)->Arg(128)->Unit(benchmark::kMillisecond);
}

BENCHMARK(SaveBankFile)->Apply(OnBanks);
BENCHMARK(LoadBankFile)->Apply(OnBanks);
BENCHMARK(SaveBankChunk)->Apply(OnBanks);
BENCHMARK(LoadBankChunk)->Apply(OnBanks);
BENCHMARK(RoundTripOfOneProgram)->Apply(OnBanks);

} // namespace

int main(int count, char** arguments) {
	TLog::SetEchoToConsole(false);
	benchmark::Initialize(&count, arguments);
	if (benchmark::ReportUnrecognizedArguments(count, arguments))
		return 2;
	const int32_t storage = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope scope(storage);
		InitializeFramework();
		benchmark::RunSpecifiedBenchmarks();
		FinalizeFramework();
	}
	TGlobalStorage::DestroyStorage(storage);
	benchmark::Shutdown();
	return 0;
}
