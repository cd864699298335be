// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TextMetrics.h"

#include "framework/graphics/surfaces/TGraphPort.h"

#include <algorithm>

namespace TextMetrics {

namespace {

const char16_t kEllipsis[] = u"\u2026";

TFont* FontAt(int index) {
	TGraphPort* port = TGraphPort::Instance();
	return port ? port->Font(index) : nullptr;
}

/// `kept` units, of which the larger half stands at the beginning if both ends are kept. No character is cut in two.
TString WithEllipsis(const TString& text, int32_t length, int32_t kept, bool fromBothEnds) {
	const auto isLowHalf = [&](int32_t index) { return index < length && (text[index] & 0xFC00) == 0xDC00; };
	int32_t head = fromBothEnds ? kept - kept / 2 : kept;
	int32_t tail = fromBothEnds ? length - kept / 2 : length;
	if (isLowHalf(head))
		--head;
	if (isLowHalf(tail))
		++tail;
	return text.SubString(0, head) + TString(kEllipsis) + text.SubString(tail, length);
}

// A text much longer than the room is not measured to its end: half a pixel is less than any character.
TString Cut(const TString& text, int font, int width, bool fromBothEnds) {
	const int32_t length = text.Length();
	const bool isMuchTooLong = length > 2 * std::max(width, 0);
	if (!isMuchTooLong && Width(text, font) <= width)
		return text;
	if (width < Width(TString(kEllipsis), font))
		return TString();
	int32_t fits = 0;
	int32_t tooMany = std::min(length, 2 * width + 1);
	while (tooMany - fits > 1) {
		const int32_t middle = fits + (tooMany - fits) / 2;
		if (Width(WithEllipsis(text, length, middle, fromBothEnds), font) <= width)
			fits = middle;
		else
			tooMany = middle;
	}
	return WithEllipsis(text, length, fits, fromBothEnds);
}

} // namespace

int Width(const TString& text, int font) {
	TFont* found = FontAt(font);
	return found ? found->TextWidth(text) : 0;
}

int Height(const TString& text, int font) {
	TFont* found = FontAt(font);
	return found ? found->TextHeight(text) : 0;
}

int LineHeight(int font) {
	TFont* found = FontAt(font);
	return found ? found->LineHeight() : 0;
}

TString CutAtEnd(const TString& text, int font, int width) {
	return Cut(text, font, width, false);
}

TString CutInMiddle(const TString& text, int font, int width) {
	return Cut(text, font, width, true);
}

} // namespace TextMetrics
