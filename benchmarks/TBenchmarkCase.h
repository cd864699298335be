// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Something whose cost per stereo frame is measured. Made inside a running framework; processes sound of its own.
class TBenchmarkCase {
public:
	static constexpr int kSampleRate = 44100;
	static constexpr int kMaximumBlock = 1024;

	virtual ~TBenchmarkCase() = default;

	/// At most kMaximumBlock frames.
	virtual void ProcessBlock(int frames) = 0;

	using TMaker = std::function<std::unique_ptr<TBenchmarkCase>()>;

	struct TEntry {
		std::string mName;
		TMaker mMake;
	};

	/// All cases, by the file that defines them. A file adds its own from a static TRegistration.
	static const std::vector<TEntry>& All();

	struct TRegistration {
		TRegistration(const std::string& name, TMaker make);
	};

private:
	static std::vector<TEntry>& Entries();
};

/// A framework for the life of the program's main function, in the floating-point mode of a process call.
class TBenchmarkEnvironment {
public:
	TBenchmarkEnvironment();
	~TBenchmarkEnvironment();

private:
	int mStorageId;
};
