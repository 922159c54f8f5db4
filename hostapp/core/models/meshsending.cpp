// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/meshsending.h"

#include "hostapp/core/models/modelheader.h"
#include "hostapp/core/scene/vertexframes.h"

#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace vantrel::host::meshsending {

namespace {

// The records and indices handed on at a time: small enough to stay in the processor's cache
// while the pipe takes them, large enough that each write is worth its call.
constexpr std::size_t PieceSize = 16384;

bool kept(const aiFace &face, unsigned int vertexCount)
{
    if (face.mNumIndices != 3) // a point or line that sorting by primitive type left in a mesh
        return false;
    const unsigned int *i = face.mIndices;
    return i[0] != i[1] && i[1] != i[2] && i[0] != i[2] && i[0] < vertexCount && i[1] < vertexCount
           && i[2] < vertexCount;
}

// Calls use(corners) with the three indices of each triangle of the mesh that is kept; stops
// and returns false when use does.
template<typename Use>
bool forEachKeptTriangle(const aiMesh &mesh, Use use)
{
    for (unsigned int f = 0; f < mesh.mNumFaces; ++f) {
        const aiFace &face = mesh.mFaces[f];
        if (kept(face, mesh.mNumVertices) && !use(face.mIndices))
            return false;
    }
    return true;
}

bool finite(const aiVector3D &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// A mesh to send and the indices it keeps.
struct Part
{
    const aiMesh *mesh;
    quint32 indexCount;
};

// The record of vertex i, its tangent frame left for the caller. Every host mesh promises
// unit normals; a degenerate corner can still leave a zero or invalid one.
void fillRecord(const aiMesh &mesh, unsigned int i, VertexRecord &v)
{
    const aiVector3D &p = mesh.mVertices[i];
    v.position[0] = p.x;
    v.position[1] = p.y;
    v.position[2] = p.z;
    aiVector3D n = mesh.mNormals ? mesh.mNormals[i] : aiVector3D();
    const float length = n.Length();
    n = std::isfinite(length) && length > 1e-20f ? n / length : aiVector3D(0.f, 0.f, 1.f);
    v.normal[0] = n.x;
    v.normal[1] = n.y;
    v.normal[2] = n.z;
    if (mesh.HasTextureCoords(0)) {
        // v runs down the image in every host mesh, up in the files.
        const aiVector3D &t = mesh.mTextureCoords[0][i];
        const float flipped = 1.f - t.y;
        v.texCoord[0] = std::isfinite(t.x) ? t.x : 0.f;
        v.texCoord[1] = std::isfinite(flipped) ? flipped : 0.f;
    }
}

bool sendIndices(const aiMesh &mesh, ModelImport::Sink &sink)
{
    std::vector<quint32> piece;
    piece.reserve(PieceSize * 3);
    const bool sent = forEachKeptTriangle(mesh, [&](const unsigned int *corners) {
        piece.insert(piece.end(), corners, corners + 3);
        if (piece.size() < PieceSize * 3)
            return true;
        const bool taken = sink.indices(piece.data(), piece.size());
        piece.clear();
        return taken;
    });
    return sent && (piece.empty() || sink.indices(piece.data(), piece.size()));
}

// A textured mesh: the frames follow the texture directions around each vertex.
bool sendTexturedPart(const Part &part, ModelImport::Sink &sink)
{
    const aiMesh &mesh = *part.mesh;
    std::vector<quint32> indices;
    indices.reserve(part.indexCount);
    forEachKeptTriangle(mesh, [&indices](const unsigned int *corners) {
        indices.insert(indices.end(), corners, corners + 3);
        return true;
    });
    std::vector<VertexRecord> vertices(mesh.mNumVertices);
    for (unsigned int i = 0; i < mesh.mNumVertices; ++i)
        fillRecord(mesh, i, vertices[i]);
    computeTangentFrames(vertices, indices);
    return sink.beginPart(mesh.mNumVertices, part.indexCount)
           && sink.vertices(vertices.data(), vertices.size())
           && sink.indices(indices.data(), indices.size());
}

bool sendPart(const Part &part, ModelImport::Sink &sink)
{
    const aiMesh &mesh = *part.mesh;
    if (mesh.HasTextureCoords(0))
        return sendTexturedPart(part, sink);
    if (!sink.beginPart(mesh.mNumVertices, part.indexCount))
        return false;
    std::vector<VertexRecord> piece(PieceSize);
    const Vector3 none;
    for (unsigned int start = 0; start < mesh.mNumVertices; start += PieceSize) {
        const unsigned int count = std::min<unsigned int>(PieceSize, mesh.mNumVertices - start);
        for (unsigned int k = 0; k < count; ++k) {
            VertexRecord &v = piece[k];
            v = VertexRecord{};
            fillRecord(mesh, start + k, v);
            completeTangentFrame(v, none, none);
        }
        if (!sink.vertices(piece.data(), count))
            return false;
    }
    return sendIndices(mesh, sink);
}

} // namespace

void addNormals(aiMesh &mesh)
{
    auto *normals = new aiVector3D[mesh.mNumVertices]; // zero vectors
    mesh.mNormals = normals;
    forEachKeptTriangle(mesh, [&mesh, normals](const unsigned int *i) {
        const aiVector3D &p0 = mesh.mVertices[i[0]];
        // Twice the triangle's area long, so larger triangles weigh more.
        const aiVector3D n = (mesh.mVertices[i[1]] - p0) ^ (mesh.mVertices[i[2]] - p0);
        normals[i[0]] += n;
        normals[i[1]] += n;
        normals[i[2]] += n;
        return true;
    });
}

ModelImport::Result send(const aiScene &scene,
                         const ModelFile::Limits &limits,
                         ModelImport::Sink &sink,
                         QString *problem)
{
    std::vector<Part> parts;
    qint64 vertexCount = 0, indexCount = 0;
    for (unsigned int m = 0; m < scene.mNumMeshes; ++m) {
        const aiMesh &mesh = *scene.mMeshes[m];
        quint32 indices = 0;
        forEachKeptTriangle(mesh, [&indices](const unsigned int *) {
            indices += 3;
            return true;
        });
        if (indices == 0)
            continue;
        if (!std::all_of(mesh.mVertices, mesh.mVertices + mesh.mNumVertices, finite)) {
            *problem = QStringLiteral("contains coordinates that are not finite numbers");
            return ModelImport::Result::Refused;
        }
        parts.push_back({&mesh, indices});
        vertexCount += mesh.mNumVertices;
        indexCount += indices;
    }
    if (parts.empty()) {
        *problem = QStringLiteral("contains no triangles");
        return ModelImport::Result::Refused;
    }
    if (vertexCount > limits.vertexCount) {
        *problem = ModelHeader::tooManyVertices(vertexCount, limits.vertexCount);
        return ModelImport::Result::Refused;
    }
    if (indexCount / 3 > limits.triangleCount) {
        *problem = ModelHeader::tooManyTriangles(indexCount / 3, limits.triangleCount);
        return ModelImport::Result::Refused;
    }
    if (!sink.begin(quint32(parts.size()), quint64(vertexCount), quint64(indexCount)))
        return ModelImport::Result::SinkGone;
    for (const Part &part : parts) {
        if (!sendPart(part, sink))
            return ModelImport::Result::SinkGone;
    }
    return ModelImport::Result::Read;
}

} // namespace vantrel::host::meshsending
