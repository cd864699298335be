// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/xml/NestedXml.h"

#include "framework/document/observables/TSerializable.h"
#include "framework/document/xml/LibXml.h"
#include "framework/foundation/text/TReadableException.h"

namespace {

TString WithRootName(const TString& text, const TString& rootName) {
	std::string errors;
	const LibXml::TDocument document = LibXml::Parse(LibXml::Utf8(text), errors);
	xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
	if (!root)
		throw TReadableException("Failed to parse a nested XML structure!");
	xmlNodeSetName(root, LibXml::Chars(LibXml::Utf8(rootName)));
	return TString(LibXml::Print(document.get(), errors).c_str(), kUtf8Encoding);
}

} // namespace

void NestedXml::Fill(TSerializable& value, const TString& text, const TString& rootName) {
	const bool isRenamed = value.IsNestedXml() && !rootName.IsEmpty() && !text.IsEmpty();
	value.FromString(isRenamed ? WithRootName(text, rootName) : text);
}
