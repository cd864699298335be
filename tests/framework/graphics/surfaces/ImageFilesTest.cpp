// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/PngQuantizer.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "tests/support/TGraphicsFixture.h"
#include "tests/support/TLogFolder.h"
#include "tests/support/TStringPrinter.h"

#include <FreeImage.h>
#include <functional>
#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// What the user reads; empty if nothing fails.
std::string FailureOf(const std::function<void()>& work) {
	try {
		work();
	} catch (const TReadableException& failure) {
		return failure.Message().CString();
	}
	return {};
}

class ImageFilesTest : public TGraphicsFixture {
protected:
	// The library for TIFF tells the console of all it meets.
	ImageFilesTest() { testing::internal::CaptureStderr(); }

	~ImageFilesTest() override { testing::internal::GetCapturedStderr(); }

	TPtr<TSurface> Load(const std::string& name, bool ignoreAlpha = false) {
		return Port().LoadImage(mFolder.Path(name), 0, {}, ignoreAlpha);
	}

	std::string LoadFailure(const std::string& name, bool ignoreAlpha = false) {
		return FailureOf([&] { Load(name, ignoreAlpha); });
	}

	/// Every pixel another one.
	static TPtr<TSurface> MakeImage(int width, int height) {
		TPtr<TSurface> surface = MakeSurface(width, height);
		for (int y = 0; y < height; ++y)
			for (int x = 0; x < width; ++x)
				surface->SetPixel({x, y}, {x * 7 % 256, y * 11 % 256, (x + y) * 5 % 256}, 1.0f);
		return surface;
	}

	/// One pixel, through the library itself, in a form that surfaces do not have.
	void WriteWith(const std::string& name, FREE_IMAGE_FORMAT format, FIBITMAP* bitmap, int flags = 0) {
		ASSERT_TRUE(FreeImage_Save(format, bitmap, mFolder.PathOf(name).c_str(), flags)) << name;
		FreeImage_Unload(bitmap);
	}

	TLogFolder mFolder;
};

TEST_F(ImageFilesTest, WhatIsSavedLoadsAgain) {
	const TPtr<TSurface> image = MakeImage(37, 5);
	image->SaveToFile(mFolder.Path("a.bmp"), TSurface::kBmp);
	image->SaveToFile(mFolder.Path("a.TIFF"), TSurface::kTiff);
	image->SaveToFile(mFolder.Path("a.Png"), TSurface::kPng);
	for (const char* name : {"a.bmp", "a.TIFF", "a.Png"}) {
		const TPtr<TSurface> loaded = Load(name);
		EXPECT_TRUE(AreEqual(*loaded, *image)) << name;
		EXPECT_FALSE(loaded->AlphaMask());
		EXPECT_TRUE(loaded->IsMapped() && loaded->IsLocked());
	}
	image->Clear({90, 60, 30});
	image->CreateAlphaMask(0.5f); // which a JPEG does not take
	image->SaveToFile(mFolder.Path("a.jpeg"), TSurface::kJpeg);
	EXPECT_NEAR(Load("a.jpeg")->Pixel({30, 2}).mRed, 90, 2);
	EXPECT_EQ(image->Pixel({30, 2}).mRed, 90);
}

