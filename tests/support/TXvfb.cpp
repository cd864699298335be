// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TXvfb.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

TXvfb::TXvfb(const std::string& screen) {
	const char* previous = std::getenv("DISPLAY");
	mPreviousDisplay = previous ? previous : "";
	int ends[2];
	if (pipe(ends) != 0)
		return;
	fcntl(ends[0], F_SETFD, FD_CLOEXEC);
	mProcess = fork();
	if (mProcess == 0) {
		// It goes with a test that breaks off, and holds none of its streams open.
		prctl(PR_SET_PDEATHSIG, SIGKILL);
		const int nothing = open("/dev/null", O_RDWR);
		for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
			dup2(nothing, stream);
		const std::string descriptor = std::to_string(ends[1]);
		execlp(
		    "Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
		    "-noreset", static_cast<char*>(nullptr));
		_exit(127);
	}
	close(ends[1]);
	std::string number;
	for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';)
		number += digit;
	close(ends[0]);
	if (number.empty())
		Kill();
	else
		setenv("DISPLAY", (":" + number).c_str(), 1);
}

TXvfb::~TXvfb() {
	Kill();
	mPreviousDisplay.empty() ? unsetenv("DISPLAY") : setenv("DISPLAY", mPreviousDisplay.c_str(), 1);
}

void TXvfb::Kill() {
	if (mProcess <= 0)
		return;
	kill(mProcess, SIGKILL);
	waitpid(mProcess, nullptr, 0);
	mProcess = -1;
}
