// SPDX-License-Identifier: GPL-3.0-or-later
// vortel2-frame-count CASE FRAMES: opens an editor in memory and runs frames, for an instruction counter. Two lengths
// subtracted leave the cost of the frames alone. vortel2-frame-count --list names the cases.
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/process/Framework.h"
#include "framework/graphics/surfaces/TGraphPortImpl.h"
#include "framework/graphics/surfaces/TGraphPortPrefs.h"
#include "framework/gui/controls/TLinkedViewValue.h"
#include "framework/gui/dialogs/GuiServices.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TEditorFrame.h"
#include "platform/headless/THeadlessClock.h"
#include "platform/headless/THeadlessPlatform.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr int kPanels = 20;
constexpr int kViewsInPanel = 29; // and the panel itself

/// Three hundred values that somebody else could change.
struct TSource {
	float Value() const { return mValue; }

	float mValue = 0.5f;
};

struct TCase {
	const char* mName;
	int mLinkedValues;
	bool mMovesMouse;
	bool mHoldsKey;
};

constexpr std::array<TCase, 4> kCases{{
    {"600-views", 0, false, false},
    {"600-views-300-values", 300, false, false},
    {"600-views-mouse-move", 0, true, false},
    {"600-views-held-key", 0, false, true},
}};

TPtr<TMainFrameView> MakeTree(int linkedValues, const TSource& source) {
	const auto frame = MakePtr<TMainFrameView>();
	for (int panel = 0; panel < kPanels; ++panel) {
		const auto panelView = MakePtr<TView>();
		panelView->SetRect({panel % 5 * 190, panel / 5 * 145, 190, 145});
		frame->AddChild(panelView);
		for (int index = 0; index < kViewsInPanel; ++index) {
			const auto view = MakePtr<TView>();
			view->SetRect({index % 6 * 31, index / 6 * 29, 30, 28});
			panelView->AddChild(view);
			if (linkedValues-- > 0)
				new TConstLinkedViewValue<float>(view.Get(), {&source, &TSource::Value});
		}
	}
	return frame;
}

class TScene {
public:
	TScene() : mStorage(TGlobalStorage::CreateStorage()), mScope(mStorage) {
		TLog::SetEchoToConsole(false);
		InitializeFramework();
		TPlatform::Create(
		    []() -> TPlatform* { return new THeadlessPlatform; }, [](TPlatform* platform) { delete platform; });
		TGraphPortPrefs::CreateInstance();
		TGraphPortImpl::CreateInstance();
		TBaseViewsPrefs::CreateService();
		InitializeGui();
	}

	~TScene() {
		FinalizeGui();
		TBaseViewsPrefs::Destroy();
		TGraphPort::Destroy();
		TGraphPortPrefs::Destroy();
		TPlatform::Destroy();
		FinalizeFramework();
	}

	void Run(const TCase& scene, int frames) {
		const TSource source;
		const auto window = MakePtr<TViewWindow>(nullptr, kEmbeddedWindow);
		window->SetMainFrame(MakeTree(scene.mLinkedValues, source));
		window->SetClientRect({0, 0}, {962, 595});
		window->Show();
		auto& platform = static_cast<THeadlessPlatform&>(*TPlatform::Instance());
		platform.MovePointer({100, 100});
		if (scene.mHoldsKey)
			platform.KeyDown(kKeyA);
		TEditorFrame ticker;
		for (int frame = 0; frame < frames; ++frame) {
			mClock.Advance(std::chrono::milliseconds(10));
			if (scene.mMovesMouse)
				platform.MovePointer({100 + frame % 200, 100});
			ticker.EditorFrameTick(window.Get());
		}
		window->Close();
	}

private:
	THeadlessClock mClock;
	const int32_t mStorage;
	const TGlobalStorageScope mScope;
};

} // namespace

int main(int count, char** arguments) {
	if (count == 2 && arguments[1] == std::string_view("--list")) {
		for (const TCase& scene : kCases)
			std::puts(scene.mName);
		return 0;
	}
	for (const TCase& scene : kCases)
		if (count == 3 && arguments[1] == std::string_view(scene.mName)) {
			TScene().Run(scene, std::atoi(arguments[2]));
			return 0;
		}
	std::fprintf(stderr, "usage: %s CASE FRAMES | --list\n", arguments[0]);
	return 2;
}