TEST_F(ImageFilesTest, TransparencyGoesIntoTheMaskAndNotIntoThePixels) {
	const TPtr<TSurface> image = MakeImage(6, 2);
	image->CreateAlphaMask(1.0f);
	image->AlphaMask()->SetValue({4, 1}, 0.5f);
	image->SaveToFile(mFolder.Path("a.png"), TSurface::kPng);
	for (int time = 0; time < 2; ++time) { // read, then from the cache
		const TPtr<TSurface> loaded = Load("a.png");
		EXPECT_TRUE(AreEqual(*loaded, *image)); // all four bytes
		ASSERT_TRUE(loaded->AlphaMask());
		EXPECT_FLOAT_EQ(loaded->AlphaMask()->Value({4, 1}), 127 / 255.0f);
		EXPECT_EQ(loaded->AlphaMask()->Value({5, 1}), 1.0f);
	}
	EXPECT_FALSE(Load("a.png", true)->AlphaMask());

	const TPtr<TSurface> masked = MakeSurface(7, 2);
	masked->LoadAlphaMask(mFolder.Path("a.png"));
	EXPECT_FLOAT_EQ(masked->AlphaMask()->Value({4, 1}), 127 / 255.0f);
	masked->SetPixel({1, 0}, {10, 20, 31}, 1.0f);
	masked->SaveToFile(mFolder.Path("b.bmp"), TSurface::kBmp);
	MakeImage(2, 1)->SaveToFile(mFolder.Path("c.bmp"), TSurface::kBmp);
	masked->LoadAlphaMask(mFolder.Path("c.bmp")); // 7,0,5: 4
	EXPECT_FLOAT_EQ(masked->AlphaMask()->Value({1, 0}), 4 / 255.0f);
}

TEST_F(ImageFilesTest, PartsAreSavedInSurfacePixels) {
	const TPtr<TSurface> image = MakeSurface(8, 6, {8, 4});
	image->FillRect({3, 1, 1, 1}, {255, 0, 0}, 1.0f);
	image->SaveRectToFile(mFolder.Path("a.png"), {2, 1, 50, 1}, TSurface::kPng);
	const TPtr<TSurface> part = Load("a.png");
	EXPECT_EQ(
	    Picture(*part), "..##\n"
	                    "..##\n");
	image->SaveToFile(mFolder.Path("b.png"), TSurface::kPng);
	EXPECT_EQ(Load("b.png")->Size(), (TPointT<int>{8, 6}));
	EXPECT_EQ(
	    FailureOf([&] {
		    image->SaveRectToFile(mFolder.Path("c.png"), {50, 50, 2, 2}, TSurface::kPng);
	    }),
	    "Failed to create a bitmap.");
	EXPECT_EQ(
	    FailureOf([&] { image->SaveToFile(mFolder.Path("no/c.png"), TSurface::kPng); }), "Failed to save a bitmap.");
}

TEST_F(ImageFilesTest, PaletteImagesComeNearAndListTransparentColoursFirst) {
	const TPtr<TSurface> image = MakeSurface(60, 40);
	image->FillRect({0, 0, 60, 20}, {200, 40, 90}, 1.0f);
	image->FillRect({0, 20, 60, 20}, {10, 220, 60}, 1.0f);
	image->CreateAlphaMask(1.0f);
	for (int x = 0; x < 30; ++x)
		image->AlphaMask()->SetValue({x, 5}, 0.0f);
	image->SaveToFile(mFolder.Path("a.png"), TSurface::kPalettePng);

	const std::string bytes = mFolder.Read("a.png");
	EXPECT_EQ(bytes.substr(24, 2), std::string("\x08\x03")); // 8 bits, a palette
	const auto table = bytes.find("tRNS");
	ASSERT_NE(table, std::string::npos);
	const auto length = static_cast<unsigned char>(bytes[table - 1]);
	ASSERT_GT(length, 0u);
	for (std::size_t i = 0; i < length; ++i)
		EXPECT_NE(bytes[table + 4 + i], '\xFF') << i;

	const TPtr<TSurface> loaded = Load("a.png");
	const auto expectNear = [&](TPointT<int> point, const TColor& color) {
		EXPECT_NEAR(loaded->Pixel(point).mRed, color.mRed, 4);
		EXPECT_NEAR(loaded->Pixel(point).mGreen, color.mGreen, 4);
		EXPECT_NEAR(loaded->Pixel(point).mBlue, color.mBlue, 4);
	};
	expectNear({50, 10}, {200, 40, 90});
	expectNear({50, 30}, {10, 220, 60});
}

