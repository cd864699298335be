// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/TDocumentByteBag.h"

#include <utility>

TDocumentByteBagDataChangedObservable::TDocumentByteBagDataChangedObservable(TDocumentByteBag* bag) : mpByteBag(bag) {}

TDocumentByteBagDataChangedObservable::~TDocumentByteBagDataChangedObservable() = default;

TDocumentByteBag::TDocumentByteBag() {
	FinishDeclaration();
}

TDocumentByteBag::~TDocumentByteBag() = default;

void TDocumentByteBag::SetData(const void* bytes, std::size_t size) {
	if (!bytes && mData.empty())
		return;
	const auto* first = static_cast<const std::byte*>(bytes);
	TBytes data(first, first + (bytes ? size : 0));
	FireEvent<TDocumentByteBagDataChangedObservable>(mDataChanged, kWillChange, this);
	mData = std::move(data);
	FireEvent<TDocumentByteBagDataChangedObservable>(mDataChanged, kDidChange, this);
}
