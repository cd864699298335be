// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include "framework/foundation/files/TStream.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"
#include "tests/support/TTestLocale.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

std::vector<std::string> sDialogs;

std::string TextOf(const TStream& stream) {
	return {reinterpret_cast<const char*>(stream.Bytes().data()), stream.Bytes().size()};
}

TStream StreamOf(const std::string& text) {
	return TStream(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
	const std::size_t at = text.find(from);
	ASSERT_NE(at, std::string::npos) << from;
	text.replace(at, from.size(), to);
}

class TVortelDocumentFilesTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		sDialogs.clear();
		TSystemGlobals::Instance()->SetMessageDialogFunction(
		    [](const TString&, const TString& text, TMessageKind) { sDialogs.emplace_back(text.CString()); });
		mpDocument = NewDocument();
	}

	void TearDown() override {
		mpDocument = nullptr;
		TFrameworkFixture::TearDown();
	}

	static TPtr<TVortelDocument> NewDocument() { return MakePtr<TVortelDocument>(); }

	/// Any bank that a user could make.
	void FillAtRandom(uint32_t seed, int scenesPerProgram) {
		std::mt19937 random(seed);
		const auto upTo = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
		for (int32_t p = 0; p < TVortelDocument::kNumberOfPrograms; ++p) {
			TVortelProgram& program = *mpDocument->Program(p);
			program.Name().Set(TString("Name ") + TString::ToString(static_cast<int>(random() % 1000)));
			program.QuantizeFactor().Set(upTo(4));
			program.TriggerMode().Set(upTo(3));
			program.MasterMix().Set(static_cast<float>(random()) * 2.3e-10f);
			program.SoftClip().Set(upTo(2) == 1);
			program.ActiveSceneIndex().Set(upTo(128));
			program.RandomizeDeviceOrder();
			for (int i = 0; i < scenesPerProgram; ++i) {
				TVortelScene& scene = *program.Scene(i * 9 % TVortelProgram::kNumberOfScenes);
				for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
					scene.SetParameterValue(id, static_cast<float>(random()) * 2.3283064e-10f);
				scene.Seed().Set(static_cast<int>(random() % 2147483647u));
				for (int32_t step = 0; step < TVortelScene::kNumberOfGaterSteps; ++step)
					scene.SetGaterStep(step, static_cast<float>(random()) * 2.3283064e-10f);
				scene.Sequencer()->NumBeats().Set(1 + upTo(8));
				scene.Sequencer()->LoopEnabled().Set(upTo(2) == 1);
				for (int32_t row = 0; row < TVortelDocument::kNumberOfDevices; ++row)
					for (int32_t step = 0; step < TVortelSequence::kNumberOfSteps; ++step)
						scene.Sequencer()->Sequence(row).SetStep(step, static_cast<uint8_t>(upTo(3)));
			}
		}
		mpDocument->ActiveProgramIndex().Set(upTo(16));
	}

	static TStream Saved(TVortelDocument& document) {
		TStream stream;
		document.SaveToStream(stream, false);
		return stream;
	}

	static std::string Chunk(TVortelDocument& document) {
		TStream stream;
		document.SaveBankChunk(stream);
		return TextOf(stream);
	}

	TPtr<TVortelDocument> mpDocument;
	TTemporaryFolder mFolder;
};

} // namespace

