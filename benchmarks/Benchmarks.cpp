// SPDX-License-Identifier: GPL-3.0-or-later
// Every case at blocks of 64, 256 and 1024 frames, with three figures each: ns per frame, how many times faster than
// real time, and the ratio to the reference loop, which is measured first.
#include "benchmarks/TBenchmarkCase.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <limits>

namespace {

using TClock = std::chrono::steady_clock;

constexpr const char* kReferenceCase = "reference";

/// Best of several runs: what disturbs a run only ever slows it.
double NanosecondsPerReferenceFrame() {
	const auto& all = TBenchmarkCase::All();
	const auto entry = std::find_if(all.begin(), all.end(), [](const auto& e) { return e.mName == kReferenceCase; });
	const auto reference = entry->mMake();
	constexpr int kBlock = 256;
	constexpr int kBlocks = 2000;
	double best = std::numeric_limits<double>::max();
	for (int run = 0; run < 10; ++run) {
		const auto begin = TClock::now();
		for (int i = 0; i < kBlocks; ++i)
			reference->ProcessBlock(kBlock);
		const std::chrono::duration<double, std::nano> time = TClock::now() - begin;
		best = std::min(best, time.count() / (kBlock * kBlocks));
	}
	return best;
}

void Measure(benchmark::State& state, const TBenchmarkCase::TMaker& make, double referenceNanoseconds) {
	const auto running = make();
	const int block = static_cast<int>(state.range(0));
	const auto begin = TClock::now();
	for (auto _ : state)
		running->ProcessBlock(block);
	const std::chrono::duration<double, std::nano> time = TClock::now() - begin;
	const double perFrame = time.count() / (static_cast<double>(state.iterations()) * block);
	state.counters["ns/frame"] = perFrame;
	state.counters["x realtime"] = 1e9 / TBenchmarkCase::kSampleRate / perFrame;
	state.counters["ratio"] = perFrame / referenceNanoseconds;
}

} // namespace

int main(int count, char** arguments) {
	TBenchmarkEnvironment environment;
	benchmark::Initialize(&count, arguments);
	if (benchmark::ReportUnrecognizedArguments(count, arguments))
		return 2;
	const double reference = NanosecondsPerReferenceFrame();
	for (const auto& entry : TBenchmarkCase::All()) {
		benchmark::RegisterBenchmark(
		    entry.mName.c_str(),
		    [&entry, reference](benchmark::State& state) { Measure(state, entry.mMake, reference); })
		    ->Arg(64)
		    ->Arg(256)
		    ->Arg(1024);
	}
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
