// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelimport.h"

#include "hostapp/core/models/gltfnodegraph.h"
#include "hostapp/core/models/meshsending.h"
#include "hostapp/core/models/modelheader.h"

#include <QFile>
#include <QFileInfo>

#include <assimp/DefaultIOSystem.h>
#include <assimp/IOStream.hpp>
#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
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

// The reader's progress in thousandths: the importer's reading of the file up to the first, its
// steps and the normals up to the second; the sending of the mesh is measured by the receiver.
constexpr unsigned int ReadThousandths = 700;
constexpr unsigned int PreparedThousandths = 1000;

class CountingFiles;

// A file the importer reads, counting the bytes it takes.
class CountingStream final : public Assimp::IOStream
{
public:
    CountingStream(Assimp::IOStream *file, CountingFiles &files)
        : m_file(file)
        , m_files(files)
    {}
    ~CountingStream() override { delete m_file; }
    CountingStream(const CountingStream &) = delete;
    CountingStream &operator=(const CountingStream &) = delete;

    size_t Read(void *buffer, size_t size, size_t count) override;
    size_t Write(const void *buffer, size_t size, size_t count) override
    {
        return m_file->Write(buffer, size, count);
    }
    aiReturn Seek(size_t offset, aiOrigin origin) override { return m_file->Seek(offset, origin); }
    size_t Tell() const override { return m_file->Tell(); }
    size_t FileSize() const override { return m_file->FileSize(); }
    void Flush() override { m_file->Flush(); }

private:
    Assimp::IOStream *const m_file;
    CountingFiles &m_files;
};

// The importer's files, with the share of the model file read so far reported to the sink:
// the importers of large formats read their files a piece at a time as they parse them.
class CountingFiles final : public Assimp::DefaultIOSystem
{
public:
    CountingFiles(const QString &path, ModelImport::Sink &sink)
        : m_size(std::max<qint64>(1, QFileInfo(path).size()))
        , m_sink(sink)
    {}

    Assimp::IOStream *Open(const char *file, const char *mode) override
    {
        Assimp::IOStream *stream = DefaultIOSystem::Open(file, mode);
        return stream ? new CountingStream(stream, *this) : nullptr;
    }
    void Close(Assimp::IOStream *stream) override { delete stream; }

    void count(std::size_t bytes)
    {
        m_read += bytes;
        const auto done = unsigned(
            std::min<double>(ReadThousandths, ReadThousandths * double(m_read) / m_size));
        if (done != m_reported) {
            m_reported = done;
            m_sink.progressed(done);
        }
    }

private:
    const qint64 m_size;
    ModelImport::Sink &m_sink;
    std::size_t m_read = 0;
    unsigned int m_reported = 0;
};

size_t CountingStream::Read(void *buffer, size_t size, size_t count)
{
    const size_t got = m_file->Read(buffer, size, count);
    m_files.count(got * size);
    return got;
}

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

// Whether every mesh's triangles share their corners, as a scan's do: the importer then made
// them from the file's own index lists, and there is nothing to join. A triangle soup (one
// vertex for every corner) joins first.
bool sharesCorners(const aiScene &scene)
{
    for (unsigned int m = 0; m < scene.mNumMeshes; ++m) {
        const aiMesh &mesh = *scene.mMeshes[m];
        qint64 corners = 0;
        for (unsigned int f = 0; f < mesh.mNumFaces; ++f)
            corners += mesh.mFaces[f].mNumIndices;
        if (mesh.mNumFaces > 0 && corners <= qint64(mesh.mNumVertices))
            return false;
    }
    return true;
}

// Whether the meshes already stand where the file places them: each listed once by the
// importer's root, which is not moved, and by no other node.
bool placedAsRead(const aiScene &scene)
{
    const aiNode *root = scene.mRootNode;
    if (!root || !root->mTransformation.IsIdentity() || root->mNumMeshes != scene.mNumMeshes)
        return false;
    std::vector<bool> listed(scene.mNumMeshes, false);
    for (unsigned int i = 0; i < root->mNumMeshes; ++i) {
        if (root->mMeshes[i] >= scene.mNumMeshes || listed[root->mMeshes[i]])
            return false;
        listed[root->mMeshes[i]] = true;
    }
    std::vector<const aiNode *> pending(root->mChildren, root->mChildren + root->mNumChildren);
    while (!pending.empty()) {
        const aiNode *node = pending.back();
        pending.pop_back();
        if (node->mNumMeshes > 0)
            return false;
        pending.insert(pending.end(), node->mChildren, node->mChildren + node->mNumChildren);
    }
    return true;
}

