// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDevice.h"

/// Device 0: the randomizer row's own weight and the master stage. What is done to all parameters of an effect acts
/// here on the weights of all eleven devices and on nothing else. The filter members hold unused parameters.
class TVortelMasterDevice final : public TVortelDevice {
public:
	explicit TVortelMasterDevice(TVortelDocument* document);

	void Init() override;
	void Randomize() override;
	void Mutate() override;
	void PasteParameters(TVortelScene* source) override;
	void CopyParameters(TVortelScene* target) override;

private:
	template <class TAction>
	void ForEachWeight(TAction action);
};
