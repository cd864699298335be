// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TFrameworkMemory.h"
#include "framework/document/observables/TWeakPtr.h"
#include "framework/document/undo/TManeuver.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TStlAllocator.h"

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

class TDocumentNode;
class TDocumentRoot;
class TObservable;

/// Gathers what happens in a root's tree into the step that is open. A value gives one record, with its first state
/// before and its last state after; each event of a list or byte bag gives one of its own. Main thread.
///
/// Where memory runs out, the user is told and the step lacks that part; the change itself goes on. Nothing that the
/// capturing of a state does is recorded.
class TStepRecorder : public TFrameworkMemory<TStepRecorder> {
public:
	explicit TStepRecorder(TDocumentRoot& root);
	~TStepRecorder();
	TStepRecorder(const TStepRecorder&) = delete;
	TStepRecorder& operator=(const TStepRecorder&) = delete;

	/// From nothing, or on from the records of a step before.
	void Start(const TPtr<TManeuver>& continued = nullptr);
	/// The step; null if there is none. The next one starts from nothing. Throws TOutOfMemoryException.
	TPtr<TManeuver> Finish();

	bool HasRecords() const noexcept;

	/// Whether the step has a name.
	bool IsNamed() const noexcept;
	void SetName(const TString& name);

	/// Whether a change in the node is to be recorded: nothing that happens while a state is captured, nor within an
	/// element that is just coming or going as a whole.
	bool Records(const TDocumentNode& node, TObservable& source) const;
	/// Of a value, or the event of a list or byte bag, of the node.
	void ChangeBegins(TDocumentNode& node, TObservable& source);
	void ChangeEnds(TDocumentNode& node, TObservable& source);

	bool IsCapturing() const noexcept { return mRecordingDepth > 0; }

	/// How a step is called that begins with this change.
	static TString NameOfChange(const TDocumentNode& node, TObservable& source);
	static void TellLostUndo();

private:
	struct TValueRecord {
		TWeakPtr<TObservable> mpValue;
		TWeakPtr<TDocumentNode> mpNode;
		TPtr<TActionRecord> mpRecord;
	};

	/// A record of the step that waits for its redo state.
	struct TPendingRecord {
		const void* mpSource;          // the list or byte bag
		TPtr<TDocumentNode> mpElement; // the element of a document list
		TPtr<TActionRecord> mpRecord;
	};

	using TValueRecords =
	    std::map<TObservable*, TValueRecord, std::less<>, TStlAllocator<std::pair<TObservable* const, TValueRecord>>>;

	/// Those whose change has ended, or also those in the middle of one.
	enum class TValues : int8_t { kChanged, kAll };

	TManeuver& CurrentManeuver();
	TPtr<TRestorableState> Capture(const TDocumentNode& node, TObservable& source, int32_t reason);
	void BeginValue(TDocumentNode& node, TObservable& value);
	void BeginEvent(TDocumentNode& node, TObservable& event);
	void EndEvent(TDocumentNode& node, TObservable& event);
	void DropPendingOf(const TDocumentNode* element);
	void MoveValueRecords(TValues which);
	bool IsComplete(const TObservable* value, const TValueRecord& entry) const;

	TDocumentRoot& mRoot;
	TPtr<TManeuver> mpCurrentManeuver; // made with its first record or name
	TValueRecords mValueRecords;
	TList<TPendingRecord> mPendingRecords; // the innermost last
	int32_t mRecordingDepth = 0;
};
