// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <memory>
#include <vector>

namespace vantrel::host {
class BaseNode;
class Document;
class MeshNode;
} // namespace vantrel::host

namespace vantrel::test {

// Element-wise comparisons with a tolerance, for EXPECT_TRUE(Near(...)) << "what is checked".
::testing::AssertionResult
Near(const Vector3 &actual, const Vector3 &expected, float tolerance = 1e-4f);
::testing::AssertionResult
Near(const Matrix &actual, const Matrix &expected, float tolerance = 1e-4f);

// A mesh node whose mesh is exactly the eight corners of the box from min to max (twelve
// triangles), so that tests know every vertex without depending on a shape generator.
host::MeshNode *
addBoxNode(host::BaseNode *parent, const QString &name, const Vector3 &min, const Vector3 &max);
// A mesh node whose vertices are exactly the given points (no triangles): shapes whose box is not
// their hull, such as a diamond.
host::MeshNode *
addPointsNode(host::BaseNode *parent, const QString &name, const std::vector<Vector3> &points);
// The lowest world-space z over every vertex of the node's subtree, computed here from the
// node matrices and vertices in double precision, independently of the host's box functions.
double lowestWorldZ(const host::BaseNode *node);

// A Collada model of one triangle; nodes is the XML of its scene's nodes, in which
// <instance_geometry url="#g"/> places the triangle.
QByteArray colladaModel(const QByteArray &nodes);
// Nodes nested levels deep around the triangle: deep enough, the importer's recursion through
// them overflows its stack (assimp 5.2), standing for any fault inside the importer.
QByteArray nestedColladaNodes(int levels);

// The canonical dump of the document (see scenedump.h).
QByteArray dump(const host::Document &document);
// The document's last step is exact: undo gives before back and redo the scene as it is now. Ends
// with the step undone and the history cleared, so that the next case starts from before.
void expectUndoRedoExact(host::Document &document, const QByteArray &before, const char *what);

} // namespace vantrel::test
