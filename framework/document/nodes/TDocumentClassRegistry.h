// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"

class TDocumentNode;

/// Makes nodes by the names of their classes, as files hold them. For the whole process. Any thread.
namespace TDocumentClassRegistry {

using TFactory = TDocumentNode* (*)();

/// Stored under the type name of the class name. Registering a class again replaces its factory.
void RegisterClass(const TString& typeName, TFactory factory);

template <class T>
void RegisterClass(const TString& typeName) {
	RegisterClass(typeName, []() -> TDocumentNode* { return new T; });
}

/// Takes the name as it stands, else its type name, else its element name. Null for an unknown one.
TPtr<TDocumentNode> CreateByTypeName(const TString& name);

} // namespace TDocumentClassRegistry
