// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TDocumentRoot.h"

#include "framework/document/undo/TManeuver.h"
#include "framework/document/undo/TStepRecorder.h"
#include "framework/document/undo/TUndoChain.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

#include <memory>

struct TDocumentRoot::TUndoTexts {
	const char* mBeginNamed;
	const char* mBegin;
	const char* mEndNamed;
	const char* mEnd;

	static void Tell(const char* named, const char* unnamed, const TString& name) {
		ShowUserMessage(name.IsEmpty() ? TString(unnamed) : TString::Format(named, name), kInformationMessage);
	}
};

TDocumentRoot::TDocumentRoot()
    : mpUndoChain(MakePtr<TUndoChain>(this)),
      mpRecorder(std::make_unique<TStepRecorder>(*this)) {}

TDocumentRoot::~TDocumentRoot() {
	mpUndoChain->Clear();
}

void TDocumentRoot::BeginAction() {
	if (mpRecorder->IsCapturing())
		return;
	if (mActionIsOpen && mpRecorder->HasRecords())
		EndAction();
	mActionIsOpen = true;
	mIsMerging = false;
	mpRecorder->Start();
	UndoTransactionBegun();
	mActionBegun.Bang();
}

void TDocumentRoot::EndAction() {
	if (mpRecorder->IsCapturing())
		return;
	try {
		StoreStep();
	} catch (const TOutOfMemoryException&) {
		mpRecorder->Start();
		mpLastManeuver = nullptr;
		TStepRecorder::TellLostUndo();
	}
	mActionIsOpen = false;
	mIsMerging = false;
	UndoTransactionEnded();
	mActionEnded.Bang();
}

// A step that could not be stored must not be continued: the place of the next merge is that of another one.
void TDocumentRoot::StoreStep() {
	const TPtr<TManeuver> maneuver = mpRecorder->Finish();
	if (!maneuver || maneuver->ActionRecords().IsEmpty())
		return;
	const bool merges = mIsMerging && mpLastManeuver;
	const bool isStored = merges ? mpUndoChain->Merge(*maneuver) : mpUndoChain->Add(*maneuver);
	mpLastManeuver = isStored ? maneuver : nullptr;
}

void TDocumentRoot::BeginUndoableAction(const TString& name, bool mergeable, double timeMs) {
	if (!mActionIsOpen || mpRecorder->IsNamed())
		return;
	if (mergeable && !mpRecorder->HasRecords()) {
		if (ContinuesLastStep(name, timeMs)) {
			mIsMerging = true;
			mpRecorder->Start(mpLastManeuver);
		} else {
			BeginAction();
		}
	} else {
		mpLastManeuver = nullptr;
		if (mIsMerging) {
			mpRecorder->Start();
			BeginAction();
		}
	}
	mLastActionTimer.Restart();
	mpRecorder->SetName(name);
}

bool TDocumentRoot::ContinuesLastStep(const TString& name, double timeMs) const {
	return mpLastManeuver && mpLastManeuver->Name() == name && MillisecondsSinceLastAction() < timeMs;
}

double TDocumentRoot::MillisecondsSinceLastAction() const {
	return static_cast<double>(mLastActionTimer.ElapsedMilliseconds());
}

bool TDocumentRoot::CanUndo() const {
	return mpUndoChain->CanUndo() && !mpRecorder->HasRecords();
}

bool TDocumentRoot::CanRedo() const {
	return mpUndoChain->CanRedo() && !mpRecorder->HasRecords();
}

void TDocumentRoot::Undo() {
	constexpr TUndoTexts kTexts{"Undoing '%s'...", "Undoing...", "'%s' was undone.", "Undo finished."};
	if (CanUndo())
		Travel(kTexts, mpUndoChain->UndoName(), &TUndoChain::Undo);
}

void TDocumentRoot::Redo() {
	constexpr TUndoTexts kTexts{"Redoing '%s'...", "Redoing...", "'%s' was redone.", "Redo finished."};
	if (CanRedo())
		Travel(kTexts, mpUndoChain->RedoName(), &TUndoChain::Redo);
}

void TDocumentRoot::Travel(const TUndoTexts& texts, const TString& name, bool (TUndoChain::*travel)()) {
	TUndoTexts::Tell(texts.mBeginNamed, texts.mBegin, name);
	if (TThreadCommunicator* communicator = TThreadCommunicator::Instance())
		communicator->ProcessCommands();
	bool hasTravelled = false;
	BeginUndoRedo();
	mpLastManeuver = nullptr;
	try {
		hasTravelled = (*mpUndoChain.*travel)();
	} catch (...) {
		EndUndoRedo();
		throw;
	}
	EndUndoRedo();
	if (!hasTravelled)
		return;
	Touch();
	TUndoTexts::Tell(texts.mEndNamed, texts.mEnd, name);
}

bool TDocumentRoot::AcceptsChangesFrom(const TDocumentNode* node) const {
	if (!mActionIsOpen || mRecordingSuppressed > 0 || NotificationSourceThread() != kMainThread)
		return false;
	while (node && node != this) {
		const TDocumentNode* parent = node->Parent();
		if (!parent || (parent->FlagsOfChild(node) & kUndoable) == 0)
			return false;
		node = parent;
	}
	return node == this;
}

void TDocumentRoot::EndLoad(bool success) {
	TDocumentNode::EndLoad(success);
	ClearModified();
	ForgetSteps();
}

void TDocumentRoot::OnChangeBelow(TDocumentNode& node, TObservable& source, int32_t reason) {
	if (!AcceptsChangesFrom(&node))
		return;
	if (reason == kWillChange)
		return RecordChangeBegin(node, source);
	node.Touch();
	RecordChangeEnd(node, source);
}

void TDocumentRoot::RecordChangeBegin(TDocumentNode& node, TObservable& source) {
	if (!mpRecorder->Records(node, source))
		return;
	try {
		if (!mpRecorder->IsNamed())
			BeginUndoableAction(TStepRecorder::NameOfChange(node, source));
		mpRecorder->ChangeBegins(node, source);
	} catch (const TOutOfMemoryException&) {
		TStepRecorder::TellLostUndo();
	}
}

void TDocumentRoot::RecordChangeEnd(TDocumentNode& node, TObservable& source) {
	if (!mpRecorder->Records(node, source))
		return;
	try {
		mpRecorder->ChangeEnds(node, source);
	} catch (const TOutOfMemoryException&) {
		TStepRecorder::TellLostUndo();
	}
}

void TDocumentRoot::ForgetSteps() {
	mpRecorder->Start();
	mpLastManeuver = nullptr;
	mIsMerging = false;
	mpUndoChain->Clear();
}
