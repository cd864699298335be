// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TBitmap.h"

#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "framework/graphics/surfaces/TGraphPort.h"

#include <map>
#include <mutex>
#include <string>

namespace {

/// "Icons/Locked.png" with "@2x" is "Icons/Locked@2x.png".
TString WithSuffix(const TString& path, const TString& suffix) {
	const TString extension = FileExtension(path);
	const int32_t dot = path.Length() - extension.Length() - 1;
	return extension.IsEmpty() ? path + suffix : path.SubString(0, dot) + suffix + "." + extension;
}

bool IsAbove(TUiScale scale, TUiScale limit) {
	return scale.mX * limit.mY > limit.mX * scale.mY;
}

TRectT<int> WholeOf(TPointT<int> size) {
	return {0, 0, size.mX, size.mY};
}

} // namespace

bool ResourceImageExists(const TString& path) {
	// Of the process; instances ask on threads of their own.
	static std::mutex sLock;
	static std::map<std::string, bool> sAnswers;
	const std::lock_guard lock(sLock);
	const auto [answer, isNew] = sAnswers.try_emplace(path.CString(kFileSystemEncoding), false);
	if (isNew)
		answer->second = TFile(path).Exists();
	return answer->second;
}

TString ResourceImagePath(const TString& fileName) {
	return ResourceImageExists(fileName) ? fileName : Folders::ResourceBase().Descend("Skin").FilePath(fileName);
}

TBitmap::TBitmap(const TString& fileName) : mFileName(fileName) {
	if (!fileName.IsEmpty() && !ResourceImageExists(ResourceImagePath(fileName)))
		throw TReadableException(TString::Format(
		    "Failed to load the resource file: '%s'.\n\nPlease reinstall the application using the latest installer "
		    "from "
		    "$MProductHomeURL !",
		    fileName));
}

TPointT<int> TBitmap::Size() {
	const TSurface& surface = LoadedSurface();
	return Unscaled(surface.Size(), surface.Scale());
}

TPointT<int> TBitmap::PixelSize() {
	return Size();
}

TSurface& TBitmap::LoadedSurface() {
	if (!mSurface)
		Load();
	return *mSurface;
}

void TBitmap::Load() {
	mSurface = nullptr;
	const TString path = ResourceImagePath(mFileName);
	const TUiScale scale = CurrentScale();
	if (IsAbove(scale, kUnscaled)) {
		const int number = scale.mX / scale.mY;
		LoadFrom(WithSuffix(path, TString::Format("@%dx", number)), scale);
	}
	if (!mSurface && IsAbove(scale, {5, 4}) && LoadFrom(WithSuffix(path, "@4x"), {4, 1}))
		ReduceOpaque(scale);
	if (!mSurface)
		LoadFrom(path, kUnscaled);
	if (!mSurface)
		throw TReadableException(TString::Format("Failed to load the resource file: '%s'.", mFileName));
	if (mHasKeyColor != 0)
		mSurface->SetKeyColor(mKeyColor);
}

bool TBitmap::LoadFrom(const TString& path, TUiScale scale) {
	if (!ResourceImageExists(path))
		return false;
	const bool ignoreAlpha = mFileName.WildcardMatches("*.bmp", true);
	mSurface = TGraphPort::Instance()->LoadImage(path, 0, {this, &TBitmap::DropPixels}, ignoreAlpha);
	mSurface->SetScale(scale);
	return true;
}

// Once instead of at each drawing. With a mask that is not done: the mask would have to be reduced with it.
void TBitmap::ReduceOpaque(TUiScale scale) {
	if (mSurface->AlphaMask())
		return;
	const TPointT<int> size = Unscaled(mSurface->Size(), mSurface->Scale());
	TPtr<TSurface> reduced =
	    TGraphPort::Instance()->CreateSurface(Scaled(size, scale), 0, {this, &TBitmap::DropPixels});
	reduced->SetScale(scale);
	reduced->DrawBitmap({0, 0}, *mSurface, WholeOf(size), false, 1.0f);
	mSurface = reduced;
}

void TBitmap::Draw(TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, float opacity) {
	TSurface& image = LoadedSurface();
	if (image.AlphaMask())
		surface.DrawMaskedBitmap(point, image, sourceRect, opacity);
	else
		surface.DrawBitmap(point, image, sourceRect, HasKeyColor(), opacity);
}

void TBitmap::DrawAt(TSurface& surface, TPointT<int> point, float opacity) {
	Draw(surface, point, WholeOf(Size()), opacity);
}

void TBitmap::DrawTinted(TSurface& surface, TPointT<int> point, const TColor& /*color*/, float opacity) {
	DrawAt(surface, point, opacity);
}

void TBitmap::SetKeyColor(bool enabled, const TColor& color) {
	mHasKeyColor = enabled ? 1 : 0;
	mKeyColor = color;
	if (enabled && mSurface)
		mSurface->SetKeyColor(color);
}

void TBitmap::DropPixels() {
	mSurface = nullptr;
}
