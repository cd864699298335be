// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

class TVortelDocument;
struct TRenderOptions;

/// What would keep a render from changing its input, as far as the document and the options tell: in words, or empty.
/// Before the render. GUI thread.
std::string WhyUnchanged(TVortelDocument& document, const TRenderOptions& options, bool hasNotes);