TEST_F(TVortelDocumentFilesTest, FreshBankHoldsNothingAndAProgramItsMembers) {
	ASSERT_TRUE(mpDocument->SaveBank(mFolder.Path("a.v2bnk")));
	EXPECT_EQ(
	    mFolder.Read("a.v2bnk"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VortelDocument doc_version=\"3\">\n"
	                             "  <ActiveProgramIndex>0</ActiveProgramIndex>\n</VortelDocument>\n");
	mpDocument->ActiveScene()->Sequencer()->Sequence(3).FromString("*++");
	ASSERT_TRUE(mpDocument->SaveProgram(mFolder.Path("a.v2prg")));
	const std::string text = mFolder.Read("a.v2prg");
	EXPECT_THAT(
	    text, testing::StartsWith(
	              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VortelProgram doc_version=\"3\">\n  <Name>Init</Name>\n"
	              "  <QuantizeFactor>0</QuantizeFactor>\n  <TriggerMode>0</TriggerMode>\n  <MasterMix>1.0</MasterMix>\n"
	              "  <MasterPanning>0.5</MasterPanning>\n  <MasterVolume>0.5</MasterVolume>\n"
	              "  <DeviceOrder>0 1 2 3 4 5 6 7 8 9 10</DeviceOrder>\n  <ActiveSceneIndex>0</ActiveSceneIndex>\n"
	              "  <SoftClip>false</SoftClip>\n  <Scene0>\n    <ParameterValues>"));
	EXPECT_THAT(
	    text,
	    testing::EndsWith(
	        "    <Sequencer>\n      <NumBeats>4</NumBeats>\n      <NumStepsPerBeat>4</NumStepsPerBeat>\n"
	        "      <LoopEnabled>true</LoopEnabled>\n      <Sequence3>*++" +
	        std::string(61, '-') +
	        "</Sequence3>\n    </Sequencer>\n    <Seed>31337</Seed>\n    <GaterVolumeSteps>1.0 0.0 1.0 0.0 1.0 0.0 "
	        "1.0 0.0 1.0 0.0 1.0 0.0 1.0 0.0 1.0 0.0</GaterVolumeSteps>\n  </Scene0>\n</VortelProgram>\n"));
	EXPECT_THAT(Chunk(*mpDocument), testing::HasSubstr("<Sequence4/>")) << "chunks hold empty rows too";
	EXPECT_TRUE(sDialogs.empty());
}

// The number of banks can be raised for a long run.
TEST_F(TVortelDocumentFilesTest, RandomBanksComeBackAsTheyWere) {
	const char* wanted = std::getenv("VORTEL_RANDOM_BANKS");
	const int count = wanted ? std::atoi(wanted) : 60;
	const TPtr<TVortelDocument> other = NewDocument();
	for (int i = 0; i < count; ++i) {
		mpDocument->InitAllPrograms();
		FillAtRandom(static_cast<uint32_t>(i), 1 + i % 3);
		const TStream saved = Saved(*mpDocument);
		other->LoadBankChunk(saved);
		for (int32_t p = 0; p < TVortelDocument::kNumberOfPrograms; ++p) {
			for (int32_t s = 0; s < TVortelProgram::kNumberOfScenes; ++s) {
				const TVortelScene& a = *mpDocument->Program(p)->Scene(s);
				const TVortelScene& b = *other->Program(p)->Scene(s);
				for (int32_t id = 0; a.HasContent() && id < TVortelDocument::kNumberOfParameters; ++id)
					ASSERT_EQ(a.ParameterValue(id), b.ParameterValue(id)) << i << ' ' << p << ' ' << s << ' ' << id;
			}
		}
		ASSERT_EQ(TextOf(saved), TextOf(Saved(*other))) << i;
	}
}

TEST_F(TVortelDocumentFilesTest, FilesAreTheSameInEveryLocale) {
	FillAtRandom(8, 2);
	mpDocument->Program(1)->Name().Set(TString("\xC4\xB0\x69I\xC4\xB1 \xC3\xA4,5", kUtf8Encoding));
	std::string first;
	for (const char* name : {"C", "de_DE.UTF-8", "tr_TR.UTF-8"}) {
		const TTestLocale locale(name);
		const TPtr<TVortelDocument> other = NewDocument();
		ASSERT_TRUE(mpDocument->SaveBank(mFolder.Path("a.v2bnk")));
		ASSERT_TRUE(other->LoadBank(mFolder.Path("a.v2bnk")));
		ASSERT_TRUE(other->SaveBank(mFolder.Path("b.v2bnk")));
		EXPECT_EQ(mFolder.Read("a.v2bnk"), mFolder.Read("b.v2bnk")) << name;
		first = first.empty() ? mFolder.Read("a.v2bnk") : first;
		EXPECT_EQ(mFolder.Read("b.v2bnk"), first) << name;
		EXPECT_EQ(other->Program(1)->Name().Get(), mpDocument->Program(1)->Name().Get());
	}
}

TEST_F(TVortelDocumentFilesTest, ProgramChunkReplacesTheActiveProgramOnly) {
	FillAtRandom(3, 2);
	TStream stream;
	mpDocument->SaveProgramChunk(stream);
	const TPtr<TVortelDocument> other = NewDocument();
	other->ActiveProgramIndex().Set(7);
	const std::string before = other->Program(6)->Name().Get().CString();
	other->LoadProgramChunk(stream);
	EXPECT_EQ(other->Program(7)->Name().Get(), mpDocument->ActiveProgram()->Name().Get());
	EXPECT_EQ(other->Program(6)->Name().Get().CString(), before);
	EXPECT_EQ(other->ActiveScene(), other->Program(7)->ActiveScene());
}

TEST_F(TVortelDocumentFilesTest, ScenesThatAFileLeavesOutStartFromTheirOwnInit) {
	mpDocument->LoadBankChunk(
	    StreamOf("\n <VortelDocument doc_version=\"3\"><Program2><Name>n</Name><SoftClip>YES</SoftClip></Program2>"
	             "</VortelDocument>"));
	EXPECT_EQ(mpDocument->Program(2)->Scene(5)->Seed().Get(), 31337);
	EXPECT_TRUE(mpDocument->Program(2)->SoftClip().Get());
	EXPECT_EQ(mpDocument->Program(2)->Name().Get(), TString("n"));
}

TEST_F(TVortelDocumentFilesTest, OldVersionsAreBroughtUpToDate) {
	FillAtRandom(5, 2);
	std::string text = Chunk(*mpDocument);
	const auto value = [](const TVortelDocument& document, int32_t id) {
		return document.Program(4)->Scene(9)->ParameterValue(id);
	};
	const TPtr<TVortelDocument> other = NewDocument();
	const auto loadAs = [&](const char* version) {
		std::string old = text;
		Replace(old, "doc_version=\"3\"", version);
		other->LoadBankChunk(StreamOf(old));
	};
	loadAs("doc_version=\"2\"");
	EXPECT_EQ(value(*other, 103), TVortelParameterTable::Defaults()[103]);
	EXPECT_EQ(value(*other, 195), value(*mpDocument, 195));
	// A beat time keeps its real value in the wider range: 2^(6v) = 2^(7w - 1).
	EXPECT_NEAR(value(*other, 37), (value(*mpDocument, 37) * 6.0f + 1.0f) / 7.0f, 1e-6f);
	EXPECT_NEAR(value(*other, 77), (value(*mpDocument, 77) * 6.0f + 2.0f) / 8.0f, 1e-6f);
	EXPECT_NE(value(*other, 17), value(*mpDocument, 17));

	loadAs("doc_version=\"1\"");
	for (int32_t id = 190; id <= 203; ++id)
		EXPECT_EQ(value(*other, id), TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)]);
	EXPECT_EQ(value(*other, 23), value(*mpDocument, 23));
	EXPECT_EQ(other->Program(4)->DeviceOrder().Count(), 11) << "twelve entries are damage, and repaired";
	loadAs("");
	EXPECT_EQ(value(*other, 23), TVortelParameterTable::Defaults()[23]);
	EXPECT_EQ(value(*other, 160), TVortelParameterTable::Defaults()[160]);

	mpDocument->LoadProgramChunk(
	    StreamOf("<VortelProgram doc_version=\"1\"><DeviceOrder>0 2 1 3 4 5 6 7 8 9</DeviceOrder></VortelProgram>"));
	EXPECT_EQ(mpDocument->ActiveProgram()->DeviceAtPosition(1), 2) << "ten entries are a file of their time";
	EXPECT_EQ(mpDocument->ActiveProgram()->DeviceAtPosition(10), 10);
}

