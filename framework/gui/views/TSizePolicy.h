// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"

/// What a layout may do to one axis of a view. Immutable and shared. Main thread.
class TLengthPolicy : public TReferenceCountable {
public:
	static constexpr int kNoLimit = -1;

	virtual bool IsManual() const { return false; }

	virtual bool IsRelative() const { return false; }

	virtual bool IsDynamic() const { return false; }

	virtual bool IsFixed() const { return false; }

	/// Both manual, or both dynamic with the same limits; a fixed length counts as dynamic.
	bool Equals(const TLengthPolicy& other) const;
};

/// Between a minimum and a maximum of logical pixels.
class TDynamicLength : public TLengthPolicy {
public:
	/// kNoLimit: no maximum.
	TDynamicLength(int minimum, int maximum) noexcept : mMinimum(minimum), mMaximum(maximum) {}

	int Minimum() const noexcept { return mMinimum; }

	int Maximum() const noexcept { return mMaximum; }

	bool HasMaximum() const noexcept { return mMaximum != kNoLimit; }

	bool IsDynamic() const override { return true; }

private:
	const int mMinimum;
	const int mMaximum;
};

class TFixedLength final : public TDynamicLength {
public:
	explicit TFixedLength(int length) noexcept : TDynamicLength(length, length) {}

	bool IsFixed() const override { return true; }
};

/// The view's present size stands.
class TManualLength final : public TLengthPolicy {
public:
	bool IsManual() const override { return true; }
};

/// What a layout may do to a view's size. A length equal to one of the two that everybody uses, manual and dynamic
/// without limits, is replaced by the shared one. Immutable. Main thread.
class TSizePolicy final : public TReferenceCountable {
public:
	/// Manual on both axes.
	TSizePolicy();
	/// The policy takes the lengths; none may be null.
	TSizePolicy(const TPtr<TLengthPolicy>& width, const TPtr<TLengthPolicy>& height);

	/// One for all views that start with the default.
	static const TPtr<TSizePolicy>& Manual();

	const TLengthPolicy& Width() const noexcept { return *mWidth; }

	const TLengthPolicy& Height() const noexcept { return *mHeight; }

	const TPtr<TLengthPolicy>& WidthPolicy() const noexcept { return mWidth; }

	const TPtr<TLengthPolicy>& HeightPolicy() const noexcept { return mHeight; }

	bool IsAnyDynamic() const { return mWidth->IsDynamic() || mHeight->IsDynamic(); }

	bool IsAnyRelative() const { return mWidth->IsRelative() || mHeight->IsRelative(); }

	bool Equals(const TSizePolicy& other) const {
		return mWidth->Equals(*other.mWidth) && mHeight->Equals(*other.mHeight);
	}

private:
	TPtr<TLengthPolicy> mWidth;
	TPtr<TLengthPolicy> mHeight;
};
