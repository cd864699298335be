// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/TSoundFile.h"

#include "tests/tools/vortel2/RunVortel2.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class TSoundFileTest : public TVortel2Test {
protected:
	/// What comes back of these samples from a file of that format.
	std::vector<float> RoundTrip(ESampleFormat format, const std::vector<float>& samples) {
		TSoundFileWriter writer(Path("a.wav"), 44100, format, 0);
		writer.Write(samples, samples);
		writer.Commit();
		return ReadSound("a.wav").mRight;
	}
};

TEST_F(TSoundFileTest, FloatKeepsEverySample) {
	const std::vector<float> samples{0.0f, 1.0f, -7.25f, 1e-30f, 3e30f};
	EXPECT_EQ(RoundTrip(ESampleFormat::kFloat, samples), samples);
}

TEST_F(TSoundFileTest, IntegersRoundToTheNearestAndStopAtFullScale) {
	const float step = 1.0f / 32768.0f;
	EXPECT_EQ(
	    RoundTrip(
	        ESampleFormat::kPcm16, {0.4f * step, -0.4f * step, 0.6f * step, -1.5f * step, 1.0f, -1.0f, 9.0f, -9.0f,
	                                std::numeric_limits<float>::quiet_NaN()}),
	    (std::vector<float>{0.0f, 0.0f, step, -2.0f * step, 1.0f - step, -1.0f, 1.0f - step, -1.0f, 0.0f}));
	const float fine = 1.0f / 8388608.0f;
	EXPECT_EQ(
	    RoundTrip(ESampleFormat::kPcm24, {0.6f * fine, 12345.0f * fine, 2.0f}),
	    (std::vector<float>{fine, 12345.0f * fine, 1.0f - fine}));
}

TEST_F(TSoundFileTest, ReadsAcrossItsBuffersInAnySizes) {
	const TStereoSound sound = Noise(20000);
	WriteWav("a.wav", sound);
	TSoundFileReader reader(Path("a.wav"));
	std::vector<float> left(20000);
	std::vector<float> right(20000);
	std::size_t position = 0;
	for (std::size_t size = 1; position < left.size(); size = size * 3 + 1) {
		const std::size_t count = std::min(size, left.size() - position);
		ASSERT_EQ(reader.Read({&left[position], count}, {&right[position], count}), count);
		position += count;
	}
	EXPECT_EQ(left, sound.mLeft);
	EXPECT_EQ(right, sound.mRight);
	EXPECT_EQ(reader.Read(left, right), 0u);
}

TEST_F(TSoundFileTest, UnfinishedFileLeavesTheOldOneAlone) {
	WriteBytes("a.wav", "old");
	{
		TSoundFileWriter writer(Path("a.wav"), 44100, ESampleFormat::kFloat, 0);
		writer.Write(Noise().mLeft, Noise().mRight);
		EXPECT_EQ(Files().size(), 2u);
	}
	EXPECT_EQ(Bytes("a.wav"), "old");
	EXPECT_EQ(Files().size(), 1u);
}

TEST_F(TSoundFileTest, SignalRemovesTheUnfinishedFileAndEndsTheProgram) {
	const pid_t child = fork();
	if (child == 0) {
		TReplacedFile::HandleSignals();
		const TReplacedFile file(Path("a.wav"));
		raise(SIGTERM);
		_exit(0);
	}
	int status = 0;
	waitpid(child, &status, 0);
	EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
	EXPECT_TRUE(Files().empty());
}

TEST_F(TSoundFileTest, ReplacedFileKeepsModeAndLinks) {
	WriteBytes("real.wav", "old");
	chmod(Path("real.wav").c_str(), 0640);
	std::filesystem::create_symlink("real.wav", Path("link.wav"));
	WriteWav("link.wav", Noise(10));
	EXPECT_TRUE(std::filesystem::is_symlink(Path("link.wav")));
	EXPECT_EQ(ReadSound("real.wav").mLeft.size(), 10u);

	struct stat status {};

	stat(Path("real.wav").c_str(), &status);
	EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(TSoundFileTest, FileThatNoWavCanHoldFailsBeforeTheWork) {
	EXPECT_THROW(TSoundFileWriter(Path("a.wav"), 44100, ESampleFormat::kFloat, 600'000'000), TWorkError);
	EXPECT_NO_THROW(TSoundFileWriter(Path("a.wav"), 44100, ESampleFormat::kPcm16, 600'000'000));
	EXPECT_TRUE(Files().empty());
}

} // namespace
