// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/TProgramInstance.h"

#include "framework/foundation/files/TLog.h"
#include "plugin/CreatePluginShell.h"
#include "tests/plugin/TInstanceDriver.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TTemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

std::vector<float> Render(TProgramInstance& instance, unsigned int seed) {
	TInstanceDriver driver(instance, seed);
	driver.FillScenes();
	std::vector<float> output;
	for (int i = 0; i < 400; ++i) {
		driver.Block();
		output.insert(output.end(), driver.Left().begin(), driver.Left().end());
	}
	return output;
}

} // namespace

TEST(TProgramInstanceTest, FreshInstanceHoldsNothingOfItsSurroundings) {
	const auto instance = TProgramInstance::Create();
	instance->Shell().AsGui([&] {
		TVortelDocument& document = instance->Document();
		for (int32_t program = 0; program < 16; ++program) {
			EXPECT_EQ(document.ProgramName(program), "Init");
			EXPECT_TRUE(document.Program(program)->IsInitialized());
		}
		EXPECT_EQ(document.CurrentProgramIndex(), 0);
		EXPECT_EQ(document.ActiveScene(), document.Program(0)->Scene(0));
	});
}

TEST(TProgramInstanceTest, AnIdleInstancePassesSoundUnchanged) {
	const auto instance = TProgramInstance::Create();
	TInstanceDriver driver(*instance, 5);
	TParkMillerPRNG random;
	random.SetSeed(5);
	for (int block = 0; block < 20; ++block) {
		driver.Block();
		for (float sample : driver.Left()) {
			ASSERT_EQ(sample, static_cast<float>(random.NextDouble() - 0.5));
			random.NextInt();
		}
	}
}

TEST(TProgramInstanceTest, InstancesOutliveEachOtherInAnyOrder) {
	auto first = TProgramInstance::Create();
	auto second = TProgramInstance::Create();
	EXPECT_NE(first->Shell().StorageId(), second->Shell().StorageId());
	const std::vector<float> expected = Render(*first, 3);
	first = nullptr;
	EXPECT_EQ(Render(*second, 3), expected);
	first = TProgramInstance::Create();
	second = nullptr;
	EXPECT_EQ(Render(*first, 3), expected);
}

TEST(TProgramInstanceTest, InstancesOnManyThreadsDoNotDisturbEachOther) {
	std::vector<float> expected;
	{
		const auto alone = TProgramInstance::Create();
		expected = Render(*alone, 3);
	}
	std::vector<std::vector<float>> outputs(3);
	std::vector<std::thread> threads;
	for (std::vector<float>& output : outputs)
		threads.emplace_back([&output] {
			const auto instance = TProgramInstance::Create();
			output = Render(*instance, 3);
		});
	for (std::thread& thread : threads)
		thread.join();
	for (const std::vector<float>& output : outputs)
		EXPECT_EQ(output, expected);
}

using TCreatePluginShellTest = TFrameworkFixture;

TEST_F(TCreatePluginShellTest, FailureGivesNullAndLeavesTheWayOpen) {
	EXPECT_EQ(CreatePluginShell(99, nullptr), nullptr);
	TAudioPluginShell* shell = CreatePluginShell(kProgramHost, nullptr);
	ASSERT_NE(shell, nullptr);
	EXPECT_EQ(shell->ReferenceCount(), 1);
	ReleasePluginShell(shell);
}

TEST_F(TCreatePluginShellTest, LogTellsOfApiAndInstances) {
	const TTemporaryFolder folder;
	TLog::Drop();
	TLog::SetDirectory(folder.Directory());
	TAudioPluginShell* first = CreatePluginShell(kProgramHost, nullptr);
	TAudioPluginShell* second = CreatePluginShell(kProgramHost, nullptr);
	ReleasePluginShell(first);
	ReleasePluginShell(second);
	CreatePluginShell(99, nullptr);
	TLog::Drop();
	std::stringstream text;
	for (const auto& file : std::filesystem::directory_iterator(folder.PathOf("")))
		text << std::ifstream(file.path()).rdbuf();

	std::string events;
	for (std::string line; std::getline(text, line);) {
		const std::pair<const char*, const char*> kinds[]{
		    {"Vortel: Initializing the API...", "I"},
		    {"Vortel: Creating plugin shell instance...", "C"},
		    {"Vortel: Releasing plugin shell instance...", "R"},
		    {"Vortel: Creating the plugin GUI FAILED (There is no adapter", "F"},
		    {"Vortel: Finalizing the API...", "Z"}};
		for (const auto& [start, kind] : kinds)
			if (line.find(start) != std::string::npos)
				events += kind;
	}
	EXPECT_EQ(events, "ICCRRZICFZ");
}
