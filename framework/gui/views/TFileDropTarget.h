// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"

/// A main frame on which files of other programs can be dropped. Main thread.
class TFileDropTarget {
public:
	/// Asked again and again while they are dragged over the window.
	virtual bool AcceptsFiles(const TList<TString>& paths) const = 0;
	/// What was accepted. One undo step.
	virtual void OnFilesDropped(const TList<TString>& paths) = 0;

protected:
	~TFileDropTarget() = default;
};