TEST_F(TVortelDocumentFilesTest, FailedLoadsSaySoAndKeepWhatTheyCan) {
	FillAtRandom(6, 1);
	const std::string before = Chunk(*mpDocument);
	mFolder.Write("broken.v2prg", "<VortelProgram><Name>x</Name>");
	mFolder.Write("newer.v2prg", "<VortelProgram doc_version=\"4\"/>");
	mFolder.Write("bank.v2bnk", "<VortelDocument/>");
	for (const char* name : {"broken.v2prg", "newer.v2prg", "bank.v2bnk", ""})
		EXPECT_FALSE(mpDocument->LoadProgram(mFolder.Path(name)));
	ASSERT_EQ(sDialogs.size(), 4u);
	EXPECT_THAT(sDialogs[0], testing::StartsWith("Loading failed with the error:\n'Failed to parse the XML file '"));
	EXPECT_THAT(sDialogs[1], testing::HasSubstr("incompatible, more recent version of Vortel2."));
	EXPECT_THAT(sDialogs[2], testing::HasSubstr("Expected a 'VortelProgram' root node, but found a 'VortelDocument'"));
	mpDocument->LoadProgramChunk(StreamOf("<VortelProgram>"));
	EXPECT_EQ(Chunk(*mpDocument), before);
	EXPECT_FALSE(mpDocument->LoadBank(mFolder.Path("none.v2bnk")));
	EXPECT_FALSE(mpDocument->SaveBank(""));
	EXPECT_EQ(sDialogs.size(), 4u);
	EXPECT_FALSE(mpDocument->SaveBank(mFolder.Path("none/a.v2bnk")));
	EXPECT_THAT(sDialogs.back(), testing::StartsWith("Saving failed with the error:\n'Failed to write the XML file '"));

	mpDocument->LoadBankChunk(StreamOf("<VortelDocument><ActiveProgramIndex>99</ActiveProgramIndex><Program3>"));
	EXPECT_TRUE(mpDocument->Program(3)->IsInitialized()) << "a bank starts from nothing";
	mpDocument->LoadBankChunk(StreamOf(
	    "<VortelDocument doc_version=\"3\"><ActiveProgramIndex>99</ActiveProgramIndex><Program15><ActiveSceneIndex>-7"
	    "</ActiveSceneIndex><DeviceOrder>0 1 "
	    "1</DeviceOrder><TriggerMode>8</TriggerMode></Program15></VortelDocument>"));
	EXPECT_EQ(mpDocument->ActiveProgram(), mpDocument->Program(15));
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(15)->Scene(0));
	EXPECT_EQ(mpDocument->ActiveProgram()->DeviceAtPosition(10), 10);
	EXPECT_EQ(mpDocument->ActiveProgram()->TriggerMode().Get(), kTriggerLatch);
}

