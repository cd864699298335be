// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TDocumentClassRegistry.h"

#include "framework/document/TDocumentByteBag.h"
#include "framework/document/TDocumentList.h"
#include "framework/document/TNameRules.h"
#include "framework/document/TRestorableState.h"

#include <map>
#include <mutex>

namespace {

/// Knows the classes of the framework itself from the start.
struct TRegistry {
	TRegistry() {
		for (const TRestorableState::TClass& state : TRestorableState::Classes())
			mFactories[state.mTypeName] = state.mNodeFactory;
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
