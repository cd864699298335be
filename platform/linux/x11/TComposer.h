// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <memory>
#include <xkbcommon/xkbcommon-compose.h>

/// Dead keys and compose sequences by the table of the user's language, which is read at first need. The process's
/// locale is neither asked nor changed: the environment's names decide.
class TComposer {
public:
	enum class TResult { kPlain, kComposing, kComposed };

	/// kPlain: the symbol belongs to no sequence, or it broke one off and stands for itself.
	TResult Feed(xkb_context* context, xkb_keysym_t symbol);

	const TString& Composed() const { return mComposed; }

	void Reset();

private:
	struct TRelease {
		void operator()(xkb_compose_table* table) const { xkb_compose_table_unref(table); }

		void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
	};

	void ReadTable(xkb_context* context);

	std::unique_ptr<xkb_compose_table, TRelease> mpTable;
	std::unique_ptr<xkb_compose_state, TRelease> mpState;
	bool mHasTried = false;
	TString mComposed;
};
