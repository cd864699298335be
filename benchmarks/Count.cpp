// SPDX-License-Identifier: GPL-3.0-or-later
// vortel2-count CASE FRAMES [BLOCK]: sets the case up and processes the frames in blocks (256), for an instruction
// counter. Two lengths subtracted leave the cost of the frames alone. vortel2-count --list names the cases.
#include "benchmarks/TBenchmarkCase.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

int ListCases() {
	for (const auto& entry : TBenchmarkCase::All())
		std::puts(entry.mName.c_str());
	return 0;
}

int RunCase(const TBenchmarkCase::TEntry& entry, int frames, int block) {
	TBenchmarkEnvironment environment;
	const auto running = entry.mMake();
	for (int left = frames; left > 0; left -= block)
		running->ProcessBlock(std::min(block, left));
	return 0;
}

} // namespace

int main(int count, char** arguments) {
	if (count == 2 && arguments[1] == std::string_view("--list"))
		return ListCases();
	const int block = count > 3 ? std::atoi(arguments[3]) : 256;
	if (count < 3 || block < 1 || block > TBenchmarkCase::kMaximumBlock) {
		std::fprintf(
		    stderr, "usage: %s CASE FRAMES [BLOCK up to %d] | --list\n", arguments[0], TBenchmarkCase::kMaximumBlock);
		return 2;
	}
	for (const auto& entry : TBenchmarkCase::All()) {
		if (entry.mName == arguments[1])
			return RunCase(entry, std::atoi(arguments[2]), block);
	}
	std::fprintf(stderr, "%s: no case of that name\n", arguments[1]);
	return 2;
}