// Cut anywhere, scrambled, or something else altogether: the user reads why, and a bank is then one of init programs.
TEST_F(TVortelDocumentFilesTest, DamagedBanksLeaveInitProgramsAndAMessage) {
	FillAtRandom(9, 1);
	const TStream saved = Saved(*mpDocument);
	const std::string whole = TextOf(saved);
	std::vector<std::string> damaged{
	    "",
	    " \n",
	    "\x7F"
	    "ELF\x02\x01",
	    "<VortelDocument",
	    std::string(1 << 16, '\0'),
	    "\xFE\xFF"};
	for (std::size_t length = 1; length < whole.size() - 2; length += whole.size() / 40)
		damaged.push_back(whole.substr(0, length));
	for (const std::string& bytes : damaged) {
		mpDocument->LoadBankChunk(saved);
		mFolder.Write("a.v2bnk", bytes);
		sDialogs.clear();
		EXPECT_FALSE(mpDocument->LoadBank(mFolder.Path("a.v2bnk"))) << bytes.size();
		ASSERT_EQ(sDialogs.size(), 1u) << bytes.size();
		EXPECT_THAT(
		    sDialogs[0], testing::StartsWith("Loading failed with the error:\n'Failed to parse the XML file '"));
		for (int32_t p = 0; p < TVortelDocument::kNumberOfPrograms; ++p)
			EXPECT_TRUE(mpDocument->Program(p)->IsInitialized());
		EXPECT_FALSE(mpDocument->IsLoading());
	}

	std::filesystem::resize_file(mFolder.PathOf("a.v2bnk"), std::uintmax_t{1} << 32);
	EXPECT_FALSE(mpDocument->LoadBank(mFolder.Path("a.v2bnk")));
	EXPECT_THAT(sDialogs.back(), testing::HasSubstr("File too large"));
	mkfifo(mFolder.PathOf("pipe.v2bnk").c_str(), 0600);
	EXPECT_FALSE(mpDocument->LoadBank(mFolder.Path("pipe.v2bnk"))) << "waits for nobody";
	EXPECT_EQ(mFolder.Directory().ListFiles("*").Count(), 2) << "nothing half-written stays";
}

