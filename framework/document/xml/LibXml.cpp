// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/xml/LibXml.h"

#include "framework/foundation/text/TReadableException.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <libxml/dict.h>
#include <libxml/uri.h>
#include <libxml/xmlsave.h>

namespace {

constexpr int kParseOptions = XML_PARSE_NOBLANKS | XML_PARSE_NONET;
constexpr std::size_t kLongestErrors = 4095;
constexpr int kMostAttributes = 256;               // of one element; documents of ours have a handful
constexpr std::size_t kMostBytesOfNames = 1 << 20; // the parser's table of names slows down beyond

using TParser = std::unique_ptr<xmlParserCtxt, LibXml::TDeleter>;
using TBuffer = std::unique_ptr<xmlBuffer, LibXml::TDeleter>;

/// One line for each message: "line N: text".
void CollectError(void* userData, LibXml::TError* error) {
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

/// The parser compares each attribute of an element with all before it, which a hostile file turns into hours. So the
/// equals signs of each tag, outside quotes, are counted before it gets to that.
bool HasTooManyAttributes(std::string_view bytes) {
	constexpr auto kNone = std::string_view::npos;
	bool isInTag = false;
	int attributes = 0;
	for (std::size_t at = 0;; ++at) {
		at = isInTag ? bytes.find_first_of("=>\"'", at) : bytes.find('<', at);
		if (at == kNone)
			return false;
		const char mark = bytes[at];
		if (mark == '<') {
			isInTag = bytes.substr(at + 1, 1) != "!";
			attributes = 0;
		} else if (mark == '>')
			isInTag = false;
		else if (mark == '=' && ++attributes > kMostAttributes)
			return true;
		else if (mark != '=' && (at = bytes.find(mark, at + 1)) == kNone)
			return false;
	}
}

/// Declared attributes appear, with a value, in every element of the name: another way to thousands of them.
void RefuseAttributeDeclaration(
    void* userData, const xmlChar*, const xmlChar*, int, int, const xmlChar*, xmlEnumeration* values) {
	auto* context = static_cast<xmlParserCtxt*>(userData);
	xmlFreeEnumeration(values);
	*static_cast<std::string*>(context->_private) = "the document declares attributes";
	context->wellFormed = 0;
	xmlStopParser(context);
}

bool IsKnownToXml(char16_t unit) {
	return unit >= 32 ? unit < 0xFFFE : unit == 9 || unit == 10 || unit == 13;
}

void AppendText(const xmlNode* siblings, std::string& text) {
	for (const xmlNode* node = siblings; node; node = node->next) {
		if (node->type == XML_ELEMENT_NODE)
			AppendText(node->children, text);
		else if (node->type == XML_CDATA_SECTION_NODE || node->type == XML_TEXT_NODE)
			text += reinterpret_cast<const char*>(node->content);
	}
}

template <class T>
T* Checked(T* made) {
	if (!made)
		throw TOutOfMemoryException();
	return made;
}

/// The library sets itself up on its first use, but not safely when two threads begin at once; doing it once here,
/// before any document exists, orders every later use behind it. It does nothing if the host has been first.
void SetUpLibrary() {
	static const bool isSetUp = (xmlInitParser(), true);
	(void)isSetUp;
}

} // namespace

std::string LibXml::Utf8(const TString& text) {
	std::string bytes;
	const std::u16string_view units = text.View();
	if (std::ranges::all_of(units, IsKnownToXml)) {
		text.ToBytes(bytes, kUtf8Encoding);
		return bytes;
	}
	std::u16string known(units);
	std::ranges::replace_if(known, std::not_fn(IsKnownToXml), u'?');
	return Utf8(TString(known));
}

TString LibXml::FromUtf8(const xmlChar* text) {
	return text ? TString(reinterpret_cast<const char*>(text), kUtf8Encoding) : TString();
}

TString LibXml::PathOf(const TString& name) {
	constexpr int32_t kSchemeLength = 7;
	constexpr int32_t kThisMachineLength = 16;
	TString path = name;
	if (name.StartsWith("file://"))
		path = FromUtf8(
		    TText(reinterpret_cast<xmlChar*>(Checked(xmlURIUnescapeString(Utf8(name).c_str(), 0, nullptr)))).get());
	if (path.StartsWithIgnoringCase("file://localhost/"))
		return path.SubString(kThisMachineLength);
	return path.StartsWith("file:///") ? path.SubString(kSchemeLength) : path;
}

LibXml::TDocument LibXml::NewDocument() {
	SetUpLibrary();
	return TDocument(Checked(xmlNewDoc(Chars("1.0"))));
}

LibXml::TDocument LibXml::Parse(std::string_view bytes, std::string& errors) {
	errors.clear();
	if (bytes.size() > kLargestDocument) {
		errors = "the document is too large";
		return nullptr;
	}
	if (HasTooManyAttributes(bytes)) {
		errors = "an element has too many attributes";
		return nullptr;
	}
	SetUpLibrary();
	const TParser parser(Checked(xmlNewParserCtxt()));
	parser->_private = &errors;
	parser->sax->serror = &CollectError;
	parser->sax->attributeDecl = &RefuseAttributeDeclaration;
	xmlDictSetLimit(parser->dict, kMostBytesOfNames);
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

TString LibXml::TextOf(const xmlNode* siblings) {
	std::string text;
	AppendText(siblings, text);
	return TString(text, kUtf8Encoding);
}

TString LibXml::Attribute(xmlNode* element, const TString& name) {
	const xmlAttr* attribute = xmlHasProp(element, Chars(Utf8(name)));
	return attribute ? TextOf(attribute->children) : TString();
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
