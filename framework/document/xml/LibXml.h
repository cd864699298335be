// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlversion.h>
#include <libxml/xpath.h>
#include <memory>
#include <string>
#include <string_view>

/// libxml2 with ownership. The library is shared with the host, so nothing of it that holds for the whole process is
/// touched: everything goes through contexts, and messages are taken from the context of the call.
namespace LibXml {

struct TDeleter {
	void operator()(xmlDoc* document) const { xmlFreeDoc(document); }

	void operator()(xmlNode* node) const { xmlFreeNode(node); }

	void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }

	void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }

	void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }

	void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }

	void operator()(xmlChar* text) const { xmlFree(text); }
};

using TDocument = std::unique_ptr<xmlDoc, TDeleter>;
using TNode = std::unique_ptr<xmlNode, TDeleter>;
using TText = std::unique_ptr<xmlChar, TDeleter>;

/// What a callback for errors is given.
#if LIBXML_VERSION >= 21200
using TError = const xmlError;
#else
using TError = xmlError;
#endif

inline const xmlChar* Chars(const std::string& text) {
	return reinterpret_cast<const xmlChar*>(text.c_str());
}

/// What XML does not know, such as a zero or half a surrogate pair, becomes "?".
std::string Utf8(const TString& text);
/// Null gives an empty text.
TString FromUtf8(const xmlChar* text);

/// Larger documents are refused: the fullest bank takes an eighth of this.
inline constexpr std::size_t kLargestDocument = std::size_t{64} << 20;

/// An empty document. Throws TOutOfMemoryException.
TDocument NewDocument();

/// The path that a name of a file stands for: a file URL of this machine is resolved, anything else is one already.
TString PathOf(const TString& name);

/// Blank text between elements is dropped, nothing is fetched, no entity but the built-in ones is expanded. Null, with
/// what the parser says, when the bytes are no XML or would take longer than their number explains.
TDocument Parse(std::string_view bytes, std::string& errors);

/// The text of the document as it stands in a file. Empty, with a reason, on failure.
std::string Print(xmlDoc* document, std::string& errors);

/// The element alone, without a declaration.
std::string Print(xmlDoc* document, xmlNode* element);

/// The text of these siblings and of what is in them. References to entities are not followed: a few lines of them
/// could stand for gigabytes.
TString TextOf(const xmlNode* siblings);

/// Empty without one.
TString Attribute(xmlNode* element, const TString& name);
bool HasAttribute(xmlNode* element, const TString& name);
void SetAttribute(xmlNode* element, const TString& name, const TString& value);

/// Throws TOutOfMemoryException.
xmlNode* AddElement(xmlNode* parent, const TString& name);
void AddText(xmlNode* element, const TString& text);

} // namespace LibXml
