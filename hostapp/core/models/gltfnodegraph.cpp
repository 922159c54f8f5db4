// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/gltfnodegraph.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace vantrel::host {

namespace {

constexpr quint32 BinaryMagic = 0x46546C67;   // "glTF", little-endian
constexpr quint32 JsonChunkType = 0x4E4F534A; // "JSON", the first chunk of a glTF 2 .glb
constexpr qint64 BinaryHeaderSize = 20;       // both versions, up to the JSON's first byte
constexpr int SniffSize = 256;                // bytes looked at to tell JSON text apart

// The graph as the importer reads it: the nodes each parent lists, in order and with repeats,
// and the top nodes of each scene.
struct Graph
{
    QStringList names; // as the file names them, for messages: nodes[3] or nodes["wheel"]
    std::vector<std::vector<int>> children;
    QStringList sceneNames;
    std::vector<std::vector<int>> scenes;
};

quint32 littleEndianAt(const QByteArray &bytes, int offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

// The JSON text of a glTF file, or nothing when the file is not glTF or its binary header is
// damaged (which the importer reports in its own words).
std::optional<QByteArray> jsonOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray head = file.peek(SniffSize);
    if (head.size() >= BinaryHeaderSize && littleEndianAt(head, 0) == BinaryMagic) {
        // glTF 2 puts the JSON chunk's length and type at 12 and 16; glTF 1 the JSON's length
        // and format (0 for JSON) at the same places.
        const quint32 version = littleEndianAt(head, 4);
        const quint32 length = littleEndianAt(head, 12);
        const quint32 type = littleEndianAt(head, 16);
        if ((version == 2 && type != JsonChunkType) || (version == 1 && type != 0)
            || (version != 1 && version != 2) || length > file.size() - BinaryHeaderSize)
            return std::nullopt;
        file.seek(BinaryHeaderSize);
        return file.read(length);
    }
    // Text: by name, or by a first character that only JSON among the importer's formats has.
    QByteArray start = head;
    if (start.startsWith("\xEF\xBB\xBF"))
        start.remove(0, 3);
    start = start.trimmed();
    if (!start.startsWith('{') && QFileInfo(path).suffix().compare("gltf", Qt::CaseInsensitive))
        return std::nullopt;
    QByteArray text = file.readAll();
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    return text;
}

// A node reference: a node number (glTF 2) or a node's name (glTF 1).
std::optional<int> nodeOf(const QJsonValue &value, const QHash<QString, int> &ids, int count)
{
    if (value.isString() && !ids.isEmpty()) {
        const auto found = ids.constFind(value.toString());
        return found == ids.constEnd() ? std::nullopt : std::optional<int>(*found);
    }
    const double number = value.toDouble(-1.);
    if (ids.isEmpty() && value.isDouble() && number >= 0. && number < count
        && number == double(int(number)))
        return int(number);
    return std::nullopt;
}

// The node references in list into *nodes; false with *problem naming the first that is not a
// node of the file.
bool readReferences(const QJsonValue &list,
                    const QString &where,
                    const QHash<QString, int> &ids,
                    int count,
                    std::vector<int> *nodes,
                    QString *problem)
{
    const QJsonArray array = list.toArray();
    nodes->reserve(std::size_t(array.size()));
    for (int i = 0; i < array.size(); ++i) {
        const std::optional<int> node = nodeOf(array.at(i), ids, count);
        if (!node) {
            *problem = QStringLiteral("%1[%2]: no node %3")
                           .arg(where)
                           .arg(i)
                           .arg(QString::fromUtf8(QJsonDocument(QJsonArray{array.at(i)})
                                                      .toJson(QJsonDocument::Compact)
                                                      .mid(1)
                                                      .chopped(1)));
            return false;
        }
        nodes->push_back(*node);
    }
    return true;
}

// The graph of a glTF 2 file (nodes and scenes are arrays, nodes referred to by number) or a
// glTF 1 file (objects, nodes referred to by name). False with *problem for a reference to a
// node that does not exist; an empty graph when the file has no nodes this check can read.
bool readGraph(const QJsonObject &root, Graph *graph, QString *problem)
{
    const QJsonValue nodes = root.value(QLatin1String("nodes"));
    const QJsonValue scenes = root.value(QLatin1String("scenes"));
    QHash<QString, int> ids; // glTF 1 only
    std::vector<QJsonObject> nodeObjects;
    if (nodes.isArray()) {
        const QJsonArray array = nodes.toArray();
        for (int i = 0; i < array.size(); ++i) {
            graph->names.append(QStringLiteral("nodes[%1]").arg(i));
            nodeObjects.push_back(array.at(i).toObject());
        }
    } else if (nodes.isObject()) {
        const QJsonObject object = nodes.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            ids.insert(it.key(), graph->names.size());
            graph->names.append(QStringLiteral("nodes[\"%1\"]").arg(it.key()));
            nodeObjects.push_back(it.value().toObject());
        }
    }
    const int count = graph->names.size();
    graph->children.resize(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        if (!readReferences(nodeObjects[std::size_t(i)].value(QLatin1String("children")),
                            graph->names[i] + QStringLiteral(".children"),
                            ids,
                            count,
                            &graph->children[std::size_t(i)],
                            problem))
            return false;
    }

