// SPDX-License-Identifier: GPL-3.0-or-later
// What does text cost beside filling? "fills" is the time of 60 glyphs as a multiple of filling the rectangle in which
// they stand. They have been drawn before, but for the case that renders them.
#include "benchmarks/framework/graphics/LeastSeconds.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"
#include "framework/graphics/fonts/TFontSettings.h"
#include "framework/graphics/fonts/TFreetypeFont.h"
#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"

#include <functional>

namespace {

constexpr const char* kText = "Glass Staircase 062: C#5 Randomizer Tape Stop Quantize 35.0 %"; // 60, and blanks
constexpr TColor kColor{0, 160, 220};
constexpr int kRepeats = 50;

TPtr<TFreetypeFont> OpenFont() {
	const auto settings = MakePtr<TFontFileSettings>();
	settings->mFileName.Set(VORTEL_FACES "/Inter-Regular.otf");
	settings->mSize.Set({11, 11});
	settings->mAntiAlias.Set(true);
	return MakePtr<TFreetypeFont>(*settings, true);
}

using TUse = std::function<void(TFreetypeFont& font, TSurface& surface)>;

void Run(benchmark::State& state, const TUse& use) {
	const int scale = static_cast<int>(state.range(0));
	TGraphPortPrefs::Instance()->mUIScaleFactor.Set(scale);
	const auto font = OpenFont();
	const TPtr<TSurface> surface = TGraphPort::Instance()->CreateSurface({500 * scale, 40 * scale}, 0, {});
	surface->SetScale({scale, 1});
	const TRectT<int> rect{0, 0, font->TextWidth(kText), font->LineHeight()};
	use(*font, *surface);
	const double fill = LeastSeconds(200, [&] {
		for (int i = 0; i < kRepeats; ++i)
			surface->FillRect(rect, {1, 2, 3}, 1.0f);
	});
	double seconds = 1.0;
	for (auto _ : state)
		seconds = std::min(seconds, LeastSeconds(1, [&] {
			                   for (int i = 0; i < kRepeats; ++i)
				                   use(*font, *surface);
		                   }));
	state.counters["fills"] = seconds / fill;
}

void Add(const char* name, const TUse& use) {
	benchmark::RegisterBenchmark(name, [use](benchmark::State& state) { Run(state, use); })
	    ->Arg(1)
	    ->Arg(2)
	    ->Unit(benchmark::kMicrosecond);
}

void AddCases() {
	Add("Draw", [](TFreetypeFont& font, TSurface& surface) {
		font.DrawText(surface, {0, 0}, kText, kColor, TFont::kLeaveMask, 1.0f);
	});
	Add("DrawHalf", [](TFreetypeFont& font, TSurface& surface) {
		font.DrawText(surface, {0, 0}, kText, kColor, TFont::kLeaveMask, 0.5f);
	});
	Add("DrawTurned", [](TFreetypeFont& font, TSurface& surface) {
		font.DrawRotatedText(surface, {0, 0}, kText, kColor, TFont::kMirrored, TFont::kLeaveMask, 1.0f);
	});
	Add("Measure", [](TFreetypeFont& font, TSurface&) { benchmark::DoNotOptimize(font.TextWidth(kText)); });
	Add("Render", [](TFreetypeFont&, TSurface& surface) {
		OpenFont()->DrawText(surface, {0, 0}, kText, kColor, TFont::kLeaveMask, 1.0f);
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
		AddCases();
		benchmark::RunSpecifiedBenchmarks();
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		FinalizeFramework();
	}
	TGlobalStorage::DestroyStorage(storage);
	benchmark::Shutdown();
	return 0;
}
