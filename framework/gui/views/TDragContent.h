// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPointT.h"

#include <cstdint>

class TGuiEventTarget;
class TView;

/// What a drop would do.
enum TDropMode : int32_t { kDropMove = 0, kDropCopy = 1, kDropCreateAlias = 2, kDropClone = 3 };

/// A picture that follows the mouse while something is dragged.
struct TDragImage {
	TPtr<TView> mpView;
	TPointT<int> mOffset;            // of the image from the mouse
	bool mStaysInsideTarget = false; // only if it is the only image
};

/// What is being dragged. Its images are children of the source's main frame for its life. Main thread.
class TDragContent : public TReferenceCountable, public TWeakReferenceable {
public:
	TDragContent(const TString& description, TGuiEventTarget* source, const TList<TDragImage>& images);
	~TDragContent() override;

	virtual bool CanMove() const { return false; }

	virtual bool CanCopy() const { return false; }

	virtual bool CanCreateAlias() const { return false; }

	virtual bool CanClone() const { return false; }

	/// Only the source and what it holds can be the target.
	virtual bool StaysInSourceView() const { return false; }

	const TString& Description() const noexcept { return mDescription; }

	/// Null once it is gone.
	TGuiEventTarget* Source() const noexcept { return mSource.Get(); }

	TGuiEventTarget* CurrentTarget() const noexcept { return mCurrentTarget.Get(); }

	void SetCurrentTarget(TGuiEventTarget* target);

	const TList<TDragImage>& Images() const noexcept { return mImages; }

private:
	const TString mDescription;
	TWeakPtr<TGuiEventTarget> mSource;
	TWeakPtr<TGuiEventTarget> mCurrentTarget;
	TList<TDragImage> mImages;
};