    std::vector<std::pair<QString, QJsonValue>> sceneObjects;
    if (scenes.isArray()) {
        const QJsonArray array = scenes.toArray();
        for (int i = 0; i < array.size(); ++i)
            sceneObjects.emplace_back(QStringLiteral("scenes[%1]").arg(i), array.at(i));
    } else if (scenes.isObject()) {
        const QJsonObject object = scenes.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            sceneObjects.emplace_back(QStringLiteral("scenes[\"%1\"]").arg(it.key()), it.value());
    }
    for (const auto &[name, scene] : sceneObjects) {
        graph->sceneNames.append(name);
        graph->scenes.emplace_back();
        if (!readReferences(scene.toObject().value(QLatin1String("nodes")),
                            name + QStringLiteral(".nodes"),
                            ids,
                            count,
                            &graph->scenes.back(),
                            problem))
            return false;
    }
    if (graph->scenes.empty() && count > 0) {
        // Without scenes, the nodes that no other node lists are the tops.
        std::vector<bool> listed(std::size_t(count), false);
        for (const std::vector<int> &list : graph->children) {
            for (int child : list)
                listed[std::size_t(child)] = true;
        }
        graph->sceneNames.append(QStringLiteral("the nodes"));
        graph->scenes.emplace_back();
        for (int i = 0; i < count; ++i) {
            if (!listed[std::size_t(i)])
                graph->scenes.back().push_back(i);
        }
    }
    return true;
}

// Depth-first over the whole graph with a stack of its own, finishing every node after all the
// nodes it lists: a node's height (itself and the longest chain below it) and its count (itself
// and everything below it, once per path) come from its children's. Counts stop one past the
// limit, so that no sum can overflow however the paths multiply.
bool walk(const Graph &graph, int maximumDepth, qint64 maximumNodes, QString *problem)
{
    enum : quint8 { Unvisited, Open, Finished };
    const std::size_t count = graph.children.size();
    const qint64 cap = maximumNodes + 1;
    std::vector<quint8> state(count, Unvisited);
    std::vector<int> height(count, 0);
    std::vector<qint64> placements(count, 0);
    std::vector<std::pair<int, std::size_t>> stack; // a node and the next of its children to visit
    for (std::size_t start = 0; start < count; ++start) {
        if (state[start] != Unvisited)
            continue;
        state[start] = Open;
        stack.emplace_back(int(start), 0);
        while (!stack.empty()) {
            const int node = stack.back().first;
            const std::vector<int> &children = graph.children[std::size_t(node)];
            if (stack.back().second < children.size()) {
                const int child = children[stack.back().second++];
                if (state[std::size_t(child)] == Open) {
                    *problem = QStringLiteral("%1 lists %2, which contains it: the nodes form a "
                                              "cycle")
                                   .arg(graph.names[node], graph.names[child]);
                    return false;
                }
                if (state[std::size_t(child)] == Unvisited) {
                    state[std::size_t(child)] = Open;
                    stack.emplace_back(child, 0);
                }
                continue;
            }
            int below = 0;
            qint64 total = 1;
            for (int child : children) {
                below = std::max(below, height[std::size_t(child)]);
                total = std::min(cap, total + placements[std::size_t(child)]);
            }
            height[std::size_t(node)] = below + 1;
            placements[std::size_t(node)] = total;
            state[std::size_t(node)] = Finished;
            stack.pop_back();
            if (below + 1 > maximumDepth) {
                *problem = QStringLiteral("%1 starts a chain of more than %2 nested nodes; models "
                                          "are limited to %2 levels of nodes")
                               .arg(graph.names[node])
                               .arg(maximumDepth);
                return false;
            }
        }
    }
    for (std::size_t s = 0; s < graph.scenes.size(); ++s) {
        qint64 total = 0;
        for (int top : graph.scenes[s])
            total = std::min(cap, total + placements[std::size_t(top)]);
        if (total > maximumNodes) {
            *problem = QStringLiteral("%1 places more than %2 nodes, counting a node once for each "
                                      "path that reaches it; models are limited to %2 nodes")
                           .arg(graph.sceneNames[int(s)])
                           .arg(maximumNodes);
            return false;
        }
    }
    return true;
}

} // namespace

bool GltfNodeGraph::check(const QString &path,
                          int maximumDepth,
                          qint64 maximumNodes,
                          QString *problem)
{
    const std::optional<QByteArray> json = jsonOf(path);
    if (!json)
        return true;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return true; // the importer names the fault in its own words
    Graph graph;
    return readGraph(document.object(), &graph, problem)
           && walk(graph, maximumDepth, maximumNodes, problem);
}

} // namespace vantrel::host