TEST_F(TVortelDocumentFilesTest, FilesOfOthersStayAsTheyAre) {
	constexpr uid_t kNobody = 65534;
	mFolder.Write("readable.v2bnk", "<VortelDocument/>");
	mFolder.Write("secret.v2bnk", "<VortelDocument/>");
	chmod(mFolder.PathOf("readable.v2bnk").c_str(), 0444);
	chmod(mFolder.PathOf("secret.v2bnk").c_str(), 0);
	chmod(mFolder.PathOf("").c_str(), 0555);
	const pid_t child = fork();
	if (child == 0) {
		EXPECT_TRUE(geteuid() != 0 || setuid(kNobody) == 0) << "nothing is forbidden to the first user";
		EXPECT_TRUE(mpDocument->LoadBank(mFolder.Path("readable.v2bnk")));
		EXPECT_FALSE(mpDocument->LoadBank(mFolder.Path("secret.v2bnk")));
		EXPECT_FALSE(mpDocument->SaveBank(mFolder.Path("readable.v2bnk")));
		EXPECT_FALSE(mpDocument->SaveProgram(mFolder.Path("new.v2prg")));
		EXPECT_THAT(sDialogs, testing::SizeIs(3));
		EXPECT_THAT(sDialogs, testing::Each(testing::EndsWith(" (Permission denied)!'.")));
		std::fflush(stdout);
		_exit(HasFailure());
	}
	int status = -1;
	waitpid(child, &status, 0);
	EXPECT_EQ(status, 0);
	EXPECT_THAT(mFolder.Names(), testing::ElementsAre("readable.v2bnk", "secret.v2bnk"));
	chmod(mFolder.PathOf("").c_str(), 0755);
}

TEST_F(TVortelDocumentFilesTest, OtherEncodingsAreRead) {
	const std::string body =
	    "<VortelProgram doc_version=\"3\"><Name>caf\xE9</Name><SoftClip>1</SoftClip></VortelProgram>";
	std::string wide = "\xFF\xFE";
	for (const char byte : body) {
		wide += byte;
		wide += '\0';
	}
	for (const std::string& bytes : {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + body, wide}) {
		mpDocument->InitProgram();
		mFolder.Write("a.v2prg", bytes);
		EXPECT_TRUE(mpDocument->LoadProgram(mFolder.Path("a.v2prg")));
		EXPECT_EQ(mpDocument->ActiveProgram()->Name().Get(), TString("caf\xC3\xA9", kUtf8Encoding));
		EXPECT_TRUE(mpDocument->ActiveProgram()->SoftClip().Get());
	}
}
