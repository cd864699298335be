// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/support/TVortelActiveScene.h"

#include <utility>

TVortelActiveScene::TVortelActiveScene(TVortelDocument& document, TClient& client)
    : mDocument(&document),
      mClient(client) {}

TPtr<TVortelActiveScene> TVortelActiveScene::Create(TVortelDocument& document, TClient& client) {
	return TPtr<TVortelActiveScene>(new TVortelActiveScene(document, client));
}

void TVortelActiveScene::Start() {
	mDocument->ActiveProgramIndex().AddObserver({this, &TVortelActiveScene::OnProgramIndex});
}

void TVortelActiveScene::OnProgramIndex(TObservable*, int32_t reason) {
	// By the index, not by the document's own view of it: whoever is told first, this must not show the program before.
	if (reason == kObserverAdded || reason == kDidChange)
		FollowProgram(mDocument->Program(mDocument->ActiveProgramIndex().Get()));
}

void TVortelActiveScene::OnSceneIndex(TObservable*, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		FollowScene(mpProgram->ActiveScene());
}

void TVortelActiveScene::FollowProgram(TVortelProgram* program) {
	if (program == mpProgram)
		return;
	TVortelProgram* previous = std::exchange(mpProgram, program);
	if (previous)
		previous->ActiveSceneIndex().RemoveObserver({this, &TVortelActiveScene::OnSceneIndex});
	mClient.OnProgramChanged(previous);
	program->ActiveSceneIndex().AddObserver({this, &TVortelActiveScene::OnSceneIndex});
}

void TVortelActiveScene::FollowScene(TVortelScene* scene) {
	if (scene != mpScene)
		mClient.OnSceneChanged(std::exchange(mpScene, scene));
}
