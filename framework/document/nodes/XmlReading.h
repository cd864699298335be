// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TDocumentNode;
struct _xmlNode;

namespace XmlReading {

/// Pushes what the element holds into the node's attributes and members. What the node does not know is ignored.
/// Throws TReadableException where a list cannot make an element.
void ReadRoot(TDocumentNode& node, _xmlNode* element);

} // namespace XmlReading
