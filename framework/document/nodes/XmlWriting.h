// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TDocumentNode;
struct _xmlNode;

namespace XmlWriting {

/// Writes the node's attributes and members into the element. Without writeEmptyElements, what holds nothing is left
/// out: values without text, lists without elements, nodes of which every member is empty. Throws TReadableException.
void WriteRoot(TDocumentNode& node, _xmlNode* element, bool writeEmptyElements);

} // namespace XmlWriting
