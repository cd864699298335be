// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

#include <cstdint>

class TDocumentNode;
struct _xmlDoc;
struct _xmlXPathContext;

/// One change to a parsed file. Paths are XPath expressions; one that matches nothing changes nothing. Throws
/// TReadableException for one that is no expression, even where there is nothing to do.
class TXmlProcessor : public TReferenceCountable {
public:
	virtual void Process(_xmlXPathContext* context) = 0;
};

/// Gives an attribute a new value in every matching node that has it.
class TChangeAttributeValueXmlProcessor final : public TXmlProcessor {
public:
	TChangeAttributeValueXmlProcessor(const TString& nodePath, const TString& attributeName, const TString& value);

	void Process(_xmlXPathContext* context) override;

private:
	TString mNodePath;
	TString mAttributeName;
	TString mValue;
};

class TRenameNodeXmlProcessor final : public TXmlProcessor {
public:
	TRenameNodeXmlProcessor(const TString& nodePath, const TString& newName);

	void Process(_xmlXPathContext* context) override;

private:
	TString mNodePath;
	TString mNewName;
};

class TRemoveNodeXmlProcessor final : public TXmlProcessor {
public:
	explicit TRemoveNodeXmlProcessor(const TString& nodePath);

	void Process(_xmlXPathContext* context) override;

private:
	TString mNodePath;
};

/// Moves the nodes to the end of each target, of which each gets its own copy.
class TMoveNodeXmlProcessor final : public TXmlProcessor {
public:
	TMoveNodeXmlProcessor(const TString& nodePath, const TString& targetPath);

	void Process(_xmlXPathContext* context) override;

private:
	TString mNodePath;
	TString mTargetPath;
};

/// The XML half of a step: processors in their order.
class TXmlTranslator final : public TReferenceCountable {
public:
	void Add(const TPtr<TXmlProcessor>& processor) { mProcessors.Append(processor); }

	void Run(_xmlDoc* document) const;

private:
	TList<TPtr<TXmlProcessor>> mProcessors;
};

/// The chain of steps that brings old files with one root element name to the present form. Step i makes version i + 1
/// out of version i, so the present version is the number of steps. All XML halves run before the values are read, all
/// document functions afterwards.
///
/// Declared once, before the first load, and only read from then on.
class TDocumentTranslator final : public TReferenceCountable {
public:
	using TDocumentFunction = void (*)(TDocumentNode* node);

	/// Known from now on for files of this root element. Registering a name again replaces its chain.
	static void Register(const TString& rootName, const TPtr<TDocumentTranslator>& translator);
	/// Null without a chain. Any thread.
	static TPtr<TDocumentTranslator> Find(const TString& rootName);

	/// Each BeginStep needs its EndStep.
	void BeginStep();
	void AddRemoveNode(const TString& path);
	void AddMoveNode(const TString& path, const TString& target);
	void AddRenameNode(const TString& path, const TString& newName);
	void AddChangeAttributeValue(const TString& path, const TString& attribute, const TString& value);
	void AddDocumentFunction(TDocumentFunction function);
	void EndStep();

	int32_t StepCount() const noexcept { return mXmlTranslators.Count(); }

	void RunXmlStep(int32_t index, _xmlDoc* document) const;
	void RunDocumentStep(int32_t index, TDocumentNode* node) const;

private:
	TList<TPtr<TXmlTranslator>> mXmlTranslators;
	TList<TList<TDocumentFunction>> mDocumentFunctions;
	TPtr<TXmlTranslator> mpOpenTranslator;
	TList<TDocumentFunction> mpOpenFunctions;
};
