// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/xml/TDocumentTranslator.h"

#include "framework/document/xml/LibXml.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/threads/TCriticalSection.h"

#include <libxml/xpathInternals.h>
#include <map>
#include <utility>

namespace {

using TResult = std::unique_ptr<xmlXPathObject, LibXml::TDeleter>;

struct TRegistry {
	TCriticalSection mLock;
	std::map<TString, TPtr<TDocumentTranslator>> mTranslators;
};

TRegistry& Registry() {
	static TRegistry sRegistry;
	return sRegistry;
}

void Ignore(void* /*userData*/, LibXml::TError* /*error*/) {}

template <class... TTexts>
TResult Evaluate(xmlXPathContext* context, const TString& path, const char* error, const TTexts&... texts) {
	TResult result(xmlXPathEval(LibXml::Chars(LibXml::Utf8(path)), context));
	if (!result)
		throw TReadableException(
		    TString::Format(TString("There was an error while upgrading a document:\n") + error, texts...));
	if (result->nodesetval)
		xmlXPathNodeSetSort(result->nodesetval);
	return result;
}

int Count(const TResult& result) {
	return result->nodesetval ? result->nodesetval->nodeNr : 0;
}

/// The slot is emptied, so that freeing the result does not touch the node any more.
void Remove(const TResult& result, int index) {
	const LibXml::TNode node(std::exchange(result->nodesetval->nodeTab[index], nullptr));
	if (node)
		xmlUnlinkNode(node.get());
}

bool IsElement(const xmlNode* node) {
	return node && node->type == XML_ELEMENT_NODE;
}

/// Neither the document itself nor a namespace, which is a node in name only.
bool IsPartOfDocument(const xmlNode* node) {
	return node && node->type <= XML_COMMENT_NODE;
}

} // namespace

TChangeAttributeValueXmlProcessor::TChangeAttributeValueXmlProcessor(
    const TString& nodePath, const TString& attributeName, const TString& value)
    : mNodePath(nodePath),
      mAttributeName(attributeName),
      mValue(value) {}

void TChangeAttributeValueXmlProcessor::Process(xmlXPathContext* context) {
	const TResult result = Evaluate(
	    context, mNodePath, "Failed to change the attribute value of '%s' in node(s) '%s'.", mAttributeName, mNodePath);
	for (int i = Count(result) - 1; i >= 0; --i) {
		xmlNode* node = result->nodesetval->nodeTab[i];
		if (IsElement(node) && LibXml::HasAttribute(node, mAttributeName))
			LibXml::SetAttribute(node, mAttributeName, mValue);
	}
}

TRenameNodeXmlProcessor::TRenameNodeXmlProcessor(const TString& nodePath, const TString& newName)
    : mNodePath(nodePath),
      mNewName(newName) {}

void TRenameNodeXmlProcessor::Process(xmlXPathContext* context) {
	const TResult result = Evaluate(context, mNodePath, "Failed to rename the node(s) '%s'.", mNodePath);
	for (int i = Count(result) - 1; i >= 0; --i)
		xmlNodeSetName(result->nodesetval->nodeTab[i], LibXml::Chars(LibXml::Utf8(mNewName)));
}

TRemoveNodeXmlProcessor::TRemoveNodeXmlProcessor(const TString& nodePath) : mNodePath(nodePath) {}

void TRemoveNodeXmlProcessor::Process(xmlXPathContext* context) {
	const TResult result = Evaluate(context, mNodePath, "Failed to remove the node(s) '%s'.", mNodePath);
	// From the last to the first: what lies inside another match goes before it.
	for (int i = Count(result) - 1; i >= 0; --i)
		if (IsPartOfDocument(result->nodesetval->nodeTab[i]))
			Remove(result, i);
}

TMoveNodeXmlProcessor::TMoveNodeXmlProcessor(const TString& nodePath, const TString& targetPath)
    : mNodePath(nodePath),
      mTargetPath(targetPath) {}

