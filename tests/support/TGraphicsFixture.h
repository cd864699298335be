// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "platform/headless/THeadlessPlatform.h"
#include "tests/support/TFrameworkFixture.h"

#include <cstring>
#include <string>
#include <vector>

/// A test that draws: a system in memory, its preferences and a port, at the scale of 100 %.
class TGraphicsFixture : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		TPlatform::Create(
		    []() -> TPlatform* { return new THeadlessPlatform; }, [](TPlatform* platform) { delete platform; });
		TGraphPortPrefs::CreateInstance();
		TGraphPortImpl::CreateInstance();
	}

	void TearDown() override {
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		TPlatform::Destroy();
		TFrameworkFixture::TearDown();
	}

	static THeadlessPlatform& Platform() { return static_cast<THeadlessPlatform&>(*TPlatform::Instance()); }

	static TGraphPortPrefs& Preferences() { return *TGraphPortPrefs::Instance(); }

	static TGraphPortImpl& Port() { return static_cast<TGraphPortImpl&>(*TGraphPort::Instance()); }

	/// Black, in surface pixels.
	static TPtr<TSurface> MakeSurface(int width, int height, TUiScale scale = kUnscaled) {
		TPtr<TSurface> surface = Port().CreateSurface({width, height}, 0, {});
		surface->SetScale(scale);
		surface->SetClipRect({0, 0, width, height});
		return surface;
	}

	/// A row of pixels of these greys.
	static TPtr<TSurface> MakeRow(const std::vector<int>& greys) {
		TPtr<TSurface> surface = MakeSurface(static_cast<int>(greys.size()), 1);
		for (std::size_t i = 0; i < greys.size(); ++i)
			surface->SetPixel({static_cast<int>(i), 0}, {greys[i], greys[i], greys[i]}, 1.0f);
		return surface;
	}

	/// The red of each surface pixel of a row.
	static std::vector<int> RowOf(TSurface& surface, int y = 0) {
		const TUiScale scale = surface.Scale();
		surface.SetScale(kUnscaled);
		std::vector<int> values;
		for (int x = 0; x < surface.Size().mX; ++x)
			values.push_back(surface.Pixel({x, y}).mRed);
		surface.SetScale(scale);
		return values;
	}

	/// All rows, "#" for what is not black.
	static std::string Picture(TSurface& surface) {
		std::string picture;
		for (int y = 0; y < surface.Size().mY; ++y) {
			for (const int value : RowOf(surface, y))
				picture += value == 0 ? '.' : '#';
			picture += '\n';
		}
		return picture;
	}

	static bool AreEqual(TSurface& a, TSurface& b) {
		for (int y = 0; y < a.Size().mY; ++y)
			if (std::memcmp(
			        a.Pixels() + y * a.RowBytes(), b.Pixels() + y * b.RowBytes(),
			        static_cast<std::size_t>(a.Size().mX) * 4) != 0)
				return false;
		return a.Size() == b.Size();
	}
};
