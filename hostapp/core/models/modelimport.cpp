// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelimport.h"

#include "hostapp/core/models/gltfnodegraph.h"
#include "hostapp/core/scene/meshbuilder.h"
#include "hostapp/core/scene/vertexframes.h"

#include <QFile>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <cmath>
#include <exception>
#include <new>
#include <utility>

namespace vantrel::host {

namespace {

// Normals are generated smooth across edges flatter than this (degrees) and sharp beyond, as
// the shape generators shade their rounded corners and crisp edges.
constexpr float SmoothingAngle = 50.f;

// Before joining identical vertices, a triangle soup (such as STL or an OBJ without shared
// corners) holds up to three vertex records per triangle, so the importer's first count is
// allowed that much more than the finished mesh.
constexpr qint64 UnjoinedVertexFactor = 3;

// The node tree the importer built, against the node limits, before the steps that walk it
// recursively and multiply its data. A glTF graph was checked before reading; this holds every
// other format to the same limits. Walks without recursion.
bool checkNodeTree(const aiScene &scene, const ModelFile::Limits &limits, QString *problem)
{
    qint64 count = 0;
    std::vector<std::pair<const aiNode *, int>> pending; // a node and its level
    if (scene.mRootNode) {
        // The importer's own root holds the file's top nodes, which are level 1.
        for (unsigned int i = 0; i < scene.mRootNode->mNumChildren; ++i)
            pending.emplace_back(scene.mRootNode->mChildren[i], 1);
    }
    while (!pending.empty()) {
        const auto [node, level] = pending.back();
        pending.pop_back();
        if (level > limits.nodeDepth) {
            *problem = QStringLiteral("the nodes are nested more than %1 levels deep; models are "
                                      "limited to %1 levels of nodes")
                           .arg(limits.nodeDepth);
            return false;
        }
        if (++count > limits.nodeCount) {
            *problem = QStringLiteral("more than %1 nodes; models are limited to %1 nodes")
                           .arg(limits.nodeCount);
            return false;
        }
        for (unsigned int i = 0; i < node->mNumChildren; ++i)
            pending.emplace_back(node->mChildren[i], level + 1);
    }
    return true;
}

// The vertex records the finished mesh would have, counting a mesh once for each node that
// places it, as pre-transforming the vertices will. Stops counting beyond limit.
qint64 placedVertexCount(const aiScene &scene, qint64 limit)
{
    qint64 count = 0;
    std::vector<const aiNode *> pending;
    if (scene.mRootNode)
        pending.push_back(scene.mRootNode);
    while (!pending.empty() && count <= limit) {
        const aiNode *node = pending.back();
        pending.pop_back();
        for (unsigned int i = 0; i < node->mNumMeshes; ++i) {
            if (node->mMeshes[i] < scene.mNumMeshes)
                count += scene.mMeshes[node->mMeshes[i]]->mNumVertices;
        }
        for (unsigned int i = 0; i < node->mNumChildren; ++i)
            pending.push_back(node->mChildren[i]);
    }
    return count;
}

// Whether any face has a surface: polygons become triangles, points and lines are dropped.
bool hasSurface(const aiScene &scene)
{
    for (unsigned int m = 0; m < scene.mNumMeshes; ++m) {
        const aiMesh &mesh = *scene.mMeshes[m];
        for (unsigned int f = 0; f < mesh.mNumFaces; ++f) {
            if (mesh.mFaces[f].mNumIndices >= 3)
                return true;
        }
    }
    return false;
}

bool finite(const aiVector3D &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// One part of the mesh from one triangulated mesh of the file; false when a coordinate is not a
// finite number (a corrupt file that still passed the importer's checks).
bool convert(const aiMesh &source, std::vector<std::unique_ptr<MeshPart>> *parts)
{
    std::vector<VertexRecord> vertices(source.mNumVertices);
    const aiVector3D *texCoords = source.HasTextureCoords(0) ? source.mTextureCoords[0] : nullptr;
    for (unsigned int i = 0; i < source.mNumVertices; ++i) {
        VertexRecord &v = vertices[i];
        const aiVector3D &p = source.mVertices[i];
        if (!finite(p))
            return false;
        v.position[0] = p.x;
        v.position[1] = p.y;
        v.position[2] = p.z;
        // The importer generated normals where the file had none; a degenerate triangle can
        // still leave a zero or invalid one, and every host mesh promises unit normals.
        aiVector3D n = source.HasNormals() ? source.mNormals[i] : aiVector3D();
        const float length = n.Length();
        n = std::isfinite(length) && length > 1e-20f ? n / length : aiVector3D(0.f, 0.f, 1.f);
        v.normal[0] = n.x;
        v.normal[1] = n.y;
        v.normal[2] = n.z;
        if (texCoords) {
            v.texCoord[0] = std::isfinite(texCoords[i].x) ? texCoords[i].x : 0.f;
            v.texCoord[1] = std::isfinite(texCoords[i].y) ? texCoords[i].y : 0.f;
        }
    }
    std::vector<quint32> indices;
    indices.reserve(std::size_t(source.mNumFaces) * 3);
    for (unsigned int f = 0; f < source.mNumFaces; ++f) {
        const aiFace &face = source.mFaces[f];
        if (face.mNumIndices != 3)
            continue; // a point or line that sorting by primitive type left in a mixed mesh
        for (unsigned int k = 0; k < 3; ++k)
            indices.push_back(face.mIndices[k]);
    }
    if (indices.empty())
        return true;
    computeTangentFrames(vertices, indices);
    parts->push_back(std::make_unique<MeshPart>(std::move(vertices), std::move(indices)));
    return true;
}

// The importer catches every exception of its readers and keeps it, a failed allocation
// included, which would otherwise reach the user as the bare words "std::bad_alloc".
void rethrowIfOutOfMemory(const Assimp::Importer &importer)
{
    if (!importer.GetException())
        return;
    try {
        std::rethrow_exception(importer.GetException());
    } catch (const std::bad_alloc &) {
        throw;
    } catch (...) {
        // Any other failure has its words in the importer's error string.
    }
}

} // namespace

bool ModelImport::read(const QString &path,
                       const ModelFile::Limits &limits,
                       std::vector<std::unique_ptr<MeshPart>> *parts,
                       QString *problem)
{
    if (!GltfNodeGraph::check(path, limits.nodeDepth, limits.nodeCount, problem))
        return false;

    Assimp::Importer importer;
    // Points and lines have no surface to show; removing them leaves only triangle meshes.
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, SmoothingAngle);
    // The importer's own check reads an area below 1e-6 as degenerate, in the file's units: that
    // would eat the small triangles of a detailed model in metres.
    importer.SetPropertyBool(AI_CONFIG_PP_FD_CHECKAREA, false);
    importer.SetPropertyBool(AI_CONFIG_PP_FD_REMOVE, true);

