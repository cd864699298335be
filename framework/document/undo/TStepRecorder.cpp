// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TStepRecorder.h"

#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/undo/TDocumentByteBagState.h"
#include "framework/document/undo/TDocumentListState.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/undo/TObservableListState.h"
#include "framework/document/undo/TObservableState.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

namespace {

template <class T>
T* As(TObservable& source) {
	return dynamic_cast<T*>(&source);
}

class TDepthGuard {
public:
	explicit TDepthGuard(int32_t& depth) : mDepth(depth) { ++mDepth; }

	~TDepthGuard() { --mDepth; }

	TDepthGuard(const TDepthGuard&) = delete;
	TDepthGuard& operator=(const TDepthGuard&) = delete;

private:
	int32_t& mDepth;
};

/// The list or byte bag that an event is about; null for anything else.
const void* SourceOfEvent(TObservable& source) {
	if (const auto* event = As<TDocumentListEvent>(source))
		return event->List();
	if (const auto* event = As<TObservableListEvent>(source))
		return event->List();
	const auto* event = As<TDocumentByteBagDataChangedObservable>(source);
	return event ? event->ByteBag() : nullptr;
}

TDocumentNode* ElementOfEvent(TObservable& source) {
	const auto* event = As<TDocumentListElementEvent>(source);
	return event ? event->Element() : nullptr;
}

TPtr<TRestorableState>
StateOfObservableList(const TDocumentRoot& root, const TDocumentNode& node, TObservable& source, int32_t reason) {
	if (const auto* event = As<TObservableWasAddedObservable>(source))
		return MakePtr<TObservableListState>(
		    root, node, *event, event->Index(), reason == kWillChange ? kWillInsert : kDidInsert);
	if (const auto* event = As<TObservableWasRemovedObservable>(source))
		return MakePtr<TObservableListState>(
		    root, node, *event, event->Index(), reason == kWillChange ? kWillDelete : kDidDelete);
	if (const auto* event = As<TObservablesSwappedObservable>(source))
		return MakePtr<TObservableListElementsSwappedState>(root, node, *event);
	return nullptr;
}

TPtr<TRestorableState> StateOfDocumentList(const TDocumentRoot& root, TObservable& source, int32_t reason) {
	if (const auto* event = As<TDocumentWasAddedObservable>(source))
		return MakePtr<TDocumentListState>(root, *event, reason == kWillChange ? kWillInsert : kDidInsert);
	if (const auto* event = As<TDocumentWasRemovedObservable>(source))
		return MakePtr<TDocumentListState>(root, *event, reason == kWillChange ? kWillDelete : kDidDelete);
	if (const auto* event = As<TDocumentListElementsSwappedObservable>(source))
		return MakePtr<TDocumentListElementsSwappedState>(root, *event);
	return nullptr;
}

TPtr<TRestorableState>
MakeState(const TDocumentRoot& root, const TDocumentNode& node, TObservable& source, int32_t reason) {
	if (const auto* value = As<TSerializable>(source))
		return MakePtr<TObservableState>(root, node, *value);
	if (const auto* event = As<TDocumentByteBagDataChangedObservable>(source))
		return MakePtr<TDocumentByteBagState>(root, *event->ByteBag());
	if (As<TDocumentListEvent>(source))
		return StateOfDocumentList(root, source, reason);
	return StateOfObservableList(root, node, source, reason);
}

TString ItemNameOf(TObservable& source) {
	if (const auto* event = As<TDocumentListEvent>(source))
		return event->List()->ItemName();
	return As<TObservableListEvent>(source)->List()->ItemName();
}

void TellOutOfMemory(const char* consequence) {
	ShowUserMessage(
	    TString::Format("Out of memory!\n%s will not work for the last performed action.", consequence), kErrorMessage);
}

} // namespace

TStepRecorder::TStepRecorder(TDocumentRoot& root) : mRoot(root) {}

TStepRecorder::~TStepRecorder() = default;

void TStepRecorder::TellLostUndo() {
	TellOutOfMemory("Undo");
}

void TStepRecorder::Start(const TPtr<TManeuver>& continued) {
	mpCurrentManeuver = continued;
	mValueRecords.clear();
	mPendingRecords.Clear();
}

TPtr<TManeuver> TStepRecorder::Finish() {
	MoveValueRecords(TValues::kAll);
	const TPtr<TManeuver> maneuver = mpCurrentManeuver;
	for (const TPendingRecord& pending : mPendingRecords) // what was announced and did not happen
		maneuver->ActionRecords().RemoveAt(maneuver->ActionRecords().IndexOf(pending.mpRecord));
	Start();
	return maneuver;
}

bool TStepRecorder::HasRecords() const noexcept {
	return !mValueRecords.empty() || (mpCurrentManeuver && !mpCurrentManeuver->ActionRecords().IsEmpty());
}

bool TStepRecorder::IsNamed() const noexcept {
	return mpCurrentManeuver && !mpCurrentManeuver->Name().IsEmpty();
}

void TStepRecorder::SetName(const TString& name) {
	CurrentManeuver().SetName(name);
}

bool TStepRecorder::Records(const TDocumentNode& node, TObservable& source) const {
	if (IsCapturing() || !(As<TSerializable>(source) || SourceOfEvent(source)))
		return false;
	for (const TPendingRecord& pending : mPendingRecords)
		for (const TDocumentNode* place = &node; place; place = place->Parent())
			if (pending.mpElement == place)
				return false;
	return true;
}

