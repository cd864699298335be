// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include "tools/vortel2/sound/TSoundFile.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <random>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;

fs::path MakeFolder() {
	std::string name = (fs::temp_directory_path() / "vortel2-test-XXXXXX").string();
	if (!mkdtemp(name.data()))
		throw std::runtime_error("no folder for the test");
	return name;
}

std::string ReadAll(const fs::path& path) {
	std::ifstream file(path, std::ios::binary);
	return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

bool TRunResult::HasOneErrorLine() const {
	return mErrors.starts_with("vortel2: ") && std::count(mErrors.begin(), mErrors.end(), '\n') == 1 &&
	       mErrors.ends_with('\n');
}

TVortel2Test::TVortel2Test() : mFolder(MakeFolder() / "work") {
	fs::create_directory(mFolder);
	setenv("XDG_STATE_HOME", mFolder.parent_path().c_str(), 1);
}

TVortel2Test::~TVortel2Test() {
	fs::remove_all(mFolder.parent_path());
}

TRunResult TVortel2Test::Run(const TArguments& arguments) const {
	TArguments words{"sh", "-c", "cd \"$0\" && exec \"$@\"", mFolder.string(), VORTEL2_PROGRAM};
	words.insert(words.end(), arguments.begin(), arguments.end());
	std::vector<char*> pointers;
	for (std::string& word : words)
		pointers.push_back(word.data());
	pointers.push_back(nullptr);

	const fs::path out = mFolder.parent_path() / "stdout";
	const fs::path err = mFolder.parent_path() / "stderr";
	posix_spawn_file_actions_t files;
	posix_spawn_file_actions_init(&files);
	posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
	posix_spawn_file_actions_addopen(&files, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
	posix_spawn_file_actions_addopen(&files, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
	pid_t child = 0;
	const bool isRunning = posix_spawn(&child, "/bin/sh", &files, nullptr, pointers.data(), environ) == 0;
	posix_spawn_file_actions_destroy(&files);
	int status = -1;
	if (isRunning)
		waitpid(child, &status, 0);
	return {isRunning && WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(out), ReadAll(err)};
}

TRunResult TVortel2Test::RunInShell(const std::string& line) const {
	const fs::path script = mFolder.parent_path() / "script";
	std::ofstream(script) << "cd '" << mFolder.string() << "'\n" << line << "\n";
	const fs::path out = mFolder.parent_path() / "stdout";
	const fs::path err = mFolder.parent_path() / "stderr";
	const std::string command =
	    "sh -c '. \"$1\"' " VORTEL2_PROGRAM " " + script.string() + " >" + out.string() + " 2>" + err.string();
	const int status = std::system(command.c_str());
	return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(out), ReadAll(err)};
}

std::string TVortel2Test::Render(const std::string& name, const TArguments& arguments) const {
	TArguments words{"render", "in.wav", name};
	words.insert(words.end(), arguments.begin(), arguments.end());
	const TRunResult result = Run(words);
	EXPECT_EQ(result.mStatus, 0) << result.mErrors;
	EXPECT_EQ(result.mOutput, "");
	return Bytes(name);
}

void TVortel2Test::WriteWav(const std::string& name, const TStereoSound& sound) const {
	TSoundFileWriter writer(Path(name), sound.mSampleRate, ESampleFormat::kFloat, 0);
	writer.Write(sound.mLeft, sound.mRight);
	writer.Commit();
}

TStereoSound TVortel2Test::ReadSound(const std::string& name) const {
	TSoundFileReader reader(Path(name));
	const auto frames = static_cast<std::size_t>(reader.Frames());
	TStereoSound sound{reader.SampleRate(), std::vector<float>(frames), std::vector<float>(frames)};
	EXPECT_EQ(reader.Read(sound.mLeft, sound.mRight), frames);
	return sound;
}

std::string TVortel2Test::Bytes(const std::string& name) const {
	return ReadAll(mFolder / name);
}

void TVortel2Test::WriteBytes(const std::string& name, const std::string& bytes) const {
	std::ofstream(mFolder / name, std::ios::binary) << bytes;
}

std::vector<std::string> TVortel2Test::Files() const {
	std::vector<std::string> names;
	for (const auto& entry : fs::directory_iterator(mFolder))
		names.push_back(entry.path().filename().string());
	std::sort(names.begin(), names.end());
	return names;
}

TStereoSound TVortel2Test::Noise(std::size_t frames, int32_t sampleRate) {
	std::mt19937 random(7);
	TStereoSound sound{sampleRate, {}, {}};
	for (std::size_t i = 0; i < frames; ++i) {
		sound.mLeft.push_back(static_cast<float>(random()) / 2e9f - 1.0f);
		sound.mRight.push_back(static_cast<float>(random()) / 2e9f - 1.0f);
	}
	return sound;
}
