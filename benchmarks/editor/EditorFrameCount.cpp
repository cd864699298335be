// SPDX-License-Identifier: GPL-3.0-or-later
// vortel2-editor-count CASE FRAMES: the whole editor in memory runs frames, for an instruction counter. Two lengths
// subtracted leave the cost of the frames alone; those of the "fill" cases are what painting is held against.
// vortel2-editor-count --list names the cases.
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/views/TViewWindow.h"
#include "framework/gui/windows/TDesktop.h"
#include "platform/linux/TXdgFolders.h"
#include "tools/vortel2/editor/TMemoryEditor.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr TRectT<int> kEditor{0, 0, 962, 595};
constexpr TRectT<int> kMatrix{166, 142, 783, 278};
constexpr int kMostBeats = 8;
constexpr int kMostSteps = 8;

class TScene {
public:
	TScene() : mEditor(mInstance, {}) {
		mEditor.Open();
		for (int tick = 0; tick < 20; ++tick)
			Tick();
	}

	void Tick() {
		mEditor.Advance(10);
		mEditor.Tick();
	}

	void Invalidate() {
		mEditor.AsGui([] { TDesktop::Instance()->OpenWindows()[0]->Invalidate(); });
	}

	/// A row full of short blocks in the largest grid, and one that is held.
	void BeginDrag() {
		mInstance.WithDocument([](TVortelDocument& document) {
			TVortelSequencer& sequencer = *document.ActiveSequencer();
			sequencer.NumBeats().Set(kMostBeats);
			sequencer.NumStepsPerBeat().Set(kMostSteps);
			for (int row = 0; row < TVortelDocument::kNumberOfDevices; ++row)
				for (int step = row % 2; step < kMostBeats * kMostSteps; step += 2)
					sequencer.Sequence(row).SetStep(step, kStepBlockStart);
			document.SequenceChangedBang().Bang();
		});
		Tick();
		MoveTo(0);
		mEditor.AsGui([this] { mEditor.Platform().Press(TMouseButton::kLeft); });
		Tick();
	}

	void MoveTo(int column) {
		const TPointT<int> point{kMatrix.mLeft + column * 12 + 6, kMatrix.mTop + 12};
		mEditor.AsGui([&] { mEditor.Platform().MovePointer(mEditor.OnScreen(point)); });
	}

	static void Fill(const TRectT<int>& rect, int frames) {
		const TPtr<TSurface> surface = TGraphPort::Instance()->CreateSurface({kEditor.mWidth, kEditor.mHeight}, 0, {});
		for (int frame = 0; frame < frames; ++frame)
			surface->FillRect(rect, TColor{static_cast<uint8_t>(frame & 0xFF), 0, 0}, 1.0f);
	}

	template <class TWork>
	void AsGui(const TWork& work) {
		mEditor.AsGui(work);
	}

private:
	TInstance mInstance;
	TMemoryEditor mEditor;
};

struct TCase {
	const char* mName;
	void (*mRun)(TScene& scene, int frames);
};

constexpr std::array<TCase, 5> kCases{{
    {"idle",
     [](TScene& scene, int frames) {
	     for (int frame = 0; frame < frames; ++frame)
		     scene.Tick();
     }},
    {"repaint",
     [](TScene& scene, int frames) {
	     for (int frame = 0; frame < frames; ++frame) {
		     scene.Invalidate();
		     scene.Tick();
	     }
     }},
    {"repaint-fill", [](TScene& scene, int frames) { scene.AsGui([&] { TScene::Fill(kEditor, frames); }); }},
    {"drag-64-columns",
     [](TScene& scene, int frames) {
	     scene.BeginDrag();
	     for (int frame = 0; frame < frames; ++frame) {
		     scene.MoveTo(8 + frame % 32);
		     scene.Tick();
	     }
     }},
    {"drag-fill", [](TScene& scene, int frames) { scene.AsGui([&] { TScene::Fill(kMatrix, frames); }); }},
}};

} // namespace

int main(int count, char** arguments) {
	const TXdgFolders folders;
	Folders::UseSystem(&folders);
	Folders::UseResources(TDirectory(VORTEL_RESOURCES));
	TLog::SetEchoToConsole(false);
	if (count == 2 && arguments[1] == std::string_view("--list")) {
		for (const TCase& each : kCases)
			std::puts(each.mName);
		return 0;
	}
	for (const TCase& each : kCases)
		if (count == 3 && arguments[1] == std::string_view(each.mName)) {
			TScene scene;
			each.mRun(scene, std::atoi(arguments[2]));
			return 0;
		}
	std::fprintf(stderr, "usage: %s CASE FRAMES | --list\n", arguments[0]);
	return 2;
}