    // Read and check the structure first, and count before the steps that multiply data
    // (baking instanced pieces into every placement), so that a small hostile file cannot make
    // those steps exhaust memory.
    const QByteArray nativePath = QFile::encodeName(path);
    const aiScene *scene
        = importer.ReadFile(nativePath.constData(), aiProcess_ValidateDataStructure);
    if (!scene) {
        rethrowIfOutOfMemory(importer);
        *problem = QString::fromUtf8(importer.GetErrorString());
        return false;
    }
    if (!checkNodeTree(*scene, limits, problem))
        return false;
    if (!hasSurface(*scene)) {
        *problem = QStringLiteral("contains no triangles");
        return false;
    }
    const qint64 rawLimit = UnjoinedVertexFactor * limits.vertexCount;
    if (placedVertexCount(*scene, rawLimit) > rawLimit) {
        *problem = QStringLiteral("more than %1 vertices before identical ones are joined; "
                                  "models are limited to %2 vertices")
                       .arg(rawLimit)
                       .arg(limits.vertexCount);
        return false;
    }
    scene = importer.ApplyPostProcessing(aiProcess_Triangulate | aiProcess_FindDegenerates
                                         | aiProcess_SortByPType | aiProcess_GenSmoothNormals
                                         | aiProcess_PreTransformVertices
                                         | aiProcess_JoinIdenticalVertices | aiProcess_FlipUVs);
    if (!scene) {
        rethrowIfOutOfMemory(importer);
        *problem = QString::fromUtf8(importer.GetErrorString());
        return false;
    }

    qint64 vertexCount = 0;
    qint64 triangleCount = 0;
    for (unsigned int m = 0; m < scene->mNumMeshes; ++m) {
        vertexCount += scene->mMeshes[m]->mNumVertices;
        triangleCount += scene->mMeshes[m]->mNumFaces;
    }
    if (vertexCount > limits.vertexCount) {
        *problem = QStringLiteral("%1 vertices; models are limited to %2")
                       .arg(vertexCount)
                       .arg(limits.vertexCount);
        return false;
    }
    if (triangleCount > limits.triangleCount) {
        *problem = QStringLiteral("%1 triangles; models are limited to %2")
                       .arg(triangleCount)
                       .arg(limits.triangleCount);
        return false;
    }

    for (unsigned int m = 0; m < scene->mNumMeshes; ++m) {
        if (!convert(*scene->mMeshes[m], parts)) {
            *problem = QStringLiteral("contains coordinates that are not finite numbers");
            return false;
        }
    }
    if (parts->empty()) {
        *problem = QStringLiteral("contains no triangles");
        return false;
    }
    return true;
}

} // namespace vantrel::host
