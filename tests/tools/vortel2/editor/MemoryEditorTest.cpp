// SPDX-License-Identifier: GPL-3.0-or-later
// What scripts cannot say: the editor of an instance in this process, on a screen in memory.

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TLog.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"
#include "tools/vortel2/editor/TMemoryEditor.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <malloc.h>

namespace {

class MemoryEditorTest : public testing::Test {
protected:
	void SetUp() override {
		Folders::UseSystem(&mSystem);
		Folders::UseResources(TDirectory(VORTEL2_PROGRAM ".res"));
		TLog::SetEchoToConsole(false);
		TProgramInstance::SetUsesPreferences(true);
		mpInstance.emplace();
		mpEditor.emplace(*mpInstance, TMemoryEditor::TSetup());
		mpEditor->Open();
		mpEditor->Tick();
	}

	void TearDown() override {
		mpEditor.reset();
		mpInstance.reset();
		TProgramInstance::SetUsesPreferences(false);
		Folders::UseSystem(nullptr);
	}

	std::string NameOfProgram() {
		return mpInstance->WithDocument(
		    [](TVortelDocument& document) { return std::string(document.ActiveProgram()->Name().Get().CString()); });
	}

	void SetName(const char* name) {
		mpInstance->WithDocument([&](TVortelDocument& document) { document.ActiveProgram()->Name().Set(name); });
	}

	void SelectProgram(int32_t program) {
		mpInstance->Shell().SetCurrentProgramFromHost(program);
		mpEditor->Tick();
	}

	void Click(TPointT<int> point) {
		mpEditor->AsGui([&] {
			mpEditor->Platform().MovePointer(mpEditor->OnScreen(point));
			mpEditor->Platform().Press(TMouseButton::kLeft);
			mpEditor->Platform().Release(TMouseButton::kLeft);
		});
		mpEditor->Tick();
	}

	void Key(int code) {
		mpEditor->AsGui([&] {
			mpEditor->Platform().KeyDown(code);
			mpEditor->Platform().KeyUp(code);
		});
		mpEditor->Tick();
	}

	/// Drags files over the editor and drops them; whether they are taken.
	bool Drop(const TList<TString>& paths) {
		const bool isTaken = mpEditor->AsGui([&] {
			TWindowGlueClient& client = mpEditor->Platform().Windows()[0]->Client();
			if (!client.OnGlueFilesDragged({100, 100}, paths))
				return false;
			client.OnGlueFilesDropped({100, 100}, paths);
			return true;
		});
		mpEditor->Tick();
		return isTaken;
	}

	std::size_t NumberOfWindows() const { return mpEditor->Platform().Windows().size(); }

	static constexpr TPointT<int> kLogo{80, 40};
	static constexpr TPointT<int> kPencil{569, 52};
	static constexpr TPointT<int> kFileButton{207, 52};

	TTemporaryFolder mFolder;
	THeadlessFolders mSystem{mFolder.Directory()};
	std::optional<TInstance> mpInstance;
	std::optional<TMemoryEditor> mpEditor;
};

TEST_F(MemoryEditorTest, OneFileOfOursIsTakenWhenItIsDropped) {
	const TString program = mFolder.Path("mine.v2prg");
	const TString bank = mFolder.Path("mine.V2BNK");
	SetName("Dropped");
	mpInstance->WithDocument([&](TVortelDocument& document) {
		document.ActiveSequencer()->Sequence(1).SetStep(0, kStepBlockStart); // banks leave empty programs out
		document.SaveProgram(program);
		document.SaveBank(bank);
	});
	SelectProgram(2);
	EXPECT_TRUE(Drop({program}));
	EXPECT_EQ(NameOfProgram(), "Dropped");
	SelectProgram(0);
	SetName("Changed");
	SelectProgram(2);
	EXPECT_TRUE(Drop({bank}));
	EXPECT_EQ(NameOfProgram(), "Dropped") << "at its first program, as it was saved";
	SelectProgram(2);
	EXPECT_EQ(NameOfProgram(), "Init");

	EXPECT_FALSE(Drop({program, bank}));
	EXPECT_FALSE(Drop({mFolder.Path("song.mid")}));
	EXPECT_TRUE(Drop({mFolder.Path("gone.v2prg")}));
	EXPECT_EQ(NameOfProgram(), "Init");
}

TEST_F(MemoryEditorTest, ALoadClosesMenusAndWaitsForDialogs) {
	const TString program = mFolder.Path("mine.v2prg");
	SetName("Loaded");
	mpInstance->WithDocument([&](TVortelDocument& document) { document.SaveProgram(program); });
	SelectProgram(1);
	Click(kFileButton);
	ASSERT_EQ(NumberOfWindows(), 2u);
	EXPECT_TRUE(Drop({program}));
	EXPECT_EQ(NumberOfWindows(), 1u);
	EXPECT_EQ(NameOfProgram(), "Loaded");

	// A dialog keeps files out as it does the mouse.
	bool isTaken = true;
	mpEditor->Platform().SetOnWait([&] {
		isTaken = mpEditor->Platform().Windows()[0]->Client().OnGlueFilesDragged({100, 100}, {program});
		return false;
	});
	Click(kLogo);
	EXPECT_FALSE(isTaken);
}

TEST_F(MemoryEditorTest, AProgramChangeDuringARenameRenamesTheProgramThatIsThereThen) {
	Click(kPencil);
	mpEditor->AsGui([&] { mpEditor->Platform().Type("New"); });
	mpEditor->Tick();
	SelectProgram(1);
	Key(kKeyReturn);
	const std::string name = NameOfProgram();
	SelectProgram(0);
	EXPECT_TRUE((name == "New") != (NameOfProgram() == "New")) << "one of the two, not both";
}

/// VORTEL_EDITOR_ROUNDS says how many (20).
TEST_F(MemoryEditorTest, OpeningAndClosingLeavesNothingBehind) {
	const auto numberOfHandles = [] {
		const std::filesystem::directory_iterator handles("/proc/self/fd");
		return std::distance(begin(handles), end(handles));
	};
	const auto round = [&] {
		mpEditor->Close();
		mpEditor->Tick();
		mpEditor->Open();
		mpEditor->Tick();
		Click(kFileButton);
		mpEditor->Tick();
	};
	for (int warm = 0; warm < 5; ++warm)
		round();
	const auto handles = numberOfHandles();
	const auto memory = static_cast<int64_t>(mallinfo2().uordblks);
	const char* wanted = std::getenv("VORTEL_EDITOR_ROUNDS");
	const int rounds = wanted ? std::atoi(wanted) : 20;
	for (int number = 0; number < rounds; ++number)
		round();
	EXPECT_EQ(numberOfHandles(), handles);
	const int64_t growth = static_cast<int64_t>(mallinfo2().uordblks) - memory;
	EXPECT_LT(growth, 16384) << "in " << rounds << " rounds";
	RecordProperty("growth", std::to_string(growth));
}

} // namespace
