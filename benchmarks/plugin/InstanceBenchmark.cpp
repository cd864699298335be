// SPDX-License-Identifier: GPL-3.0-or-later
// What does an instance cost? Time to make and end one, and the memory that the first and the second take.
#include "framework/foundation/files/TLog.h"
#include "plugin/TProgramInstance.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <unistd.h>

namespace {

double ResidentMebibytes() {
	std::ifstream file("/proc/self/statm");
	long total = 0;
	long resident = 0;
	file >> total >> resident;
	return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void MakeAndEndAnInstance(benchmark::State& state) {
	for (auto _ : state)
		benchmark::DoNotOptimize(TProgramInstance::Create().get());
}

void MemoryOfTwoInstances(benchmark::State& state) {
	for (auto _ : state) {
		const double before = ResidentMebibytes();
		const auto first = TProgramInstance::Create();
		const double withOne = ResidentMebibytes();
		const auto second = TProgramInstance::Create();
		state.counters["first MiB"] = withOne - before;
		state.counters["second MiB"] = ResidentMebibytes() - withOne;
	}
}

// The memory first: once an instance has been, the allocator keeps some of it.
BENCHMARK(MemoryOfTwoInstances)->Iterations(1);
BENCHMARK(MakeAndEndAnInstance)->Unit(benchmark::kMillisecond);

} // namespace

int main(int count, char** arguments) {
	TLog::SetEchoToConsole(false);
	benchmark::Initialize(&count, arguments);
	if (benchmark::ReportUnrecognizedArguments(count, arguments))
		return 2;
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
