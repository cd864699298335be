// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/NameCommand.h"

#include "document/TVortelProgramNameGenerator.h"
#include "framework/foundation/values/TRandom.h"
#include "tools/vortel2/documents/TInstance.h"

std::string MakeNames(int32_t count, std::optional<uint32_t> seed) {
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument&) {
		const auto generator = MakePtr<TVortelProgramNameGenerator>();
		if (seed)
			TRandom::SetState(*seed);
		std::string lines;
		for (int32_t i = 0; i < count; ++i)
			lines += std::string(generator->Generate().CString()) + "\n";
		return lines;
	});
}
