// SPDX-License-Identifier: GPL-3.0-or-later
// Usage: make-textures FOLDER
// Makes the grey images of the texture set "Default": what a theme with bevels lets shine through its colours. Middle
// grey leaves a colour as it is.

#include <FreeImage.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iostream>
#include <string>

namespace {

/// x and y from 0 at the left and top to 1 at the right and bottom; 0 is black, 1 white.
using TShade = std::function<double(double x, double y)>;

struct TTexture {
	const char* mName;
	int mWidth;
	int mHeight;
	TShade mShade;
};

bool Save(const TTexture& texture, const std::string& path) {
	FIBITMAP* image = FreeImage_Allocate(texture.mWidth, texture.mHeight, 24);
	if (!image)
		return false;
	for (int y = 0; y < texture.mHeight; ++y)
		for (int x = 0; x < texture.mWidth; ++x) {
			const double shade = texture.mShade((x + 0.5) / texture.mWidth, (y + 0.5) / texture.mHeight);
			const auto level = static_cast<BYTE>(std::lround(std::clamp(shade, 0.0, 1.0) * 255.0));
			RGBQUAD grey{level, level, level, 0};
			// Rows are counted from the bottom.
			FreeImage_SetPixelColor(
			    image, static_cast<unsigned>(x), static_cast<unsigned>(texture.mHeight - 1 - y), &grey);
		}
	const bool isSaved = FreeImage_Save(FIF_BMP, image, path.c_str());
	FreeImage_Unload(image);
	return isSaved;
}

/// A soft arch: light from above, a little darker towards the lower edge.
double Raised(double t) {
	return 0.70 - 0.34 * t - 0.06 * std::cos(t * 6.283185307);
}

double Sunken(double t) {
	return 0.34 + 0.22 * t;
}

/// Three grooves around the middle, for the hand to find.
double Grip(double t) {
	const double place = (t - 0.5) * 16.0;
	return std::abs(place) < 3.0 ? -0.12 * std::cos(place * 3.14159265) : 0.0;
}

/// Grain without a pattern, the same in every build; it tiles.
TShade Grain(double depth) {
	return [depth](double x, double y) {
		auto hash = static_cast<uint32_t>(x * 64.0) * 374761393u + static_cast<uint32_t>(y * 64.0) * 668265263u;
		hash = (hash ^ hash >> 13) * 1274126177u;
		return 0.5 + depth * (static_cast<double>((hash ^ hash >> 16) & 0xFFFF) / 65535.0 - 0.5);
	};
}

double Round(double x, double y) {
	return 0.5 + 0.24 * (0.5 - y) + 0.10 * (0.5 - x);
}

const TTexture kTextures[] = {
    {"ButtonBlending", 32, 32, [](double, double y) { return Raised(y); }},
    {"RoundButtonBlending", 32, 32, [](double x, double y) { return Round(x, y); }},
    {"PressedRoundButtonBlending", 32, 32, [](double x, double y) { return 1.0 - Round(x, y); }},
    {"PressedButtonBlending", 32, 32, [](double, double y) { return Sunken(y); }},
    {"HScrollBarBlending", 32, 16, [](double, double y) { return Raised(y); }},
    {"VScrollBarBlending", 16, 32, [](double x, double) { return Raised(x); }},
    {"HSliderBlending", 32, 24, [](double x, double y) { return Raised(y) + Grip(x); }},
    {"VSliderBlending", 24, 32, [](double x, double y) { return Raised(x) + Grip(y); }},
    {"PanelBlending", 64, 128, [](double, double y) { return 0.58 - 0.16 * y; }},
    {"ControlBarBlending", 64, 24, [](double, double y) { return 0.62 - 0.24 * y; }},
    {"InnerBodyTexture", 64, 64, Grain(0.03)},
    {"BodyTexture", 64, 64, Grain(0.05)},
};

} // namespace

int main(int count, char** arguments) {
	if (count != 2) {
		std::cerr << "Usage: make-textures FOLDER\n";
		return 2;
	}
	for (const TTexture& texture : kTextures)
		if (!Save(texture, std::string(arguments[1]) + "/" + texture.mName + ".bmp")) {
			std::cerr << "Failed to write " << texture.mName << ".bmp\n";
			return 1;
		}
	return 0;
}
