// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What a class of views is called among key bindings, and which class it is a kind of. One object per class, with
/// static life; its address is its identity.
class TTypeRecord {
public:
	constexpr TTypeRecord(const char* name, const TTypeRecord* base) noexcept : mName(name), mpBase(base) {}

	TTypeRecord(const TTypeRecord&) = delete;
	TTypeRecord& operator=(const TTypeRecord&) = delete;

	const char* Name() const noexcept { return mName; }

	bool IsKindOf(const TTypeRecord& other) const noexcept {
		const TTypeRecord* record = this;
		while (record && record != &other)
			record = record->mpBase;
		return record != nullptr;
	}

private:
	const char* mName;
	const TTypeRecord* mpBase;
};
