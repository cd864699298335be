// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "tests/support/TFrameworkFixture.h"

/// A fresh document inside one instance.
class TDocumentFixture : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		mpDocument = MakePtr<TVortelDocument>();
	}

	void TearDown() override {
		mpDocument = nullptr;
		TFrameworkFixture::TearDown();
	}

	TPtr<TVortelDocument> mpDocument;
};
