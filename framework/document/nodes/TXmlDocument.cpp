// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TXmlDocument.h"

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/nodes/XmlReading.h"
#include "framework/document/nodes/XmlWriting.h"
#include "framework/document/xml/LibXml.h"
#include "framework/document/xml/TDocumentTranslator.h"
#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TFileReplacement.h"
#include "framework/foundation/files/WholeFile.h"
#include "framework/foundation/text/TReadableException.h"

#include <algorithm>
#include <span>

namespace {

constexpr const char* kVersionAttribute = "doc_version";
constexpr const char* kMemoryFileName = "[BinStream]";

TString Text(const std::string& errors) {
	return TString(errors.c_str(), kUtf8Encoding);
}

std::string_view TextOf(const TStream& stream) {
	const auto bytes = stream.Bytes();
	return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::span<const uint8_t> BytesOf(const std::string& text) {
	return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

std::string_view SkipWhiteSpace(std::string_view bytes) {
	const std::size_t start = bytes.find_first_not_of(" \t\r\n\v\f");
	return start == std::string_view::npos ? std::string_view() : bytes.substr(start);
}

/// 0 for an attribute that is absent or no number.
int32_t Version(xmlNode* root) {
	int32_t version = 0;
	TString::FromString(LibXml::Attribute(root, kVersionAttribute), version);
	return version;
}

[[noreturn]] void ThrowUnreadable(const TString& path, const TString& reason) {
	throw TReadableException(
	    reason.IsEmpty() ? TString::Format("Failed to parse the XML file '%s'!", path)
	                     : TString::Format("Failed to parse the XML file '%s' (%s)!", path, reason));
}

} // namespace

TXmlDocument::TXmlDocument(TDocumentNode& owner) : mOwner(owner), mRootName(owner.ElementName()) {}

void TXmlDocument::LoadFile(const TString& path) {
	if (!TFile(path).Exists() && !TDirectory(path).Exists())
		throw TReadableException(TString::Format("The XML file '%s' does not exist!", path));
	std::string bytes;
	TString reason;
	if (!ReadWholeFile(path, bytes, reason))
		ThrowUnreadable(path, reason);
	std::string errors;
	const LibXml::TDocument document = LibXml::Parse(bytes, errors);
	if (!document)
		ThrowUnreadable(path, Text(errors));
	Read(document.get(), path);
}

void TXmlDocument::LoadMemory(const TStream& stream) {
	const std::string_view bytes = SkipWhiteSpace(TextOf(stream));
	if (bytes.empty())
		throw TReadableException("Failed to parse a memory XML file (The document is empty)!");
	std::string errors;
	const LibXml::TDocument document = LibXml::Parse(bytes, errors);
	if (!document)
		throw TReadableException(
		    errors.empty() ? TString("Failed to parse a memory XML file!")
		                   : TString::Format("Failed to parse a memory XML file (%s)!", Text(errors)));
	Read(document.get(), kMemoryFileName);
}

void TXmlDocument::Read(xmlDoc* document, const TString& path) {
	if (!xmlDocGetRootElement(document))
		throw TReadableException(TString::Format("The XML file '%s' is empty.", path));
	const bool translates = mOwner.ShouldReadXml(document, path);
	TPtr<TDocumentTranslator> translator;
	int32_t version = 0;
	if (translates) {
		translator = TDocumentTranslator::Find(LibXml::FromUtf8(xmlDocGetRootElement(document)->name));
		version = translator ? Translate(document, path) : 0;
	}
	xmlNode* root = xmlDocGetRootElement(document);
	if (!root)
		throw TReadableException(TString::Format("The XML file '%s' is empty.", path));
	CheckRootName(root, path);
	XmlReading::ReadRoot(mOwner, root);
	for (; translator && version < translator->StepCount(); ++version)
		translator->RunDocumentStep(version, &mOwner);
	mFileName.Set(path);
}

/// Brings the document to the present form; the result is the version that it had.
int32_t TXmlDocument::Translate(xmlDoc* document, const TString& path) const {
	xmlNode* root = xmlDocGetRootElement(document);
	const TPtr<TDocumentTranslator> translator = TDocumentTranslator::Find(LibXml::FromUtf8(root->name));
	const int32_t version = Version(root);
	if (version > translator->StepCount())
		throw TReadableException(
		    TString::Format("'%s' was saved with an incompatible, more recent version of $MProductString.", path));
	const int32_t first = std::max(0, version);
	for (int32_t step = first; step < translator->StepCount(); ++step)
		translator->RunXmlStep(step, document);
	return first;
}

void TXmlDocument::CheckRootName(xmlNode* root, const TString& path) const {
	const TString found = LibXml::FromUtf8(root->name);
	if (found == mRootName)
		return;
	throw TReadableException(TString::Format(
	    "'%s' is not a $MProductString %s file. Expected a '%s' root node, but found a '%s' root node.", path,
	    mRootName, mRootName, found));
}

std::string TXmlDocument::Print(bool writeEmptyElements, const TString& styleSheet, std::string& errors) const {
	const LibXml::TDocument document = LibXml::NewDocument();
	xmlNode* root = xmlNewDocNode(document.get(), nullptr, LibXml::Chars(LibXml::Utf8(mRootName)), nullptr);
	if (!root)
		throw TOutOfMemoryException();
	xmlDocSetRootElement(document.get(), root);
	LibXml::SetAttribute(root, kVersionAttribute, TString::ToString(CurrentVersion()));
	if (!styleSheet.IsEmpty()) {
		const std::string content = "type=\"text/xsl\" href=\"" + LibXml::Utf8(styleSheet) + "\"";
		xmlNode* instruction = xmlNewDocPI(document.get(), LibXml::Chars("xml-stylesheet"), LibXml::Chars(content));
		if (!instruction || !xmlAddPrevSibling(root, instruction))
			throw TOutOfMemoryException();
	}
	XmlWriting::WriteRoot(mOwner, root, writeEmptyElements);
	return LibXml::Print(document.get(), errors);
}

void TXmlDocument::SaveFile(const TString& path, bool writeEmptyElements) {
	std::string errors;
	const std::string text = Print(writeEmptyElements, mStyleSheet, errors);
	const TString reason = text.empty() ? Text(errors) : ReplaceFileContents(LibXml::PathOf(path), BytesOf(text));
	if (!reason.IsEmpty())
		throw TReadableException(TString::Format("Failed to write the XML file '%s' (%s)!", path, reason));
	if (text.empty())
		throw TReadableException(TString::Format("Failed to write the XML file '%s'!", path));
	ReportFileChange(path);
	mFileName.Set(path);
}

void TXmlDocument::SaveMemory(TStream& stream, bool writeEmptyElements) {
	std::string errors;
	const std::string text = Print(writeEmptyElements, {}, errors);
	if (text.empty())
		throw TReadableException(
		    errors.empty() ? TString("Unknown error while writing a XML file.")
		                   : TString::Format("Error while writing a XML file (%s)!", Text(errors)));
	stream.Assign(BytesOf(text));
}

int32_t TXmlDocument::CurrentVersion() const {
	const TPtr<TDocumentTranslator> translator = TDocumentTranslator::Find(mRootName);
	return translator ? translator->StepCount() : 0;
}

bool TXmlDocument::ParseHeader(std::string_view bytes, TString& rootName, int32_t& version, TString& errorText) {
	bytes = SkipWhiteSpace(bytes);
	if (bytes.empty()) {
		errorText = "XML document is empty!";
		return false;
	}
	std::string errors;
	const LibXml::TDocument document = LibXml::Parse(bytes, errors);
	if (!document) {
		errorText = "Not a valid XML document!";
		return false;
	}
	xmlNode* root = xmlDocGetRootElement(document.get());
	rootName = root ? LibXml::FromUtf8(root->name) : TString();
	version = root ? Version(root) : 0;
	return true;
}
