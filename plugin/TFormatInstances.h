// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class TAudioPluginShell;

/// The live instances of one host format: makes each with a storage of its own, brings the framework up for the first
/// and takes it down after the last. Any thread; it plays the main thread of an instance only inside the calls.
/// Instances of all formats come and go one by one, because a storage must not be made while the framework starts or
/// ends in another.
class TFormatInstances {
public:
	explicit constexpr TFormatInstances(int32_t hostKind) : mHostKind(hostKind) {}

	/// hostContext as CreatePluginShell takes it. Null, with a line in the log, if the instance cannot be made; throws
	/// when memory runs out.
	TAudioPluginShell* Create(void* hostContext);
	/// No call of the instance may run any more.
	void Release(TAudioPluginShell* shell);

private:
	void RetainFramework();
	void ReleaseFramework();

	const int32_t mHostKind;
	int32_t mCount = 0;
};
