// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/AudioUnitInstances.h"

#include "plugin/CreatePluginShell.h"
#include "plugin/TFormatInstances.h"
#include "shell/audiounit/AudioUnitEntry.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"

namespace {

constinit TFormatInstances sInstances(kAudioUnitHost);

TAudioUnitPluginShell* Create(AudioComponentInstance instance) {
	return static_cast<TAudioUnitPluginShell*>(sInstances.Create(instance));
}

void Release(TAudioUnitPluginShell* shell) {
	sInstances.Release(shell);
}

} // namespace

AudioComponentPlugInInterface* AUPluginFactory(const AudioComponentDescription* /*description*/) {
	return AudioUnitEntry::NewPlugIn(&Create, &Release);
}
