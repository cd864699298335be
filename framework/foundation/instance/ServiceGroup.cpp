// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/instance/ServiceGroup.h"

namespace {

void Start(const TService& service) {
	service.mSetCreateInEveryStorage(false);
	service.mCreate();
}

} // namespace

void StartServices(std::span<const TService> services) {
	if (services.empty())
		return;
	const TService& first = services.front();
	const bool wasThere = first.mExists();
	if (!wasThere)
		Start(first);
	try {
		StartServices(services.subspan(1));
	} catch (...) {
		if (!wasThere)
			first.mDestroy();
		throw;
	}
}

void EndServices(std::span<const TService> services) {
	for (auto service = services.rbegin(); service != services.rend(); ++service)
		if (service->mExists())
			service->mDestroy();
}
