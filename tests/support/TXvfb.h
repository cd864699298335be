// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <sys/types.h>

/// An X server without a screen that anybody sees, on a display that is free; DISPLAY names it while it runs.
class TXvfb {
public:
	/// `screen` is WIDTHxHEIGHTxDEPTH.
	explicit TXvfb(const std::string& screen = "1280x1024x24");
	~TXvfb();

	TXvfb(const TXvfb&) = delete;
	TXvfb& operator=(const TXvfb&) = delete;

	/// False where the server is not installed.
	bool IsRunning() const { return mProcess > 0; }

	/// Ends the server as a crash would.
	void Kill();

private:
	pid_t mProcess = -1;
	std::string mPreviousDisplay;
};