TEST_F(ImageFilesTest, QuantizingKeepsInterlacingAndRefusesWhatIsNoPng) {
	FIBITMAP* const bitmap = FreeImage_Allocate(20, 30, 24);
	WriteWith("a.png", FIF_PNG, bitmap, PNG_INTERLACED);
	QuantizePng(mFolder.Path("a.png"), mFolder.Path("b.png"), 1, 4);
	EXPECT_EQ(mFolder.Read("b.png").substr(24, 5), std::string("\x08\x03\0\0\x01", 5));
	EXPECT_EQ(mFolder.Read("a.png")[25], 2); // as it was

	const auto quantize = [&](const char* source, const char* target) {
		return FailureOf([&] { QuantizePng(mFolder.Path(source), mFolder.Path(target), 0, 256); });
	};
	mFolder.Write("bad.png", mFolder.Read("a.png").substr(0, 60));
	EXPECT_EQ(quantize("bad.png", "bad.png"), "Failed to read the source PNG image for conversion.");
	EXPECT_THAT(mFolder.Logged(), HasSubstr("Libpng error: 'Read Error'"));
	EXPECT_EQ(quantize("none.png", "c.png"), "Cannot open file for reading");
	EXPECT_EQ(quantize("a.png", "no/c.png"), "Can not open the PNG dest file for writing.");
}

TEST_F(ImageFilesTest, EveryDepthIsReadOrRefused) {
	const auto gray = [](int bits) {
		FIBITMAP* const bitmap = FreeImage_Allocate(3, 2, bits);
		RGBQUAD* const palette = FreeImage_GetPalette(bitmap);
		palette[1] = {10, 20, 30, 0}; // blue, green, red
		BYTE index = 1;
		FreeImage_SetPixelIndex(bitmap, 1, 1, &index); // counted from below
		return bitmap;
	};
	WriteWith("1.bmp", FIF_BMP, gray(1));
	WriteWith("4.bmp", FIF_BMP, gray(4));
	WriteWith("8.png", FIF_PNG, gray(8));
	WriteWith("8.tif", FIF_TIFF, gray(8));
	for (const char* name : {"1.bmp", "4.bmp", "8.png", "8.tif"})
		EXPECT_EQ(Load(name)->Pixel({1, 0}), (TColor{30, 20, 10})) << name;

	FIBITMAP* const sixteen = FreeImage_Allocate(3, 2, 16, FI16_565_RED_MASK, FI16_565_GREEN_MASK, FI16_565_BLUE_MASK);
	reinterpret_cast<WORD*>(FreeImage_GetScanLine(sixteen, 1))[1] = 0xF800;
	WriteWith("16.bmp", FIF_BMP, sixteen);
	EXPECT_EQ(Load("16.bmp")->Pixel({1, 0}), (TColor{255, 0, 0}));

	const auto deep = [](FREE_IMAGE_TYPE type) {
		FIBITMAP* const bitmap = FreeImage_AllocateT(type, 3, 2);
		auto* const words = reinterpret_cast<WORD*>(FreeImage_GetScanLine(bitmap, 1));
		words[0] = 0x8000;
		return bitmap;
	};
	WriteWith("grey.png", FIF_PNG, deep(FIT_UINT16));
	WriteWith("rgb.png", FIF_PNG, deep(FIT_RGB16));
	WriteWith("rgba.png", FIF_PNG, deep(FIT_RGBA16));
	EXPECT_EQ(Load("grey.png")->Pixel({0, 0}), (TColor{128, 128, 128}));
	EXPECT_EQ(Load("rgb.png")->Pixel({0, 0}), (TColor{128, 0, 0}));
	EXPECT_THAT(LoadFailure("rgba.png"), HasSubstr("rgba.png' (only 32bit RGBA images or any other format without"));
	EXPECT_EQ(Load("rgba.png", true)->Pixel({0, 0}), (TColor{128, 0, 0}));

	WriteWith("float.tif", FIF_TIFF, deep(FIT_FLOAT));
	WriteWith("rgbf.tif", FIF_TIFF, deep(FIT_RGBF));
	WriteWith("long.tif", FIF_TIFF, deep(FIT_UINT32));
	for (const char* name : {"float.tif", "rgbf.tif", "long.tif"})
		EXPECT_EQ(LoadFailure(name), "Internal Error: Failed to convert a bitmap to the screens format.") << name;
}

