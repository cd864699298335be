// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "shell/TAudioPluginShell.h"

#include <atomic>
#include <cstdint>
#include <vector>

/// The parameters that an adapter has published to its host, and the host edits that are open on them.
///
/// Watches every parameter of the document. A change is reported only when it came from the main thread, between
/// BeginHostEdits and EndHostEdits, and not from the host itself: one begin and one end for each touched parameter,
/// however often it changes. Owned by the adapter; main thread, but for CancelHostEdits.
class TPublishedParameters final : public TObserver {
public:
	class THost {
	public:
		virtual void BeginEdit(int32_t parameter) = 0;
		virtual void PerformEdit(int32_t parameter, float value) = 0;
		virtual void EndEdit(int32_t parameter) = 0;

	protected:
		~THost() = default;
	};

	TPublishedParameters(TAudioPluginShell::TDocument* document, THost* host);

	/// Follows the document's list of parameters; does nothing while that is the same.
	void Rebuild();
	/// Stops watching; the host hears nothing more.
	void Clear();

	void BeginHostEdits() { mHostEditsOpen.store(true, std::memory_order_relaxed); }

	void EndHostEdits();

	/// Any thread: changes are not reported any more, open edits stay open until the next EndHostEdits that ends any.
	void CancelHostEdits() { mHostEditsOpen.store(false, std::memory_order_relaxed); }

	/// Any thread: a change that the host makes, so that it is not reported back. Unknown parameters are ignored.
	void SetFromHost(int32_t parameter, float value);

	/// While the host replaces the whole state nothing is reported.
	class [[nodiscard]] TStateChange {
	public:
		explicit TStateChange(TPublishedParameters& parameters) : mParameters(parameters) {
			mParameters.mInStateChange.store(true, std::memory_order_relaxed);
		}

		~TStateChange() { mParameters.mInStateChange.store(false, std::memory_order_relaxed); }

		TStateChange(const TStateChange&) = delete;
		TStateChange& operator=(const TStateChange&) = delete;

	private:
		TPublishedParameters& mParameters;
	};

	bool IsInStateChange() const { return mInStateChange.load(std::memory_order_relaxed); }

private:
	struct TParameterInfo {
		TObservable* mpObservable = nullptr;
		int32_t mIndex = 0;
		bool mEditOpen = false;
		bool mUpdateFromHost = false; // by std::atomic_ref: hosts set a parameter on several threads at once
	};

	~TPublishedParameters() override = default;

	bool IsUpToDate() const;
	TParameterInfo* Find(const TObservable* observable);
	void OnParameter(TObservable* observable, int32_t reason);

	TAudioPluginShell::TDocument* mpDocument;
	THost* mpHost;
	std::vector<TParameterInfo> mInfos; // sorted by mpObservable
	std::atomic<bool> mHostEditsOpen{false};
	std::atomic<bool> mInStateChange{false};
};
