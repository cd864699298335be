// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"

#include <cstdint>

/// Keeps walks over a list in step with removals from it, where what a walk calls may remove elements and walk again.
///
///     for (TListWalks::TWalk walk(mWalks); walk.Index() < mItems.Count(); walk.Next())
///         mItems[walk.Index()]->Call();
class TListWalks {
	struct TPlace {
		int32_t mIndex = 0;
		bool mWasRemoval = false;
	};

public:
	class [[nodiscard]] TWalk {
	public:
		explicit TWalk(TListWalks& walks) : mWalks(walks), mDepth(walks.mPlaces.Count()) { walks.mPlaces.Append({}); }

		~TWalk() { mWalks.mPlaces.RemoveAt(mDepth); }

		TWalk(const TWalk&) = delete;
		TWalk& operator=(const TWalk&) = delete;

		int32_t Index() const noexcept { return Place().mIndex; }

		void Next() noexcept {
			++Place().mIndex;
			Place().mWasRemoval = false;
		}

		/// Whether anything was removed since the walk came here.
		bool WasRemoval() const noexcept { return Place().mWasRemoval; }

	private:
		TPlace& Place() const noexcept { return mWalks.mPlaces[mDepth]; }

		TListWalks& mWalks;
		const int32_t mDepth; // of walks inside walks
	};

	/// After the element at the index has gone.
	void OnRemoved(int32_t index) noexcept {
		for (TPlace& place : mPlaces) {
			place.mWasRemoval = true;
			if (index <= place.mIndex)
				--place.mIndex;
		}
	}

private:
	TList<TPlace> mPlaces; // of the walks that are under way; keeps its room
};
