// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/document/observables/TObserver.h"
#include "framework/document/observables/TWeakPtr.h"

/// Follows a document's active program and that program's active scene, for a view that shows one of them. Programs and
/// scenes live as long as their document. Held in a TPtr, so that notifications under way at the view's end find
/// nobody. Main thread.
class TVortelActiveScene final : public TObserver {
public:
	/// Who is told; once for each with the start. The previous one is null then.
	class TClient {
	public:
		virtual void OnProgramChanged(TVortelProgram* /*previous*/) {}

		virtual void OnSceneChanged(TVortelScene* /*previous*/) {}

	protected:
		~TClient() = default;
	};

	/// The client holds this, and nobody longer. It calls Start when it is ready to be told.
	static TPtr<TVortelActiveScene> Create(TVortelDocument& document, TClient& client);

	void Start();

	TVortelDocument* Document() const noexcept { return mDocument.Get(); }

	TVortelProgram* Program() const noexcept { return mDocument ? mpProgram : nullptr; }

	TVortelScene* Scene() const noexcept { return mDocument ? mpScene : nullptr; }

private:
	TVortelActiveScene(TVortelDocument& document, TClient& client);

	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnSceneIndex(TObservable* observable, int32_t reason);
	void FollowProgram(TVortelProgram* program);
	void FollowScene(TVortelScene* scene);

	TWeakPtr<TVortelDocument> mDocument;
	TClient& mClient;
	TVortelProgram* mpProgram = nullptr;
	TVortelScene* mpScene = nullptr;
};
