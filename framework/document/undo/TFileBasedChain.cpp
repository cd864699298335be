// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TFileBasedChain.h"

#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

#include <cstddef>
#include <utility>

namespace {

void DeleteFiles(TList<TString>& paths) {
	for (const TString& path : paths)
		TFile(path).Delete();
	paths.Clear();
}

} // namespace

TFileBasedChain::TFileBasedChain() = default;

TFileBasedChain::~TFileBasedChain() {
	mFile.Close();
	if (!mDirectory.IsEmpty())
		mDirectory.Delete();
}

TPtr<TManeuver> TFileBasedChain::Read(int32_t index) {
	const TManeuverFileInfo& info = mManeuverFileInfos[index];
	try {
		auto maneuver = MakePtr<TManeuver>();
		maneuver->SetName(info.mName);
		SeekTo(info.mOffset);
		maneuver->Read(mFile);
		return mFile.Position() - info.mOffset == info.mLength ? maneuver : nullptr;
	} catch (const TReadableException& error) {
		ShowUserMessage(
		    TString::Format(
		        "There was an error while reading an undo action from disk. Undo/redo failed! (%s)", error.Message()),
		    kErrorMessage);
		return nullptr;
	}
}

bool TFileBasedChain::Append(const TManeuver& maneuver) {
	return Store([&] {
		TStream step;
		maneuver.Write(step);
		const int64_t offset = EndOfLast();
		WriteAt(offset, step.Bytes());
		mManeuverFileInfos.Append({offset, step.Size(), mSideFiles, maneuver.Name()});
	});
}

// The records of the old step come first in the new one too, as the same bytes; only their number differs. It is
// written last, so that the old step can still be read when there is no room for the rest.
bool TFileBasedChain::ReplaceLast(const TManeuver& maneuver) {
	if (Count() == 0)
		return Append(maneuver);
	return Store([&] {
		TManeuverFileInfo& last = mManeuverFileInfos[Count() - 1];
		TManeuverFileInfo info{last.mOffset, 0, last.mSideFiles, maneuver.Name()};
		for (const TString& path : mSideFiles)
			info.mSideFiles.Append(path);
		TStream step;
		maneuver.Write(step);
		info.mLength = step.Size();
		constexpr std::size_t kNumberSize = sizeof(int32_t);
		const std::span<const uint8_t> bytes = std::as_const(step).Bytes();
		WriteAt(info.mOffset + static_cast<int64_t>(kNumberSize), bytes.subspan(kNumberSize));
		WriteAt(info.mOffset, bytes.first(kNumberSize));
		last = std::move(info);
	});
}

template <class TStore>
bool TFileBasedChain::Store(const TStore& store) {
	try {
		const bool isOpen = OpenFile();
		if (isOpen)
			store();
		else
			DeleteFiles(mSideFiles);
		mSideFiles.Clear();
		return isOpen;
	} catch (const TOutOfMemoryException&) {
		DeleteFiles(mSideFiles);
		throw;
	} catch (const TReadableException& error) {
		DeleteFiles(mSideFiles);
		ShowUserMessage(
		    TString::Format("There was an error while writing an undo action to disk! (%s)", error.Message()),
		    kErrorMessage);
		return false;
	}
}

void TFileBasedChain::TruncateAfter(int32_t index) {
	while (Count() - 1 > index) {
		DeleteFiles(mManeuverFileInfos[Count() - 1].mSideFiles);
		mManeuverFileInfos.RemoveAt(Count() - 1);
	}
}

void TFileBasedChain::Clear() {
	TruncateAfter(-1);
	DeleteFiles(mSideFiles);
	if (mFile.IsOpen())
		mFile.Delete();
}

bool TFileBasedChain::OpenFile() {
	if (mFile.IsOpen() || CreateFile())
		return true;
	if (!std::exchange(mFailureReported, true))
		ShowUserMessage(
		    "Failed to create or access the system's temporary directory! Undo/Redo is disabled.", kErrorMessage);
	return false;
}

bool TFileBasedChain::CreateFile() {
	if (!mDirectory.Exists()) {
		const TDirectory directory = UniqueFolderName(Folders::Temporary());
		if (!directory.Create(true))
			return false;
		mDirectory = directory;
	}
	mFile.SetPath(UniqueFileName(mDirectory, ".tmp"));
	return mFile.Open(TFile::kReadWriteNew);
}

int64_t TFileBasedChain::EndOfLast() const noexcept {
	if (Count() == 0)
		return 0;
	const TManeuverFileInfo& last = mManeuverFileInfos[Count() - 1];
	return last.mOffset + last.mLength;
}

void TFileBasedChain::SeekTo(int64_t position) {
	if (!mFile.Seek(position))
		throw TReadableException("The place in the file cannot be reached.");
}

void TFileBasedChain::WriteAt(int64_t position, std::span<const uint8_t> bytes) {
	SeekTo(position);
	mFile.WriteAll(bytes.data(), static_cast<int64_t>(bytes.size()));
	mFile.Flush();
}
