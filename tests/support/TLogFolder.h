// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TLog.h"
#include "tests/support/TTemporaryFolder.h"

/// A fresh folder that the process's log is written to, without echo.
class TLogFolder : public TTemporaryFolder {
public:
	TLogFolder() {
		TLog::Drop();
		TLog::SetDirectory(Directory());
		TLog::SetEchoToConsole(false);
	}

	~TLogFolder() {
		TLog::Drop();
		TLog::SetDirectory(TDirectory());
		TLog::SetEchoToConsole(true);
	}

	std::string Logged() const { return Read("Vortel2.log"); }
};
