// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// A program that runs beside us and whose output is read. It gets an environment without what a host has put into its
/// own (paths to its libraries and modules), and no handler of signals is needed to see it end. GUI thread.
class TChildProcess {
public:
	/// Nothing runs if the program cannot be started. `extra` are further variables, "NAME=value".
	TChildProcess(const std::vector<std::string>& command, const std::vector<std::string>& extra);
	/// Ends the program.
	~TChildProcess();

	TChildProcess(const TChildProcess&) = delete;
	TChildProcess& operator=(const TChildProcess&) = delete;

	bool HasStarted() const { return mProcess > 0; }

	/// Reads what has come, without waiting. False when the output has ended.
	bool Poll();

	const std::string& Output() const { return mOutput; }

	/// Where PATH has a program of this name; empty if nowhere.
	static std::string FindProgram(const std::string& name);
	/// The variables of our environment that a program of the desktop needs.
	static std::vector<std::string> CleanEnvironment();

private:
	void End();

	pid_t mProcess = -1;
	int mHandle = -1; // of the process, which stays valid when its number is used again
	int mPipe = -1;
	std::string mOutput;
};