TEST_F(ImageFilesTest, WhatIsNoImageIsToldByName) {
	EXPECT_THAT(LoadFailure("a.gif"), EndsWith("a.gif' (unsupported file format)."));
	EXPECT_THAT(LoadFailure("none.png"), EndsWith("none.png' (file failed to open or maybe no longer exists)."));
	EXPECT_THAT(mFolder.Logged(), HasSubstr("GraphPort: Image import error: "));
	MakeImage(3, 3)->SaveToFile(mFolder.Path("really.bmp"), TSurface::kPng);
	EXPECT_THAT(LoadFailure("really.bmp"), HasSubstr("file failed to open"));
}

TEST_F(ImageFilesTest, CutImagesAreRefusedOrReadButNeverAnotherSize) {
	const std::pair<const char*, TSurface::TFileFormat> formats[] = {
	    {"a.bmp", TSurface::kBmp}, {"a.png", TSurface::kPng}, {"a.jpg", TSurface::kJpeg}, {"a.tif", TSurface::kTiff}};
	const TPtr<TSurface> image = MakeImage(60, 20);
	for (const auto& [file, format] : formats) {
		const char* const name = file;
		image->SaveToFile(mFolder.Path(name), format);
		const std::string whole = mFolder.Read(name);
		int refused = 0;
		for (std::size_t length = 0; length < whole.size(); length += 1 + whole.size() / 150) {
			mFolder.Write(name, whole.substr(0, length));
			const std::string failure = FailureOf([&] { EXPECT_EQ(Load(name)->Size(), image->Size()); });
			refused += failure.empty() ? 0 : 1;
		}
		EXPECT_GT(refused, 0) << name;
	}
}

TEST_F(ImageFilesTest, SizesAreNotBelieved) {
	const auto write = [&](const char* name, TSurface::TFileFormat format, const std::string& before,
	                       std::size_t distance) {
		MakeImage(4, 4)->SaveToFile(mFolder.Path(name), format);
		std::string bytes = mFolder.Read(name);
		bytes.replace(bytes.find(before) + distance, 4, "\x7F\xFF\x7F\xFF");
		mFolder.Write(name, bytes);
	};
	write("a.jpg", TSurface::kJpeg, "\xFF\xC0", 5); // 32767 squared
	EXPECT_THAT(LoadFailure("a.jpg"), EndsWith("a.jpg' (too many pixels)."));
	write("a.bmp", TSurface::kBmp, "BM", 17); // more rows than the file has
	EXPECT_THAT(LoadFailure("a.bmp"), HasSubstr("a.bmp' (file failed to open"));
}

TEST_F(ImageFilesTest, ImagesBelowAThousandPixelsAreKeptUntilTheReload) {
	const std::pair<const char*, TPointT<int>> images[] = {{"small.png", {27, 37}}, {"large.png", {25, 40}}};
	for (const auto& [name, size] : images) {
		MakeImage(size.mX, size.mY)->SaveToFile(mFolder.Path(name), TSurface::kPng);
		Load(name);
		mFolder.Write(name, "gone");
	}
	EXPECT_EQ(Port().NumberOfCachedBitmaps(), 1);
	EXPECT_TRUE(AreEqual(*Load("small.png"), *MakeImage(27, 37)));
	EXPECT_NE(LoadFailure("large.png"), "");
	Port().ReloadBitmaps();
	EXPECT_NE(LoadFailure("small.png"), "");
}

} // namespace
