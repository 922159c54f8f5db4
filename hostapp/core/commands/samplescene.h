// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QStringList>

#include <vector>

class INode;

namespace vantrel::host {

class Document;

// A small packaging shot: a gift box on the floor, a row of books and a DVD case hovering at
// different heights (one book tilted, the case turned), inside a turned group, and a key light.
// Each shape prints its example artwork (examples/artwork, which the build copies to
// share/vantrel/artwork); an image that cannot be read leaves its shape plain and adds its
// message to *problems when given. Nothing of it is recorded for undo. Returns the nodes a user
// would select to put on the floor.
VANTREL_HOST_EXPORT std::vector<INode *> buildSampleScene(Document &document,
                                                          QStringList *problems = nullptr);

} // namespace vantrel::host
