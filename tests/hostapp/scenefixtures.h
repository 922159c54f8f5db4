// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Scenes the scene file tests save and read.

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/scenenode.h"

#include <QString>

#include <memory>

namespace vantrel::test {

// A new group of that name under the parent.
host::SceneNode *group(host::BaseNode *parent, const QString &name);

// A scene with every generator and every node kind, and awkward floats everywhere; every shape
// parameter is off its default, so that a round trip carries nothing by luck of defaults.
std::unique_ptr<host::Document> everythingScene();

} // namespace vantrel::test
