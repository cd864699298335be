// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TFileDialogImpl.h"
#include "platform/linux/dialogs/TBusLibrary.h"

#include <cstdint>
#include <string>

/// The file dialog of the desktop portal (org.freedesktop.portal.FileChooser). Nothing here waits for the bus: each
/// Poll works off what has come. A portal that does not accept the request in time counts as none. GUI thread.
class TPortalDialog final : public TFileDialogImpl {
public:
	TPortalDialog(const TFileDialogSettings& settings, uint32_t parentWindow);
	~TPortalDialog() override;

	TState Poll() override;

	TString Path() const override { return mPath; }

	bool HasAskedToOverwrite() const override { return true; }

private:
	bool Ask(const TFileDialogSettings& settings, uint32_t parentWindow);
	bool AppendOptions(sd_bus_message* call, const TFileDialogSettings& settings) const;
	bool AppendFilter(sd_bus_message* call, const TFileDialogSettings& settings) const;
	bool AppendBytes(sd_bus_message* call, const char* key, const std::string& bytes) const;
	void OnAccepted(sd_bus_message* reply);
	void OnResponse(sd_bus_message* signal);
	void ReadResults(sd_bus_message* signal);
	bool ReadFirstUri(sd_bus_message* signal);
	void WithdrawRequest();

	TBusLibrary mLibrary;
	sd_bus* mpBus = nullptr;
	std::string mToken;  // the last part of the request's path
	std::string mHandle; // the request's path, once the portal has taken it
	TState mState = TState::kUnavailable;
	TString mPath;
};
