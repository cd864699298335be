// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TFontLookup.h"

#include <memory>

typedef struct _FcConfig FcConfig;

/// Fonts by fontconfig. The configuration is read at first need and is this object's own, not the one that the process
/// shares with the host. Families that every system has under another name ("Helvetica", "sans") find what stands for
/// them.
class TFontconfigLookup final : public TFontLookup {
public:
	TFontFile Find(const TString& family, const TString& postScriptName, bool bold, bool italic) override;

private:
	struct TRelease {
		void operator()(FcConfig* config) const;
	};

	std::unique_ptr<FcConfig, TRelease> mpConfig;
};
