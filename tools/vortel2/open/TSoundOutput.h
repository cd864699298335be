// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

class TLoopPlayer;

/// Lets a player be heard, from its construction to its end, on a thread that is not the caller's.
class TSoundOutput {
public:
	virtual ~TSoundOutput() = default;

	/// What plays, for a message: "JACK", a device's name, or that nothing is heard.
	virtual std::string Description() const = 0;

	/// The JACK server if one runs, else the default device; silence in real time if neither can be had, or if nothing
	/// else is wanted. The player must outlive the output.
	static std::unique_ptr<TSoundOutput> Open(TLoopPlayer& player, bool silent);
};
