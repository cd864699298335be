// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// What an event of a list is about, and which side of it a state stands for.
enum TListAction : int32_t {
	kWillInsert = 0, // undo state of an insertion
	kDidInsert = 1,  // its redo state
	kWillDelete = 2, // undo state of a removal
	kDidDelete = 3   // its redo state
};

/// Whether restoring puts the element in, rather than taking it out.
constexpr bool InsertsElement(int32_t action) noexcept {
	return action == kDidInsert || action == kWillDelete;
}

/// Takes the element out, or has `insert` put it in. A null list, or an index outside of it, is left alone.
template <class TList, class TInsert>
void RestoreElement(TList* list, int32_t index, int32_t action, const TInsert& insert) {
	const bool inserts = InsertsElement(action);
	if (!list || index < 0 || index >= list->Size() + (inserts ? 1 : 0))
		return;
	if (inserts)
		insert(*list, index);
	else
		list->Remove(index);
}

template <class TList>
void RestoreSwap(TList* list, int32_t index1, int32_t index2) {
	const auto isElement = [list](int32_t index) { return index >= 0 && index < list->Size(); };
	if (list && isElement(index1) && isElement(index2))
		list->Swap(index1, index2);
}
