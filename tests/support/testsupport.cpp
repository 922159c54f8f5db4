// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/support/testsupport.h"

#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vantrel::test {

::testing::AssertionResult Near(const Vector3 &actual, const Vector3 &expected, float tolerance)
{
    const float a[3] = {actual.x, actual.y, actual.z};
    const float e[3] = {expected.x, expected.y, expected.z};
    for (int i = 0; i < 3; ++i) {
        if (!(std::abs(a[i] - e[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "(" << a[0] << ", " << a[1] << ", " << a[2] << ") differs from (" << e[0]
                   << ", " << e[1] << ", " << e[2] << ") in component " << i;
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult Near(const Matrix &actual, const Matrix &expected, float tolerance)
{
    for (int i = 0; i < 16; ++i) {
        if (!(std::abs(actual[i] - expected[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "element " << i << " is " << actual[i] << ", expected " << expected[i];
        }
    }
    return ::testing::AssertionSuccess();
}

host::MeshNode *
addBoxNode(host::BaseNode *parent, const QString &name, const Vector3 &min, const Vector3 &max)
{
    std::vector<VertexRecord> vertices;
    for (int corner = 0; corner < 8; ++corner) {
        VertexRecord v{};
        v.position[0] = (corner & 1) ? max.x : min.x;
        v.position[1] = (corner & 2) ? max.y : min.y;
        v.position[2] = (corner & 4) ? max.z : min.z;
        vertices.push_back(v);
    }
    std::vector<quint32> indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    std::vector<std::unique_ptr<host::MeshPart>> parts;
    parts.push_back(std::make_unique<host::MeshPart>(std::move(vertices), std::move(indices)));
    auto generator = std::make_unique<host::ExternalModelGenerator>("generator.external.model");
    generator->setModelMesh(std::make_shared<const host::Mesh>(std::move(parts)));
    return parent->createChildMesh(std::move(generator), name);
}

host::MeshNode *
addPointsNode(host::BaseNode *parent, const QString &name, const std::vector<Vector3> &points)
{
    std::vector<VertexRecord> vertices;
    for (const Vector3 &p : points) {
        VertexRecord v{};
        v.position[0] = p.x;
        v.position[1] = p.y;
        v.position[2] = p.z;
        vertices.push_back(v);
    }
    std::vector<std::unique_ptr<host::MeshPart>> parts;
    parts.push_back(std::make_unique<host::MeshPart>(std::move(vertices), std::vector<quint32>()));
    auto generator = std::make_unique<host::ExternalModelGenerator>("generator.external.model");
    generator->setModelMesh(std::make_shared<const host::Mesh>(std::move(parts)));
    return parent->createChildMesh(std::move(generator), name);
}

namespace {

// Row-vector affine transform in double: p * M.
void transform(double p[3], const Matrix &m)
{
    const double in[3] = {p[0], p[1], p[2]};
    for (int c = 0; c < 3; ++c)
        p[c] = in[0] * m[c] + in[1] * m[4 + c] + in[2] * m[8 + c] + m[12 + c];
}

double lowestBelow(const INode *node, std::vector<const INode *> &chain)
{
    chain.push_back(node);
    double lowest = HUGE_VAL;
    if (const IMeshNode *mesh = qobject_cast<IMeshNode *>(node)) {
        for (const IMeshPart *part : mesh->GetMeshParts()) {
            for (const VertexRecord &v : part->GetVertices()) {
                double p[3] = {v.position[0], v.position[1], v.position[2]};
                for (auto it = chain.rbegin(); it != chain.rend(); ++it)
                    transform(p, (*it)->GetLocalMatrix());
                lowest = std::min(lowest, p[2]);
            }
        }
    }
    for (const INode *child : node->GetChildren())
        lowest = std::min(lowest, lowestBelow(child, chain));
    chain.pop_back();
    return lowest;
}

} // namespace

double lowestWorldZ(const host::BaseNode *node)
{
    // The chain from the root down to the node's parent, applied innermost first.
    std::vector<const INode *> chain;
    for (const INode *p = node->GetParent(); p; p = p->GetParent())
        chain.insert(chain.begin(), p);
    return lowestBelow(node, chain);
}

QByteArray dump(const host::Document &document)
{
    return host::dumpScene(document);
}

void expectUndoRedoExact(host::Document &document, const QByteArray &before, const char *what)
{
    const QByteArray after = dump(document);
    ASSERT_TRUE(document.undo()) << what;
    EXPECT_EQ(dump(document), before) << "undo of " << what;
    ASSERT_TRUE(document.redo()) << what;
    EXPECT_EQ(dump(document), after) << "redo of " << what;
    ASSERT_TRUE(document.undo()) << what;
    document.history().clear();
}

QByteArray colladaModel(const QByteArray &nodes)
{
    return R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 1 0 0 0 1 0</float_array>
<technique_common><accessor source="#pa" count="3" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common>
</source><vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s">)"
           + nodes + R"(</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#s"/></scene></COLLADA>)";
}

QByteArray nestedColladaNodes(int levels)
{
    return QByteArray("<node>").repeated(levels) + R"(<instance_geometry url="#g"/>)"
           + QByteArray("</node>").repeated(levels);
}

} // namespace vantrel::test
