// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Brings the foundation's services up in the current storage, and those of the process the first time. Called by an
/// adapter, inside its storage scope, for the first instance of its host format; the calling thread becomes the
/// instance's main thread.
void InitializeFramework();

/// Flushes all command queues of the current storage and takes the services down in reverse order. Called for the last
/// instance of a format, once for each InitializeFramework.
void FinalizeFramework();

/// Processors of the machine, asked once by InitializeFramework; at least 1.
int NumberOfProcessors() noexcept;
