// SPDX-License-Identifier: GPL-3.0-or-later
// What does drawing cost beside filling? "fills" is the time of a case as a multiple of filling the whole surface once:
// for operations on the whole area, and for as many controls as an editor has.
#include "benchmarks/framework/graphics/LeastSeconds.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"
#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <functional>

namespace {

constexpr TPointT<int> kSize{962, 595}; // of the editor
constexpr TRectT<int> kArea{0, 0, kSize.mX, kSize.mY};
constexpr TColor kColor{60, 120, 200};
constexpr int kControls = 300;

TPtr<TSurface> MakeSurface(TPointT<int> size, TUiScale scale) {
	const TPointT<int> pixels = Scaled(size, scale);
	TPtr<TSurface> surface = TGraphPort::Instance()->CreateSurface(pixels, 0, {});
	surface->SetScale(scale);
	surface->SetClipRect({0, 0, size.mX, size.mY});
	return surface;
}

double SecondsToFill(TSurface& surface) {
	return LeastSeconds(200, [&] { surface.FillRect(kArea, {1, 2, 3}, 1.0f); });
}

/// Places of controls, all over the surface.
TRectT<int> ControlAt(int index) {
	return {10 + index % 15 * 63, 10 + index / 15 * 29, 58, 20};
}

TPointT<float> RingAt(int index) {
	const TRectT<int> place = ControlAt(index);
	return {static_cast<float>(place.mLeft) + 29.0f, static_cast<float>(place.mTop) + 10.0f};
}

using TDraw = std::function<void(TSurface& surface, TSurface& image)>;

void Run(benchmark::State& state, const TDraw& draw) {
	const TUiScale scale{static_cast<int>(state.range(0)), 1};
	const TPtr<TSurface> surface = MakeSurface(kSize, scale);
	const TPtr<TSurface> image = MakeSurface(kSize, scale);
	image->CreateAlphaMask(0.5f);
	const double fill = SecondsToFill(*surface);
	double seconds = 1.0;
	for (auto _ : state)
		seconds = std::min(seconds, LeastSeconds(1, [&] { draw(*surface, *image); }));
	state.counters["fills"] = seconds / fill;
}

void Add(const char* name, const TDraw& draw) {
	benchmark::RegisterBenchmark(name, [draw](benchmark::State& state) { Run(state, draw); })
	    ->Arg(1)
	    ->Arg(2)
	    ->Unit(benchmark::kMicrosecond);
}

void AddAreas() {
	Add("Fill", [](TSurface& surface, TSurface&) { surface.FillRect(kArea, kColor, 1.0f); });
	Add("Blend", [](TSurface& surface, TSurface&) { surface.FillRect(kArea, kColor, 0.5f); });
	Add("Copy", [](TSurface& surface, TSurface& image) { surface.DrawBitmap({0, 0}, image, kArea, false, 1.0f); });
	Add("CopyKeyed", [](TSurface& surface, TSurface& image) { surface.DrawBitmap({0, 0}, image, kArea, true, 1.0f); });
	Add("BlendImage", [](TSurface& surface, TSurface& image) {
		surface.DrawBitmap({0, 0}, image, kArea, false, 0.5f);
	});
	Add("MaskedImage", [](TSurface& surface, TSurface& image) {
		surface.DrawMaskedBitmap({0, 0}, image, kArea, 1.0f);
	});
	Add("Stretch", [](TSurface& surface, TSurface& image) {
		surface.StretchBitmap(kArea, image, {0, 0, kSize.mX / 2, kSize.mY / 2}, 1.0f);
	});
	Add("Tile", [](TSurface& surface, TSurface& image) { surface.TileBitmap(kArea, {100, 100}, image, 1.0f); });
	Add("Recolor", [](TSurface& surface, TSurface&) {
		const TPointT<int> size = surface.Size();
		surface.Recolor({0, 0, size.mX, size.mY}, kColor, {0, 0, 0}, 0.5f);
	});
	Add("FillRoundedRect",
	    [](TSurface& surface, TSurface&) { surface.FillRoundedRect(kArea, kColor, TCornerRadii::All(3.0f), 1.0f); });
	Add("TextureRoundedRect", [](TSurface& surface, TSurface& image) {
		surface.TextureRoundedRect(kArea, {0, 0}, image, TCornerRadii::All(3.0f), 1.0f);
	});
}

void AddControls() {
	Add("300 rectangles", [](TSurface& surface, TSurface&) {
		for (int i = 0; i < kControls; ++i)
			surface.FillRect(ControlAt(i), kColor, 1.0f);
	});
	Add("300 frames", [](TSurface& surface, TSurface&) {
		for (int i = 0; i < kControls; ++i)
			surface.FrameRect(ControlAt(i), kColor, 0.5f);
	});
	Add("300 rounded rectangles", [](TSurface& surface, TSurface&) {
		for (int i = 0; i < kControls; ++i)
			surface.FillRoundedRect(ControlAt(i), kColor, TCornerRadii::All(2.0f), 1.0f);
	});
	Add("300 rounded outlines", [](TSurface& surface, TSurface&) {
		for (int i = 0; i < kControls; ++i)
			surface.StrokeRoundedRect(ControlAt(i), kColor, 1.0f, TCornerRadii::All(2.0f), 1.0f);
	});
	Add("300 circles", [](TSurface& surface, TSurface&) {
		for (int i = 0; i < kControls; ++i)
			surface.FillCircle(RingAt(i), 10.0f, kColor, 1.0f);
	});
	Add("300 arcs", [](TSurface& surface, TSurface&) {
		std::array<TPointT<float>, 24> points;
		for (int i = 0; i < kControls; ++i) {
			for (std::size_t p = 0; p < points.size(); ++p) {
				const float angle = static_cast<float>(p) * 0.2f;
				points[p] = {RingAt(i).mX + 10.0f * std::cos(angle), RingAt(i).mY + 10.0f * std::sin(angle)};
			}
			surface.StrokePolyline(points, kColor, 3.0f, 1.0f);
		}
	});
	Add("300 icons", [](TSurface& surface, TSurface& image) {
		for (int i = 0; i < kControls; ++i)
			surface.DrawMaskedStencil({ControlAt(i).mLeft, ControlAt(i).mTop}, kColor, image, {0, 0, 12, 12}, 1.0f);
	});
}

} // namespace

int main(int count, char** arguments) {
	TLog::SetEchoToConsole(false);
	benchmark::Initialize(&count, arguments);
	if (benchmark::ReportUnrecognizedArguments(count, arguments))
		return 2;
	const int32_t storage = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope scope(storage);
		InitializeFramework();
		TGraphPortPrefs::CreateInstance();
		TGraphPortImpl::CreateInstance();
		AddAreas();
		AddControls();
		benchmark::RunSpecifiedBenchmarks();
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		FinalizeFramework();
	}
	TGlobalStorage::DestroyStorage(storage);
	benchmark::Shutdown();
	return 0;
}
