// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUObjects.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

struct AUViewSize {
	int mWidth = 0; // pixels
	int mHeight = 0;

	bool operator==(const AUViewSize&) const = default;
};

/// A unit's editor as its host places it: in a window, out of it, in another. Main thread.
class AUView : public AUObject {
public:
	// The host's side

	/// The native window that the view lies in from now on; 0 takes it out.
	void MoveToWindow(uint64_t window) {
		mWindow = window;
		viewDidMoveToWindow();
	}

	AUViewSize Size() const { return mSize; }

	/// What the view insists on.
	AUViewSize FixedSize() const { return {mWidthConstraint, mHeightConstraint}; }

	/// Called when the view has got another size; empty for nobody.
	void SetOnSizeChanged(std::function<void(AUViewSize)> function) { mOnSizeChanged = std::move(function); }

protected:
	explicit AUView(AUViewSize size) : mSize(size) {}

	uint64_t Window() const { return mWindow; }

	void SetConstraints(AUViewSize size) {
		mWidthConstraint = size.mWidth;
		mHeightConstraint = size.mHeight;
	}

	void SetSize(AUViewSize size) {
		if (std::exchange(mSize, size) != size && mOnSizeChanged)
			mOnSizeChanged(size);
	}

	virtual void viewDidMoveToWindow() = 0;

private:
	AUViewSize mSize;
	int mWidthConstraint = 0;
	int mHeightConstraint = 0;
	uint64_t mWindow = 0;
	std::function<void(AUViewSize)> mOnSizeChanged;
};

/// Makes views. A host finds the class by the name that a unit tells.
class AUCocoaUIBase : public AUObject {
public:
	virtual UInt32 interfaceVersion() const = 0;
	/// Null where there is no such unit. The view belongs to the caller.
	virtual AUView* uiViewForAudioUnit(AudioUnit unit, AUViewSize preferredSize) = 0;

	/// A class that hosts can find, as long as it lives. Made while the code is loaded.
	class TClass {
	public:
		using TMaker = AUCocoaUIBase* (*)();

		TClass(std::u16string_view name, TMaker make) : mName(name), mMake(make), mpNext(std::exchange(sFirst, this)) {}

		~TClass() {
			TClass** place = &sFirst;
			while (*place && *place != this)
				place = &(*place)->mpNext;
			if (*place)
				*place = mpNext;
		}

		TClass(const TClass&) = delete;
		TClass& operator=(const TClass&) = delete;

		std::u16string_view Name() const { return mName; }

		/// A new object, which belongs to the caller; null for an unknown name.
		static AUCocoaUIBase* MakeNamed(std::u16string_view name) {
			for (const TClass* known = sFirst; known; known = known->mpNext)
				if (known->mName == name)
					return known->mMake();
			return nullptr;
		}

	private:
		static constinit inline TClass* sFirst = nullptr;

		const std::u16string_view mName;
		const TMaker mMake;
		TClass* mpNext;
	};
};
