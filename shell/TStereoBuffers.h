// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The buffers of one host block, as the engine takes them: stereo pairs, and in the engine's scale while it works. The
/// scaling happens in place, in the host's buffers, input and output, and is undone before the call returns; a buffer
/// that is input and output at once is scaled back once. Where a single pair has its inputs apart from its outputs, the
/// scaled input goes straight into the output, which saves the engine its copy and leaves the input alone. An output
/// may also lie on the other side's input: no side is lost.
///
/// Audio thread, but for the first two, which allocate. A missing buffer (null) is replaced: silence goes in, and what
/// comes out is dropped. In a block: SetInput and SetOutput for each pair, ScaleInputs, the engine, RestoreInputs, and
/// RestoreOutput for each pair that the host wants, all with the same number of samples.
class TStereoBuffers {
public:
	using TSides = std::array<float*, 2>;

	void SetCounts(std::size_t inputs, std::size_t outputs);
	/// The longest block that will come.
	void SetBlockSize(int32_t samples);

	/// isSilent: nothing but zeros, which need no scaling. Both sides may be one buffer.
	void SetInput(std::size_t index, float* left, float* right, bool isSilent) {
		mLeftInputs[index] = left ? left : mSilence.data();
		mRightInputs[index] = right ? right : mSilence.data();
		mInputStates[index] = isSilent ? EInput::kSilent : EInput::kPlain;
	}

	void SetOutput(std::size_t index, float* left, float* right) {
		mLeftOutputs[index] = left ? left : mDropped.data();
		mRightOutputs[index] = right ? right : mDropped.data() + mDropped.size() / 2;
	}

	void ScaleInputs(int32_t samples);
	void RestoreInputs(int32_t samples);
	/// Which sides are silent: left 1, right 2.
	uint32_t RestoreOutput(std::size_t index, int32_t samples);

	std::size_t NumberOfInputs() const { return mLeftInputs.size(); }

	std::size_t NumberOfOutputs() const { return mLeftOutputs.size(); }

	std::span<float* const> LeftInputs() const { return mLeftInputs; }

	std::span<float* const> RightInputs() const { return mRightInputs; }

	std::span<float* const> LeftOutputs() const { return mLeftOutputs; }

	std::span<float* const> RightOutputs() const { return mRightOutputs; }

	/// Left goes to its output first. Where that lies on the right input, right moves there ahead of it. Gives where
	/// the inputs are then. Any of the buffers may be null.
	static TSides ClearTheWay(const TSides& inputs, const TSides& outputs, int32_t samples);

private:
	enum class EInput : uint8_t { kPlain, kSilent, kScaled };

	bool IsInPlace() const;
	bool HasOutputsApart(int32_t samples) const;
	bool ScaleIntoOutputs(int32_t samples);
	bool IsRestored(const float* buffer) const;
	bool RestoreSide(float* buffer, int32_t samples) const;

	std::vector<float*> mLeftInputs; // one entry per pair
	std::vector<float*> mRightInputs;
	std::vector<float*> mLeftOutputs;
	std::vector<float*> mRightOutputs;
	std::vector<EInput> mInputStates;
	std::vector<float> mSilence;
	std::vector<float> mDropped;
};
