// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TDefaultDragImage.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/surfaces/TGraphPort.h"

namespace {

constexpr int kFont = 0;
constexpr float kOpacity = 0.85f;

} // namespace

TDefaultDragImage::TDefaultDragImage(const TString& text) : mText(text) {
	TGraphPort* port = TGraphPort::Instance();
	if (TFont* font = port ? port->Font(kFont) : nullptr)
		SetSize(font->TextWidth(mText) + 8, font->TextHeight(mText) + 4);
}

void TDefaultDragImage::Draw(TSurface& port) {
	if (TSkin* skin = TSkin::Instance())
		skin->DrawDragText(port, AbsoluteRect(), mText, kFont, kOpacity);
}
