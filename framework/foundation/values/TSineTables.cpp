// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/values/TSineTables.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

void FillTable(TSineTables::TTable& table, double step) {
	for (std::size_t i = 0; i < table.size(); ++i) {
		const double angle = static_cast<double>(i) * step;
		table[i] = {std::sin(angle), std::cos(angle)};
	}
}

} // namespace

TSineTables::TTable TSineTables::sCoarse;
TSineTables::TTable TSineTables::sFine;

void TSineTables::Fill() {
	FillTable(sCoarse, 2 * std::numbers::pi / kStepsPerTable);
	FillTable(sFine, 2 * std::numbers::pi / (kStepsPerTable * kStepsPerTable));
}