void TMoveNodeXmlProcessor::Process(xmlXPathContext* context) {
	constexpr const char* kError = "Failed to move the node(s) '%s' to '%s'.";
	const TResult sources = Evaluate(context, mNodePath, kError, mNodePath, mTargetPath);
	const TResult targets = Evaluate(context, mTargetPath, kError, mNodePath, mTargetPath);
	if (Count(targets) == 0)
		return;
	for (int i = 0; i < Count(sources); ++i) {
		const xmlNode* source = sources->nodesetval->nodeTab[i];
		if (!IsElement(source))
			continue;
		for (int j = 0; j < Count(targets); ++j) {
			xmlNode* target = targets->nodesetval->nodeTab[j];
			LibXml::TNode copy(
			    IsElement(target) ? xmlDocCopyNode(const_cast<xmlNode*>(source), context->doc, 1) : nullptr);
			if (copy && xmlAddChild(target, copy.get()))
				(void)copy.release();
		}
	}
	for (int i = Count(sources) - 1; i >= 0; --i)
		if (IsElement(sources->nodesetval->nodeTab[i]))
			Remove(sources, i);
}

void TXmlTranslator::Run(xmlDoc* document) const {
	const std::unique_ptr<xmlXPathContext, LibXml::TDeleter> context(xmlXPathNewContext(document));
	if (!context)
		throw TOutOfMemoryException();
	context->error = &Ignore; // else a bad expression is told to the host's standard error
	for (const TPtr<TXmlProcessor>& processor : mProcessors)
		processor->Process(context.get());
}

void TDocumentTranslator::Register(const TString& rootName, const TPtr<TDocumentTranslator>& translator) {
	TRegistry& registry = Registry();
	const TCriticalSection::TGuard guard(registry.mLock);
	registry.mTranslators[rootName] = translator;
}

TPtr<TDocumentTranslator> TDocumentTranslator::Find(const TString& rootName) {
	TRegistry& registry = Registry();
	const TCriticalSection::TGuard guard(registry.mLock);
	const auto found = registry.mTranslators.find(rootName);
	return found == registry.mTranslators.end() ? nullptr : found->second;
}

void TDocumentTranslator::BeginStep() {
	mpOpenTranslator = MakePtr<TXmlTranslator>();
	mpOpenFunctions = {};
}

void TDocumentTranslator::AddRemoveNode(const TString& path) {
	mpOpenTranslator->Add(MakePtr<TRemoveNodeXmlProcessor>(path));
}

void TDocumentTranslator::AddMoveNode(const TString& path, const TString& target) {
	mpOpenTranslator->Add(MakePtr<TMoveNodeXmlProcessor>(path, target));
}

void TDocumentTranslator::AddRenameNode(const TString& path, const TString& newName) {
	mpOpenTranslator->Add(MakePtr<TRenameNodeXmlProcessor>(path, newName));
}

void TDocumentTranslator::AddChangeAttributeValue(const TString& path, const TString& attribute, const TString& value) {
	mpOpenTranslator->Add(MakePtr<TChangeAttributeValueXmlProcessor>(path, attribute, value));
}

void TDocumentTranslator::AddDocumentFunction(TDocumentFunction function) {
	mpOpenFunctions.Append(function);
}

void TDocumentTranslator::EndStep() {
	mXmlTranslators.Append(mpOpenTranslator);
	mDocumentFunctions.Append(mpOpenFunctions);
	mpOpenTranslator = nullptr;
	mpOpenFunctions = {};
}

void TDocumentTranslator::RunXmlStep(int32_t index, xmlDoc* document) const {
	mXmlTranslators[index]->Run(document);
}

void TDocumentTranslator::RunDocumentStep(int32_t index, TDocumentNode* node) const {
	for (const TDocumentFunction function : mDocumentFunctions[index])
		function(node);
}
