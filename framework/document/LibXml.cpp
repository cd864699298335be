// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/LibXml.h"

#include "framework/foundation/TReadableException.h"

#include <cstdint>
#include <libxml/xmlsave.h>
#include <limits>

namespace {

constexpr int kParseOptions = XML_PARSE_NOBLANKS | XML_PARSE_NONET;
constexpr std::size_t kLongestErrors = 4095;

using TParser = std::unique_ptr<xmlParserCtxt, LibXml::TDeleter>;
using TBuffer = std::unique_ptr<xmlBuffer, LibXml::TDeleter>;

/// One line for each message: "line N: text".
void CollectError(void* userData, xmlError* error) {
	const auto* context = static_cast<const xmlParserCtxt*>(userData);
	auto* errors = static_cast<std::string*>(context->_private);
	if (!error->message || errors->size() > kLongestErrors)
		return;
	std::string_view text = error->message;
	while (text.ends_with('\n'))
		text.remove_suffix(1);
	if (!errors->empty())
		*errors += '\n';
	*errors += "line " + std::to_string(error->line) + ": ";
	*errors += text;
}

template <class T>
T* Checked(T* made) {
	if (!made)
		throw TOutOfMemoryException();
	return made;
}

} // namespace

std::string LibXml::Utf8(const TString& text) {
	std::string bytes;
	text.ToBytes(bytes, kUtf8Encoding);
	return bytes;
}

TString LibXml::FromUtf8(const xmlChar* text) {
	return text ? TString(reinterpret_cast<const char*>(text), kUtf8Encoding) : TString();
}

LibXml::TDocument LibXml::Parse(std::string_view bytes, std::string& errors) {
	errors.clear();
	if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
		errors = "the document is too large";
		return nullptr;
	}
	const TParser parser(Checked(xmlNewParserCtxt()));
	parser->_private = &errors;
	parser->sax->serror = &CollectError;
	TDocument document(
	    xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, kParseOptions));
	return document;
}

std::string LibXml::Print(xmlDoc* document, std::string& errors) {
	const TBuffer buffer(Checked(xmlBufferCreate()));
	xmlSaveCtxt* saving = Checked(xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_FORMAT));
	const bool isSaved = xmlSaveDoc(saving, document) >= 0;
	const bool isClosed = xmlSaveClose(saving) >= 0;
	if (!isSaved || !isClosed || xmlBufferLength(buffer.get()) < 1) {
		errors = "out of memory";
		return {};
	}
	return {
	    reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
	    static_cast<std::size_t>(xmlBufferLength(buffer.get()))};
}

std::string LibXml::Print(xmlDoc* document, xmlNode* element) {
	const TBuffer buffer(Checked(xmlBufferCreate()));
	if (xmlNodeDump(buffer.get(), document, element, 0, 0) < 0)
		throw TOutOfMemoryException();
	return {
	    reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
	    static_cast<std::size_t>(xmlBufferLength(buffer.get()))};
}

TString LibXml::Attribute(xmlNode* element, const TString& name) {
	const TText value(xmlGetProp(element, Chars(Utf8(name))));
	return FromUtf8(value.get());
}

bool LibXml::HasAttribute(xmlNode* element, const TString& name) {
	return element->properties && xmlHasProp(element, Chars(Utf8(name)));
}

void LibXml::SetAttribute(xmlNode* element, const TString& name, const TString& value) {
	Checked(xmlSetProp(element, Chars(Utf8(name)), Chars(Utf8(value))));
}

xmlNode* LibXml::AddElement(xmlNode* parent, const TString& name) {
	return Checked(xmlNewChild(parent, nullptr, Chars(Utf8(name)), nullptr));
}

void LibXml::AddText(xmlNode* element, const TString& text) {
	const std::string bytes = Utf8(text);
	TNode node(Checked(xmlNewTextLen(Chars(bytes), static_cast<int>(bytes.size()))));
	Checked(xmlAddChild(element, node.get()));
	(void)node.release();
}
