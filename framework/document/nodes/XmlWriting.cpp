// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/XmlWriting.h"

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TXmlNode.h"
#include "framework/document/xml/LibXml.h"
#include "framework/document/xml/XmlText.h"
#include "framework/foundation/text/TReadableException.h"

namespace {

void Attach(xmlNode* parent, xmlNode* made) {
	LibXml::TNode node(made);
	if (!node || !xmlAddChild(parent, node.get()))
		throw TOutOfMemoryException();
	(void)node.release();
}

void WriteAttributes(const TDocumentNode& node, xmlNode* element) {
	for (const TDocumentNode::TAttribute& attribute : node.Attributes())
		if (const TSerializable* value = attribute.mpValue.Get())
			LibXml::SetAttribute(element, attribute.mName, value->ToString());
}

void WriteBytes(const TDocumentByteBag& bag, xmlNode* element) {
	const auto bytes = bag.Data();
	TString text;
	TString::Base64Encode({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, text);
	const std::string utf8 = LibXml::Utf8(text);
	Attach(element, xmlNewCDataBlock(element->doc, LibXml::Chars(utf8), static_cast<int>(utf8.size())));
}

/// The value's own document takes the element's place.
void WriteNested(const TXmlNode& node, xmlNode* element) {
	std::string errors;
	const LibXml::TDocument nested = LibXml::Parse(LibXml::Utf8(node.Text()), errors);
	xmlNode* nestedRoot = nested ? xmlDocGetRootElement(nested.get()) : nullptr;
	if (!nestedRoot)
		throw TReadableException("Failed to parse a nested XML structure!");
	LibXml::TNode copy(xmlDocCopyNode(nestedRoot, element->doc, 1));
	if (!copy)
		throw TOutOfMemoryException();
	xmlNodeSetName(copy.get(), LibXml::Chars(LibXml::Utf8(node.Name())));
	xmlUnsetProp(copy.get(), LibXml::Chars("doc_version"));
	xmlReplaceNode(element, copy.release());
	xmlFreeNode(element);
}

void WriteChildren(const TXmlNode& parent, xmlNode* target, bool writeEmptyElements);

void WriteValue(const TXmlNode& node, xmlNode* element) {
	const TSerializable& value = *node.Value();
	if (node.Text().IsEmpty())
		return;
	if (value.IsNestedXml())
		WriteNested(node, element);
	else
		LibXml::AddText(element, value.IsPlainText() ? node.Text() : XmlText::Encode(node.Text()));
}

void WriteNode(const TXmlNode& node, const TXmlNode& parent, xmlNode* target, bool writeEmptyElements) {
	if (!node.IsWritten())
		return;
	if (node.IsComment())
		return Attach(target, xmlNewDocComment(target->doc, LibXml::Chars(LibXml::Utf8(node.Name()))));
	if (!writeEmptyElements && node.IsEmpty(parent))
		return;
	xmlNode* element = LibXml::AddElement(target, node.Name());
	if (node.Value())
		return WriteValue(node, element);
	if (node.Node())
		WriteAttributes(*node.Node(), element);
	WriteChildren(node, element, writeEmptyElements);
}

void WriteChildren(const TXmlNode& parent, xmlNode* target, bool writeEmptyElements) {
	for (const TXmlNode& child : parent.Children())
		WriteNode(child, parent, target, writeEmptyElements);
	if (const TDocumentNode* node = parent.Node(); node && node->IsByteBag())
		WriteBytes(static_cast<const TDocumentByteBag&>(*node), target);
}

} // namespace

void XmlWriting::WriteRoot(TDocumentNode& node, xmlNode* element, bool writeEmptyElements) {
	WriteAttributes(node, element);
	WriteChildren(TXmlNode::ForRoot(node, node.ElementName()), element, writeEmptyElements);
}
