// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QtPlugin>

#include <vector>

class IMeshPart;
class QObject;

// A mesh node's geometry.
class IMeshNode
{
public:
    IMeshNode(const IMeshNode &) = delete;
    IMeshNode &operator=(const IMeshNode &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    // The mesh's box in its own space, before the node's scale; empty for a mesh without vertices.
    virtual TBBox<float> GetLocalBBox() const = 0;
    // The geometry pieces; valid until the mesh changes (a generator parameter is written).
    virtual const std::vector<IMeshPart *> &GetMeshParts() const = 0;
    // The shape generator that built the mesh; never null. It offers ISerializable and its
    // shape parameters as Qt properties.
    virtual QObject *GetGenerator() const = 0;

protected:
    IMeshNode() = default;
    virtual ~IMeshNode() = default;
};
#define VANTREL_IMESHNODE_IID "com.quillenbard.vantrel.IMeshNode"
Q_DECLARE_INTERFACE(IMeshNode, VANTREL_IMESHNODE_IID)
