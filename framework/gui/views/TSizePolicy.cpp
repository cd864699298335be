// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TSizePolicy.h"

namespace {

const TPtr<TLengthPolicy>& SharedManualLength() {
	static const TPtr<TLengthPolicy> sLength = MakePtr<TManualLength>();
	return sLength;
}

const TPtr<TLengthPolicy>& SharedFreeLength() {
	static const TPtr<TLengthPolicy> sLength = MakePtr<TDynamicLength>(0, TLengthPolicy::kNoLimit);
	return sLength;
}

const TPtr<TLengthPolicy>& Shared(const TPtr<TLengthPolicy>& length) {
	if (length->Equals(*SharedManualLength()))
		return SharedManualLength();
	return length->Equals(*SharedFreeLength()) ? SharedFreeLength() : length;
}

} // namespace

bool TLengthPolicy::Equals(const TLengthPolicy& other) const {
	if (this == &other || (IsManual() && other.IsManual()))
		return true;
	if (!IsDynamic() || !other.IsDynamic())
		return false;
	const auto& a = static_cast<const TDynamicLength&>(*this);
	const auto& b = static_cast<const TDynamicLength&>(other);
	return a.Minimum() == b.Minimum() && a.Maximum() == b.Maximum();
}

TSizePolicy::TSizePolicy() : mWidth(SharedManualLength()), mHeight(SharedManualLength()) {}

TSizePolicy::TSizePolicy(const TPtr<TLengthPolicy>& width, const TPtr<TLengthPolicy>& height)
    : mWidth(Shared(width)),
      mHeight(Shared(height)) {}

const TPtr<TSizePolicy>& TSizePolicy::Manual() {
	static const TPtr<TSizePolicy> sPolicy = MakePtr<TSizePolicy>();
	return sPolicy;
}
