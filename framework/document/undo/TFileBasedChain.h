// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/undo/TManeuver.h"
#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <span>

/// Steps, one behind the other in a temporary file that is made when the first step comes and goes with the chain; in
/// memory remain only their places. Failures are told to the user here, and a step that cannot be written or read is
/// lost. Main thread.
class TFileBasedChain final : public TReferenceCountable {
public:
	struct TManeuverFileInfo {
		int64_t mOffset;
		int64_t mLength;
		TList<TString> mSideFiles;
		TString mName;
	};

	TFileBasedChain();
	~TFileBasedChain() override;

	int32_t Count() const noexcept { return mManeuverFileInfos.Count(); }

	const TString& NameAt(int32_t index) const noexcept { return mManeuverFileInfos[index].mName; }

	/// Null if it cannot be read.
	TPtr<TManeuver> Read(int32_t index);
	/// False if it is lost; what was stored before then stays readable. Throws TOutOfMemoryException.
	bool Append(const TManeuver& maneuver);
	/// For a step that continues the last one: its records begin with those stored there. As Append.
	bool ReplaceLast(const TManeuver& maneuver);
	/// Drops what lies behind, with its side files. The file is not shortened: its place is used again.
	void TruncateAfter(int32_t index);
	/// Drops everything, the file too.
	void Clear();

	/// A further file of the step that is stored next, deleted with it.
	void AddSideFile(const TString& path) { mSideFiles.Append(path); }

private:
	/// Runs it with the file open; reports what goes wrong.
	template <class TStore>
	bool Store(const TStore& store);
	bool OpenFile();
	bool CreateFile();
	int64_t EndOfLast() const noexcept;
	void SeekTo(int64_t position);
	void WriteAt(int64_t position, std::span<const uint8_t> bytes);

	TList<TManeuverFileInfo> mManeuverFileInfos; // in order
	TList<TString> mSideFiles;                   // of the step being stored
	TFile mFile;                                 // open from the first step on
	bool mFailureReported = false;               // that there is no file
	TDirectory mDirectory;
};
