// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TManeuver.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/document/undo/TUndoChain.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/text/TReadableException.h"

#include <span>

namespace {

void WriteState(TBinaryStream& stream, const TPtr<TRestorableState>& state) {
	const TPtr<TRestorableState> written = state ? state : MakePtr<TVoidRestorableState>();
	TStream xml;
	written->SaveToStream(xml, false);
	stream.WriteString(written->TypeName(), kUtf8Encoding);
	stream.WriteBytes(xml.Bytes());
}

TPtr<TRestorableState> ReadState(TBinaryStream& stream) {
	TString typeName;
	TArray<uint8_t> xml;
	stream.ReadString(typeName, kUtf8Encoding);
	stream.ReadBytes(xml);
	const TPtr<TRestorableState> state = TRestorableState::CreateByTypeName(typeName);
	if (!state)
		throw TReadableException(TString::Format("Failed to create an object of type '%s'!", typeName));
	state->LoadFromStream(TStream(std::span<const uint8_t>(xml.Items(), xml.size())));
	return state;
}

void Restore(const TPtr<TRestorableState>& state, TDocumentRoot& root) {
	if (!state)
		return;
	state->SetUndoChain(root.UndoChain());
	state->Restore(root);
}

} // namespace

void TActionRecord::Write(TBinaryStream& stream) const {
	WriteState(stream, mpUndoState);
	WriteState(stream, mpRedoState);
}

void TActionRecord::Read(TBinaryStream& stream) {
	mpUndoState = ReadState(stream);
	mpRedoState = ReadState(stream);
}

void TActionRecord::Undo(TDocumentRoot& root) const {
	Restore(mpUndoState, root);
}

void TActionRecord::Redo(TDocumentRoot& root) const {
	Restore(mpRedoState, root);
}

void TManeuver::Write(TBinaryStream& stream) const {
	stream.WriteInt32(mActionRecords.Count());
	for (const TPtr<TActionRecord>& record : mActionRecords)
		record->Write(stream);
}

void TManeuver::Read(TBinaryStream& stream) {
	mActionRecords.Clear();
	for (int32_t count = stream.ReadInt32(); count > 0; --count) {
		const auto record = MakePtr<TActionRecord>();
		record->Read(stream);
		mActionRecords.Append(record);
	}
}

void TManeuver::Undo(TDocumentRoot& root) const {
	for (int32_t i = mActionRecords.Count() - 1; i >= 0; --i)
		mActionRecords[i]->Undo(root);
}

void TManeuver::Redo(TDocumentRoot& root) const {
	for (const TPtr<TActionRecord>& record : mActionRecords)
		record->Redo(root);
}
