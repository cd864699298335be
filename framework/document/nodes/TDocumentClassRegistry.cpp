// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentClassRegistry.h"

#include "framework/document/nodes/TDocumentByteBag.h"
#include "framework/document/nodes/TDocumentList.h"
#include "framework/document/nodes/TNameRules.h"

#include <map>
#include <mutex>

namespace {

/// Knows the framework's own classes from the start.
struct TRegistry {
	TRegistry() {
		mFactories["DocumentByteBag"] = []() -> TDocumentNode* { return new TDocumentByteBag; };
		mFactories["DocumentList<DocumentByteBag>"] = []() -> TDocumentNode* {
			return new TDocumentList<TDocumentByteBag>;
		};
	}

	std::mutex mLock;
	std::map<TString, TDocumentClassRegistry::TFactory> mFactories;
};

TRegistry& Registry() {
	static TRegistry sRegistry;
	return sRegistry;
}

TDocumentClassRegistry::TFactory FindFactory(const TString& name) {
	TRegistry& registry = Registry();
	const std::lock_guard guard(registry.mLock);
	for (const TString& form :
	     {name, TNameRules::ClassNameToTypeName(name), TNameRules::ClassNameToElementName(name)}) {
		const auto found = registry.mFactories.find(form);
		if (found != registry.mFactories.end())
			return found->second;
	}
	return nullptr;
}

} // namespace

void TDocumentClassRegistry::RegisterClass(const TString& typeName, TFactory factory) {
	TRegistry& registry = Registry();
	const std::lock_guard guard(registry.mLock);
	registry.mFactories[TNameRules::ClassNameToTypeName(typeName)] = factory;
}

TPtr<TDocumentNode> TDocumentClassRegistry::CreateByTypeName(const TString& name) {
	const TFactory factory = FindFactory(name);
	return factory ? TPtr<TDocumentNode>(factory()) : TPtr<TDocumentNode>();
}
