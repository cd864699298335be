// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "fuzz/FuzzFramework.h"
#include "platform/headless/THeadlessPlatform.h"

/// For fuzzers that draw: a system in memory and a port. Kept in a static.
class TFuzzGraphics {
public:
	TFuzzGraphics() {
		TPlatform::Create(
		    []() -> TPlatform* { return new THeadlessPlatform; }, [](TPlatform* platform) { delete platform; });
		TGraphPortPrefs::CreateInstance();
		TGraphPortImpl::CreateInstance();
	}

	~TFuzzGraphics() {
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		TPlatform::Destroy();
	}

	TFuzzGraphics(const TFuzzGraphics&) = delete;
	TFuzzGraphics& operator=(const TFuzzGraphics&) = delete;

	static TPtr<TSurface> MakeSurface() { return TGraphPort::Instance()->CreateSurface({64, 32}, 0, {}); }
};
