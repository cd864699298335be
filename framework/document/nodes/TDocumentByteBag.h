// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/nodes/TDocumentNode.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/memory/TStlAllocator.h"

#include <cstddef>
#include <span>
#include <vector>

class TDocumentByteBagDataChangedObservable final : public TObservableOneShotBang {
public:
	explicit TDocumentByteBagDataChangedObservable(TDocumentByteBag* bag);
	~TDocumentByteBagDataChangedObservable() override;

	TDocumentByteBag* ByteBag() const noexcept { return mpByteBag.Get(); }

private:
	TWeakPtr<TDocumentByteBag> mpByteBag;
};

/// A node that holds a block of bytes. A change fires a TDocumentByteBagDataChangedObservable, before and after, for
/// the audience of DataChanged().
class TDocumentByteBag : public TDocumentNode {
public:
	TDocumentByteBag();
	~TDocumentByteBag() override;

	/// Copies. Null bytes empty the bag; an empty bag then stays untouched.
	void SetData(const void* bytes, std::size_t size);

	std::span<const std::byte> Data() const noexcept { return mData; }

	TObservableBang& DataChanged() noexcept { return mDataChanged; }

	bool IsByteBag() const final { return true; }

private:
	using TBytes = std::vector<std::byte, TStlAllocator<std::byte>>;

	TBytes mData;
	TObservableBang mDataChanged;
};