void TStepRecorder::ChangeBegins(TDocumentNode& node, TObservable& source) {
	if (As<TSerializable>(source))
		BeginValue(node, source);
	else
		BeginEvent(node, source);
}

void TStepRecorder::ChangeEnds(TDocumentNode& node, TObservable& source) {
	if (!As<TSerializable>(source))
		return EndEvent(node, source);
	const auto entry = mValueRecords.find(&source);
	if (entry != mValueRecords.end() && entry->second.mpRecord)
		entry->second.mpRecord->SetRedoState(Capture(node, source, kDidChange));
}

TString TStepRecorder::NameOfChange(const TDocumentNode& node, TObservable& source) {
	if (As<TSerializable>(source))
		return TString::Format("Change %s", node.NameOfProperty(&source));
	if (const auto* event = As<TDocumentByteBagDataChangedObservable>(source))
		return TString::Format("Change %s", event->ByteBag()->NameInParent());
	if (const auto* event = As<TDocumentListElementsSwappedObservable>(source))
		return TString::Format("Swap in %s", event->List()->NameInParent());
	if (As<TObservablesSwappedObservable>(source))
		return TString::Format("Swap %s", ItemNameOf(source));
	const bool isAdded = As<TDocumentWasAddedObservable>(source) || As<TObservableWasAddedObservable>(source);
	return TString::Format(isAdded ? "Insert %s" : "Delete %s", ItemNameOf(source));
}

TManeuver& TStepRecorder::CurrentManeuver() {
	if (!mpCurrentManeuver)
		mpCurrentManeuver = MakePtr<TManeuver>();
	return *mpCurrentManeuver;
}

TPtr<TRestorableState> TStepRecorder::Capture(const TDocumentNode& node, TObservable& source, int32_t reason) {
	const TDepthGuard guard(mRecordingDepth);
	TPtr<TRestorableState> state;
	try {
		state = MakeState(mRoot, node, source, reason);
	} catch (const TOutOfMemoryException&) {
		TellOutOfMemory(reason == kWillChange ? "Undo" : "Redo");
		state = MakePtr<TVoidRestorableState>();
	}
	state->SetUndoChain(mRoot.UndoChain());
	return state;
}

void TStepRecorder::BeginValue(TDocumentNode& node, TObservable& value) {
	TValueRecord& entry = mValueRecords[&value];
	if (!(entry.mpValue == &value)) // new, or one that died had the same place in memory
		entry = {&value, &node, MakePtr<TActionRecord>()};
	if (!entry.mpRecord->UndoState())
		entry.mpRecord->SetUndoState(Capture(node, value, kWillChange));
}

// The event changes paths: what was recorded with the old ones goes before it. Bytes are in nobody's path.
void TStepRecorder::BeginEvent(TDocumentNode& node, TObservable& event) {
	if (!As<TDocumentByteBagDataChangedObservable>(event))
		MoveValueRecords(TValues::kChanged);
	DropPendingOf(ElementOfEvent(event));
	const auto record = MakePtr<TActionRecord>();
	record->SetUndoState(Capture(node, event, kWillChange));
	mPendingRecords.Append({SourceOfEvent(event), ElementOfEvent(event), record});
	CurrentManeuver().ActionRecords().Append(record);
}

void TStepRecorder::EndEvent(TDocumentNode& node, TObservable& event) {
	const void* source = SourceOfEvent(event);
	int32_t index = mPendingRecords.Count() - 1;
	while (index >= 0 && mPendingRecords[index].mpSource != source)
		--index;
	if (index < 0)
		return;
	const TPtr<TActionRecord> record = mPendingRecords[index].mpRecord;
	mPendingRecords.RemoveAt(index);
	// Half a record would insert or remove something else.
	record->SetRedoState(record->UndoState()->IsVoid() ? record->UndoState() : Capture(node, event, kDidChange));
}

/// An event that begins anew shows that the one before never ended.
void TStepRecorder::DropPendingOf(const TDocumentNode* element) {
	for (int32_t i = mPendingRecords.Count() - 1; element && i >= 0; --i) {
		if (!(mPendingRecords[i].mpElement == element))
			continue;
		TList<TPtr<TActionRecord>>& records = CurrentManeuver().ActionRecords();
		records.RemoveAt(records.IndexOf(mPendingRecords[i].mpRecord));
		mPendingRecords.RemoveAt(i);
	}
}

void TStepRecorder::MoveValueRecords(TValues which) {
	for (auto entry = mValueRecords.begin(); entry != mValueRecords.end();) {
		const TPtr<TActionRecord>& record = entry->second.mpRecord;
		if (which == TValues::kChanged && record && !record->RedoState()) {
			++entry;
			continue;
		}
		if (IsComplete(entry->first, entry->second))
			CurrentManeuver().ActionRecords().Append(record);
		entry = mValueRecords.erase(entry);
	}
}

bool TStepRecorder::IsComplete(const TObservable* value, const TValueRecord& entry) const {
	const TDocumentNode* node = entry.mpNode.Get();
	return entry.mpRecord && entry.mpRecord->UndoState() && entry.mpValue == value && node && node->Root() == &mRoot &&
	       !node->RelativeValuePath(value).IsEmpty();
}
