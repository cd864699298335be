// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/XmlReading.h"

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TObservableList.h"
#include "framework/document/nodes/TXmlNode.h"
#include "framework/document/xml/LibXml.h"
#include "framework/document/xml/XmlText.h"

#include <map>
#include <vector>

namespace {

constexpr const char* kNestedDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr const char* kTypeAttribute = "type";

int32_t CountElements(const xmlNode* element) {
	int32_t count = 0;
	for (const xmlNode* child = element->children; child; child = child->next)
		count += child->type == XML_ELEMENT_NODE;
	return count;
}

/// The text of an element that holds one thing and nothing else. Blanks alone are layout.
TString OnlyText(const xmlNode* element) {
	const xmlNode* child = element->children;
	return child && !child->next && !xmlIsBlankNode(child) ? LibXml::TextOf(child) : TString();
}

void ReadAttributes(const TDocumentNode& node, xmlNode* element) {
	for (const TDocumentNode::TAttribute& attribute : node.Attributes())
		if (TSerializable* value = attribute.mpValue.Get(); value && LibXml::HasAttribute(element, attribute.mName))
			value->FromString(LibXml::Attribute(element, attribute.mName));
}

void ReadBytes(TDocumentByteBag& bag, const xmlNode* element) {
	std::vector<uint8_t> bytes;
	if (TString::Base64Decode(OnlyText(element), bytes))
		bag.SetData(bytes.data(), bytes.size());
}

void ReadChildren(TXmlNode& node, xmlNode* element);

void ReadValue(TSerializable& value, xmlNode* element) {
	if (value.IsNestedXml() && CountElements(element) > 0) {
		const std::string text = kNestedDeclaration + LibXml::Print(element->doc, element);
		return value.FromString(TString(text.c_str(), kUtf8Encoding));
	}
	const TString text = OnlyText(element);
	value.FromString(value.IsPlainText() ? text : XmlText::Decode(text));
}

void ReadMember(TXmlNode& child, xmlNode* element) {
	if (TDocumentListBase* list = child.DocumentList())
		list->Clear();
	if (TObservableListBase* list = child.ObservableList())
		list->Clear(CountElements(element));
	if (child.Value())
		return ReadValue(*child.Value(), element);
	if (TDocumentNode* node = child.Node()) {
		ReadAttributes(*node, element);
		if (node->IsByteBag())
			return ReadBytes(static_cast<TDocumentByteBag&>(*node), element);
	}
	ReadChildren(child, element);
}

void AppendElement(TXmlNode& list, xmlNode* element, const TString& name) {
	const bool hasType = LibXml::HasAttribute(element, kTypeAttribute);
	list.AppendElement(hasType ? LibXml::Attribute(element, kTypeAttribute) : name, hasType);
}

void ReadChildren(TXmlNode& node, xmlNode* element) {
	std::map<TString, int32_t> occurrences;
	int32_t index = 0;
	for (xmlNode* x = element->children; x; x = x->next) {
		if (x->type != XML_ELEMENT_NODE)
			continue;
		const TString name = LibXml::FromUtf8(x->name);
		if (node.HasBoundList())
			AppendElement(node, x, name);
		const int32_t occurrence = node.CountsOccurrences() ? occurrences[name]++ : -1;
		if (TXmlNode* child = node.FindChild(name, index, occurrence)) {
			ReadMember(*child, x);
			++index;
		}
	}
}

} // namespace

void XmlReading::ReadRoot(TDocumentNode& node, xmlNode* element) {
	ReadAttributes(node, element);
	if (node.IsByteBag())
		return ReadBytes(static_cast<TDocumentByteBag&>(node), element);
	TXmlNode root = TXmlNode::ForRoot(node, node.ElementName());
	ReadChildren(root, element);
}
