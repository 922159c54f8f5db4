// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/mesh.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QVariant>

#include <functional>
#include <memory>

namespace vantrel::host {

// The meshes built from shape parameters, so that shapes of one kind with the same parameter
// values share one mesh however they were made (one by one, from a scene file, by a script), the
// way a node already shares its mesh with its clones.
//
// A mesh is found by its key (meshKey below): the generator's identifier and class and every
// parameter value exactly, so a shared mesh is always the one build() makes for those values.
// Meshes are immutable, so sharing stays copy on write: a shape whose parameter changes looks up
// or builds another mesh, and whoever holds the old one keeps it.
//
// The cache holds its meshes weakly: a mesh lives as long as some shape (or an undo step's
// shape, or a picture being drawn) holds it, and a mesh that no shape uses any more is freed at
// once, as it was before meshes were shared. So memory follows the scene, never the history of
// what was built. Entries whose mesh is gone are swept whenever the table has doubled since the
// last sweep, which keeps the table within twice the number of live meshes.
//
// Lookups are serialised by a mutex, so any thread may ask; building runs outside it.
class VANTREL_HOST_EXPORT MeshCache
{
public:
    // The one cache all documents share.
    static MeshCache &instance();

    // The live mesh for key, or build()'s mesh, kept for whoever asks next. An empty key means
    // the mesh cannot be shared: build() is called and nothing is kept.
    MeshPtr get(const QByteArray &key, const std::function<MeshPtr()> &build);

    // How many of the kept meshes are still in use.
    int liveCount() const;

private:
    void sweep();

    mutable QMutex m_mutex;
    QHash<QByteArray, std::weak_ptr<const Mesh>> m_entries;
    int m_sweepAt = 64;
};

// The cache key of a generator's mesh: its identifier, its class and each of its values (names in
// order, each value's type and its exact bits, so 0 and -0 or two floats one bit apart differ).
// Empty when a value has a type without an exact encoding here, so that such a mesh is never
// shared rather than shared wrongly.
VANTREL_HOST_EXPORT QByteArray meshKey(const QByteArray &typeId,
                                       const char *className,
                                       const QHash<QByteArray, QVariant> &values);

} // namespace vantrel::host
