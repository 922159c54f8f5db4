// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenewriter.h"

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/jsontext.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/files/scenereader.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vantrel::host {

namespace {

namespace key = scenekey;

} // namespace

QString SceneWriter::selectionPath(const BaseNode *node)
{
    QStringList steps;
    for (; node->parentNode(); node = node->parentNode())
        steps.prepend(QString::number(GetNodePos(node)));
    return steps.join(QLatin1Char('/'));
}

void SceneWriter::cameraObject(const Camera &camera, JsonText &out)
{
    const QLatin1String next(", ");
    out.raw('{');
    out.key(key::aspectRatio).number(double(camera.GetAspectRatio())).raw(next);
    out.key(key::distance).number(double(camera.GetDistance())).raw(next);
    out.key(key::fieldOfView).number(double(camera.GetFieldOfView())).raw(next);
    out.key(key::pitch).number(double(camera.pitch())).raw(next);
    out.key(key::target).vector(camera.GetTarget()).raw(next);
    out.key(key::yaw).number(double(camera.yaw())).raw('}');
}

void SceneWriter::selectionArray(const Document &document, JsonText &out)
{
    out.raw('[');
    bool first = true;
    for (INode *node : document.GetSelection()) {
        if (!std::exchange(first, false))
            out.raw(QLatin1String(", "));
        out.string(selectionPath(static_cast<const BaseNode *>(node)));
    }
    out.raw(']');
}

void SceneWriter::nodeFields(const BaseNode &node, Style style, JsonText &out)
{
    const auto *light = qobject_cast<const LightNode *>(&node);
    const auto *mesh = qobject_cast<const MeshNode *>(&node);
    const auto *scene = qobject_cast<const SceneNode *>(&node);
    const QLatin1String next(", ");
    if (mesh && !mesh->artwork().isEmpty())
        out.key(key::artwork).string(mesh->artwork()).raw(next);
    if (mesh && mesh->artworkImage() && style == Style::Dump) {
        // The picture shown, not only its name: undo must bring back the image with the path.
        const QImage &image = *mesh->artworkImage();
        out.key(QLatin1String("artworkPixels")).raw('[').number(qint64(image.width()));
        out.raw(next).number(qint64(image.height())).raw(']').raw(next);
    }
    if (light)
        out.key(key::castShadows).boolean(light->GetCastShadows()).raw(next);
    if (mesh)
        out.key(key::generator)
            .string(QString::fromLatin1(mesh->generator()->GetTypeId()))
            .raw(next);
    if (light) {
        out.key(key::intensity).number(double(light->GetIntensity())).raw(next);
        out.key(key::lightMode).number(qint64(light->GetLightMode())).raw(next);
    }
    out.key(key::name).string(node.GetName()).raw(next);
    if (mesh) {
        out.key(key::params).raw('{');
        const QVariantMap values = mesh->generator()->parameters();
        for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
            if (it != values.constBegin())
                out.raw(next);
            out.string(it.key()).raw(QLatin1String(": ")).variant(*it);
        }
        out.raw('}').raw(next);
    }
    if (scene) {
        out.key(key::position).vector(scene->GetPosition()).raw(next);
        out.key(key::rotation).vector(scene->GetRotation()).raw(next);
        out.key(key::scale).vector(scene->GetScale()).raw(next);
    }
    if (light)
        out.key(key::shadowBlur).number(double(light->GetShadowBlur())).raw(next);
    if (style == Style::File) {
        const QLatin1String type = mesh ? key::shape : light ? key::light : key::group;
        out.key(key::type).raw('"').raw(type).raw('"').raw(next);
    } else {
        out.key(key::type).number(qint64(node.GetNodeType())).raw(next);
        if (mesh)
            out.key(QLatin1String("vertexCount"))
                .number(qint64(mesh->mesh()->vertexCount()))
                .raw(next);
    }
    out.key(key::visible).boolean(node.IsVisible()).raw(next);
}

void indent(JsonText &out, int level)
{
    out.spaces(4 * std::min(level, SceneWriter::MaximumIndentLevel));
}

void SceneWriter::writeChildren(const BaseNode &parent,
                                int level,
                                const NodeFields &fields,
                                JsonText &out)
{
    // The groups whose children are being written, each with the index of its next child.
    std::vector<std::pair<const BaseNode *, std::size_t>> open{{&parent, 0}};
    out.raw('[');
    while (!open.empty() && out.ok()) {
        auto &[node, next] = open.back();
        const int childLevel = level + int(open.size());
        if (next == node->GetChildren().size()) {
            if (next > 0) {
                out.raw('\n');
                indent(out, childLevel - 1);
            }
            out.raw(']');
            open.pop_back();
            if (!open.empty())
                out.raw('}'); // the group whose children these were
            continue;
        }
        out.raw(next == 0 ? QLatin1String("\n") : QLatin1String(",\n"));
        const BaseNode &child = *node->childNode(next++);
        indent(out, childLevel);
        out.raw('{');
        fields(child, out);
        out.key(key::children);
        if (child.GetChildren().empty()) {
            out.raw(QLatin1String("[]}"));
        } else {
            out.raw('[');
            open.emplace_back(&child, 0); // node and next are not used after this
        }
    }
}

