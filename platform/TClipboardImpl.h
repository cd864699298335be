// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

/// The system's text clipboard. GUI thread. TPlatformClient::OnClipboardChanged tells of another program's new content.
class TClipboardImpl {
public:
	virtual ~TClipboardImpl() = default;

	virtual bool HasText() const = 0;
	/// Empty when there is no text, or when its owner does not answer within kLongestWait; no events are delivered
	/// meanwhile. Texts that are not valid are repaired, texts above kLongestText are cut.
	virtual TString Text() = 0;
	virtual void SetText(const TString& text) = 0;

	/// What was selected last, anywhere: the text that the middle button pastes. As above; empty on systems without it.
	virtual TString PrimaryText() = 0;
	/// To be told of each selection that the user makes in a text of ours.
	virtual void SetPrimaryText(const TString& text) = 0;

	static constexpr int kLongestWait = 500;              // milliseconds
	static constexpr int kLongestText = 16 * 1024 * 1024; // bytes
};
