// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/basenode.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/undo/change.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vantrel::host {

BaseNode::BaseNode(Document *document, int type, QString name)
    : m_document(document)
    , m_type(type)
    , m_name(std::move(name))
{}

BaseNode::~BaseNode()
{
    for (INode *child : m_children)
        delete child;
}

void BaseNode::SetVisible(bool visible)
{
    if (visible == m_visible)
        return;
    recorder().apply(std::make_unique<ValueChange<BaseNode, bool>>(
        this, &BaseNode::applyVisible, m_visible, visible));
}

void BaseNode::SetName(const QString &name)
{
    if (name == m_name)
        return;
    recorder().apply(
        std::make_unique<ValueChange<BaseNode, QString>>(this, &BaseNode::applyName, m_name, name));
}

INode *BaseNode::CreateChildGroup(const QString &name)
{
    return m_document->addNode(this, std::make_unique<SceneNode>(m_document, name));
}

INode *BaseNode::CreateChildLight(const QString &name)
{
    return m_document->addNode(this, std::make_unique<LightNode>(m_document, name));
}

MeshNode *BaseNode::createChildShape(const QByteArray &generatorId, const QString &name)
{
    std::unique_ptr<ShapeGenerator> generator = createGenerator(generatorId);
    if (!generator)
        return nullptr;
    return createChildMesh(std::move(generator), name);
}

MeshNode *BaseNode::createChildMesh(std::unique_ptr<ShapeGenerator> generator, const QString &name)
{
    auto node = std::make_unique<MeshNode>(m_document, name, std::move(generator));
    return static_cast<MeshNode *>(m_document->addNode(this, std::move(node)));
}

ChangeRecorder &BaseNode::recorder() const
{
    return *m_document;
}

bool BaseNode::isInScene() const
{
    const BaseNode *node = this;
    while (node->m_parent)
        node = node->m_parent;
    return node == m_document->root();
}

bool BaseNode::isWithin(const BaseNode *other) const
{
    for (const BaseNode *node = this; node; node = node->m_parent) {
        if (node == other)
            return true;
    }
    return false;
}

int BaseNode::depth() const
{
    int levels = 0;
    for (const BaseNode *node = m_parent; node; node = node->m_parent)
        ++levels;
    return levels;
}

int BaseNode::height() const
{
    int deepest = 0;
    std::vector<std::pair<const BaseNode *, int>> pending{{this, 0}};
    while (!pending.empty()) {
        const auto [node, level] = pending.back();
        pending.pop_back();
        deepest = std::max(deepest, level);
        for (std::size_t i = 0; i < node->m_children.size(); ++i)
            pending.emplace_back(node->childNode(i), level + 1);
    }
    return deepest;
}

std::unique_ptr<BaseNode> BaseNode::cloneTree() const
{
    std::unique_ptr<BaseNode> copy = cloneNode();
    copy->m_children.reserve(m_children.size());
    for (INode *child : m_children) {
        std::unique_ptr<BaseNode> childCopy = static_cast<BaseNode *>(child)->cloneTree();
        childCopy->m_parent = copy.get();
        copy->m_children.push_back(childCopy.release());
    }
    return copy;
}

void BaseNode::copyBaseState(BaseNode &copy) const
{
    copy.m_visible = m_visible;
    copy.m_local = m_local;
}

RootNode::RootNode(Document *document)
    : BaseNode(document, RootNodeType, QStringLiteral("Scene"))
{}

std::unique_ptr<BaseNode> RootNode::cloneNode() const
{
    auto copy = std::make_unique<RootNode>(document());
    copyBaseState(*copy);
    return copy;
}

} // namespace vantrel::host
