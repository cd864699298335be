// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/TXmlDocument.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"

template <class TWork>
void TDocumentNode::LoadWith(const TWork& work) {
	BeginLoad();
	try {
		work();
	} catch (...) {
		EndLoad(false);
		throw;
	}
	EndLoad(true);
}

template <class TWork>
void TDocumentNode::SaveWith(const TWork& work) {
	BeginSave();
	try {
		work();
	} catch (...) {
		EndSave(false);
		throw;
	}
	EndSave(true);
}

void TDocumentNode::Load(const TString& path) {
	LoadWith([&] { XmlDocument().LoadFile(path); });
}

void TDocumentNode::LoadFromStream(const TStream& stream) {
	LoadWith([&] { XmlDocument().LoadMemory(stream); });
}

void TDocumentNode::Save(const TString& path, bool writeEmptyElements) {
	SaveWith([&] { XmlDocument().SaveFile(path, writeEmptyElements); });
}

void TDocumentNode::SaveToStream(TStream& stream, bool writeEmptyElements) {
	SaveWith([&] { XmlDocument().SaveMemory(stream, writeEmptyElements); });
}

TPtr<TDocumentNode> TDocumentNode::Clone() {
	try {
		TPtr<TDocumentNode> clone = NewInstance();
		if (!clone)
			throw TReadableException("The class is not known.");
		if (IsList())
			static_cast<TDocumentListBase&>(*clone).CopyElementClassesFrom(static_cast<TDocumentListBase&>(*this));
		TStream stream;
		SaveToStream(stream, false);
		clone->LoadFromStream(stream);
		clone->OnCloned(this);
		return clone;
	} catch (const TReadableException& error) {
		const TString message =
		    TString::Format("Fatal Error: Failed to create an object of type '%s' (%s).", TypeName(), error.Message());
		if (TSystemGlobals* globals = TSystemGlobals::Instance())
			globals->ShowMessage(message, kErrorMessage);
		return nullptr;
	}
}