void SceneWriter::write(const Document &document, JsonText &out)
{
    out.raw(QLatin1String("{\n"));
    indent(out, 1);
    out.key(key::ambient).number(double(document.GetAmbientIntensity())).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::camera);
    cameraObject(*document.camera(), out);
    out.raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::format).string(QLatin1String(SceneFile::FormatName)).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::lightingMode).number(qint64(document.lightingMode())).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::root).raw('{').key(key::children);
    writeChildren(
        *document.root(),
        1,
        [](const BaseNode &node, JsonText &text) { nodeFields(node, Style::File, text); },
        out);
    out.raw(QLatin1String("},\n"));
    indent(out, 1);
    out.key(key::selection);
    selectionArray(document, out);
    out.raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::version).number(qint64(SceneFile::CurrentVersion)).raw(QLatin1String("\n}\n"));
}

QByteArray SceneWriter::write(const Document &document)
{
    JsonText out;
    write(document, out);
    return out.text();
}

namespace {

using Refusal = SceneReader::Refusal;

// The first of the values beyond limit, as the reader would refuse it. Places are spelled only
// for a refusal, so a save's check costs next to nothing per node.
template<typename Place>
Refusal beyond(const Place &place, std::initializer_list<float> values, double limit)
{
    int i = 0;
    for (const float value : values) {
        if (!(std::abs(double(value)) <= limit)) {
            return Refusal{values.size() == 1 ? place()
                                              : QStringLiteral("%1[%2]").arg(place()).arg(i),
                           SceneReader::rangeProblem(double(value), limit)};
        }
        ++i;
    }
    return Refusal();
}

// The first field of one node the reader would refuse; field(name) spells its place.
template<typename Field>
Refusal checkNode(const BaseNode *child, const Field &field)
{
    const auto at = [&field](QLatin1String name) { return [&field, name] { return field(name); }; };
    Refusal refusal;
    if (const auto *scene = qobject_cast<const SceneNode *>(child)) {
        const Vector3 p = scene->GetPosition(), r = scene->GetRotation(), s = scene->GetScale();
        refusal = beyond(at(key::position), {p.x, p.y, p.z}, SceneFile::MaximumPosition);
        if (refusal.problem.isEmpty())
            refusal = beyond(at(key::rotation), {r.x, r.y, r.z}, SceneFile::MaximumRotation);
        if (refusal.problem.isEmpty())
            refusal = beyond(at(key::scale), {s.x, s.y, s.z}, SceneFile::MaximumScale);
    }
    if (const QString problem
        = SceneFile::textProblem(child->GetName(), SceneFile::MaximumNameLength);
        refusal.problem.isEmpty() && !problem.isEmpty())
        refusal = {field(key::name), QStringLiteral("the name %1").arg(problem)};
    const auto *mesh = qobject_cast<const MeshNode *>(child);
    const QVariantMap params = mesh ? mesh->generator()->parameters() : QVariantMap();
    for (auto it = params.constBegin(); it != params.constEnd() && refusal.problem.isEmpty();
         ++it) {
        if (it->userType() != QMetaType::QString)
            continue;
        if (const QString problem
            = SceneFile::textProblem(it->toString(), SceneFile::MaximumTextLength);
            !problem.isEmpty())
            refusal = {field(key::params) + QLatin1Char('.') + it.key(),
                       QStringLiteral("the text %1").arg(problem)};
    }
    if (const QString problem
        = mesh ? SceneFile::textProblem(mesh->artwork(), SceneFile::MaximumArtworkPathLength)
               : QString();
        refusal.problem.isEmpty() && !problem.isEmpty())
        refusal = {field(key::artwork), QStringLiteral("the text %1").arg(problem)};
    const auto *light = qobject_cast<const LightNode *>(child);
    if (light && refusal.problem.isEmpty())
        refusal = beyond(at(key::intensity), {light->GetIntensity()}, SceneFile::MaximumOther);
    if (light && refusal.problem.isEmpty())
        refusal = beyond(at(key::shadowBlur), {light->GetShadowBlur()}, SceneFile::MaximumOther);
    return refusal;
}

} // namespace

SceneReader::Refusal SceneWriter::check(const Document &document)
{
    // Depth first without recursion: the groups being walked, each with the number of its
    // children taken so far, so that the entries spell the place of the node the walk is at.
    std::vector<std::pair<const BaseNode *, std::size_t>> open{{document.root(), 0}};
    const auto here = [&open] {
        QString text = key::root;
        for (std::size_t k = 0; k + 1 < open.size(); ++k)
            text = SceneReader::childPlace(text, int(open[k].second) - 1);
        return text;
    };
    const auto field = [&here](QLatin1String name) { return here() + QLatin1Char('.') + name; };

    const Vector3 target = document.camera()->GetTarget();
    Refusal refusal = beyond([] { return QString(key::ambient); },
                             {document.GetAmbientIntensity()},
                             SceneFile::MaximumOther);
    if (refusal.problem.isEmpty()) {
        refusal = beyond([] { return QStringLiteral("camera.target"); },
                         {target.x, target.y, target.z},
                         SceneFile::MaximumPosition);
    }
    qint64 count = 0;
    while (refusal.problem.isEmpty() && !open.empty()) {
        auto &[node, next] = open.back();
        if (next == node->GetChildren().size()) {
            open.pop_back();
            continue;
        }
        const BaseNode *child = node->childNode(next++);
        open.emplace_back(child, 0);
        if (int(open.size()) - 1 > SceneFile::MaximumDepth) // the root's children are at depth 1
            return {here(), SceneReader::depthProblem()};
        if (++count > SceneFile::MaximumNodeCount)
            return {key::root,
                    QStringLiteral("more than %1 nodes").arg(SceneFile::MaximumNodeCount)};
        refusal = checkNode(child, field);
    }
    return refusal;
}

} // namespace vantrel::host