// The importer's steps a mesh needs, and no more: each of the others costs a pass over the
// whole mesh and, for some, a copy of it.
unsigned int postProcessing(const aiScene &scene, bool shared)
{
    if (shared) {
        // Triangles from polygons; points and lines dropped; the placements baked in only when
        // the file has any.
        return aiProcess_Triangulate | aiProcess_SortByPType
               | (placedAsRead(scene) ? 0u : unsigned(aiProcess_PreTransformVertices));
    }
    return aiProcess_Triangulate | aiProcess_FindDegenerates | aiProcess_SortByPType
           | aiProcess_GenSmoothNormals | aiProcess_PreTransformVertices
           | aiProcess_JoinIdenticalVertices;
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

ModelImport::Sink::~Sink() = default;

bool ModelImport::Parts::begin(quint32 partCount, quint64, quint64)
{
    m_parts.reserve(partCount);
    return true;
}

bool ModelImport::Parts::beginPart(quint32 vertexCount, quint32 indexCount)
{
    finishPart();
    m_vertices.reserve(vertexCount);
    m_indices.reserve(indexCount);
    m_inPart = true;
    return true;
}

bool ModelImport::Parts::vertices(const VertexRecord *records, std::size_t count)
{
    m_vertices.insert(m_vertices.end(), records, records + count);
    return true;
}

bool ModelImport::Parts::indices(const quint32 *indices, std::size_t count)
{
    m_indices.insert(m_indices.end(), indices, indices + count);
    return true;
}

void ModelImport::Parts::finishPart()
{
    if (m_inPart)
        m_parts.push_back(std::make_unique<MeshPart>(std::move(m_vertices), std::move(m_indices)));
    m_vertices = {};
    m_indices = {};
    m_inPart = false;
}

std::vector<std::unique_ptr<MeshPart>> ModelImport::Parts::take()
{
    finishPart();
    return std::move(m_parts);
}

ModelImport::Result ModelImport::read(const QString &path,
                                      const ModelFile::Limits &limits,
                                      Sink &sink,
                                      QString *problem)
{
    if (!ModelHeader::check(path, limits, problem)
        || !GltfNodeGraph::check(path, limits.nodeDepth, limits.nodeCount, problem))
        return Result::Refused;

    Assimp::Importer importer;
    // Points and lines have no surface to show; removing them leaves only triangle meshes.
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, SmoothingAngle);
    // The importer's own check reads an area below 1e-6 as degenerate, in the file's units: that
    // would eat the small triangles of a detailed model in metres.
    importer.SetPropertyBool(AI_CONFIG_PP_FD_CHECKAREA, false);
    importer.SetPropertyBool(AI_CONFIG_PP_FD_REMOVE, true);
    importer.SetIOHandler(new CountingFiles(path, sink)); // the importer owns it

    // Read and check the structure first, and count before the steps that multiply data
    // (baking instanced pieces into every placement), so that a small hostile file cannot make
    // those steps exhaust memory.
    const QByteArray nativePath = QFile::encodeName(path);
    const aiScene *scene
        = importer.ReadFile(nativePath.constData(), aiProcess_ValidateDataStructure);
    if (!scene) {
        rethrowIfOutOfMemory(importer);
        *problem = QString::fromUtf8(importer.GetErrorString());
        return Result::Refused;
    }
    sink.progressed(ReadThousandths);
    if (!checkNodeTree(*scene, limits, problem))
        return Result::Refused;
    if (!hasSurface(*scene)) {
        *problem = QStringLiteral("contains no triangles");
        return Result::Refused;
    }
    const bool shared = sharesCorners(*scene);
    // A soup's corners become far fewer vertices once joined; a shared mesh's are its vertices.
    const qint64 placedLimit
        = shared ? limits.vertexCount : UnjoinedVertexFactor * limits.vertexCount;
    if (const qint64 placed = placedVertexCount(*scene, placedLimit); placed > placedLimit) {
        *problem = shared ? ModelHeader::tooManyVertices(placed, limits.vertexCount)
                          : QStringLiteral("more than %1 vertices before identical ones are "
                                           "joined; models are limited to %2 vertices")
                                .arg(placedLimit)
                                .arg(limits.vertexCount);
        return Result::Refused;
    }
    scene = importer.ApplyPostProcessing(postProcessing(*scene, shared));
    if (!scene) {
        rethrowIfOutOfMemory(importer);
        *problem = QString::fromUtf8(importer.GetErrorString());
        return Result::Refused;
    }
    if (shared) {
        for (unsigned int m = 0; m < scene->mNumMeshes; ++m) {
            if (!scene->mMeshes[m]->HasNormals())
                meshsending::addNormals(*scene->mMeshes[m]);
        }
    }
    sink.progressed(PreparedThousandths);
    return meshsending::send(*scene, limits, sink, problem);
}

} // namespace vantrel::host
