// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scenewriter.h"

#include "hostapp/core/basenode.h"
#include "hostapp/core/document.h"
#include "hostapp/core/jsontext.h"
#include "hostapp/core/lightnode.h"
#include "hostapp/core/meshnode.h"
#include "hostapp/core/scenefile.h"
#include "hostapp/core/scenereader.h"

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
    for (; node->parentNode(); node = node->parentNode()) {
        const std::vector<INode *> &siblings = node->parentNode()->GetChildren();
        steps.prepend(
            QString::number(std::find(siblings.begin(), siblings.end(), node) - siblings.begin()));
    }
    return steps.join(QLatin1Char('/'));
}

void SceneWriter::nodeFields(const BaseNode &node, Style style, JsonText &out)
{
    const auto *light = qobject_cast<const LightNode *>(&node);
    const auto *mesh = qobject_cast<const MeshNode *>(&node);
    const auto *scene = qobject_cast<const SceneNode *>(&node);
    const QLatin1String next(", ");
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
    const Camera &camera = *document.camera();
    out.raw(QLatin1String("{\n"));
    indent(out, 1);
    out.key(key::ambient).number(double(document.GetAmbientIntensity())).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::camera).raw('{');
    out.key(key::aspectRatio).number(double(camera.GetAspectRatio())).raw(QLatin1String(", "));
    out.key(key::distance).number(double(camera.GetDistance())).raw(QLatin1String(", "));
    out.key(key::fieldOfView).number(double(camera.GetFieldOfView())).raw(QLatin1String(", "));
    out.key(key::pitch).number(double(camera.pitch())).raw(QLatin1String(", "));
    out.key(key::target).vector(camera.GetTarget());
    out.raw(QLatin1String(", ")).key(key::yaw).number(double(camera.yaw()));
    out.raw(QLatin1String("},\n"));
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
    out.key(key::selection).raw('[');
    bool first = true;
    for (INode *node : document.GetSelection()) {
        if (!std::exchange(first, false))
            out.raw(QLatin1String(", "));
        out.string(selectionPath(static_cast<const BaseNode *>(node)));
    }
    out.raw(QLatin1String("],\n"));
    indent(out, 1);
    out.key(key::version).number(qint64(SceneFile::CurrentVersion)).raw(QLatin1String("\n}\n"));
}

QByteArray SceneWriter::write(const Document &document)
{
    JsonText out;
    write(document, out);
    return out.text();
}

SceneReader::Refusal SceneWriter::check(const Document &document)
{
    using Refusal = SceneReader::Refusal;
    // Depth first without recursion: the groups being walked, each with the number of its
    // children taken so far, so that the first entries spell the place of a node.
    std::vector<std::pair<const BaseNode *, std::size_t>> open{{document.root(), 0}};
    const auto place = [&open](std::size_t entries) {
        QString text = key::root;
        for (std::size_t k = 0; k < entries; ++k)
            text = SceneReader::childPlace(text, int(open[k].second) - 1);
        return text;
    };
    // The first of the values beyond limit, as the reader would refuse it.
    const auto check = [](const QString &at, std::initializer_list<float> values, double limit) {
        int i = 0;
        for (const float value : values) {
            if (!(std::abs(double(value)) <= limit)) {
                const QString where
                    = values.size() == 1 ? at : QStringLiteral("%1[%2]").arg(at).arg(i);
                return Refusal{where, SceneReader::rangeProblem(double(value), limit)};
            }
            ++i;
        }
        return Refusal();
    };

    Refusal refusal
        = check(key::ambient, {document.GetAmbientIntensity()}, SceneFile::MaximumOther);
    if (refusal.problem.isEmpty()) {
        const Vector3 target = document.camera()->GetTarget();
        refusal = check(QStringLiteral("camera.target"),
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
        const std::size_t depth = open.size() - 1; // the root's children are at depth 1
        if (int(depth) > SceneFile::MaximumDepth)
            return {place(depth), SceneReader::depthProblem()};
        if (++count > SceneFile::MaximumNodeCount)
            return {key::root,
                    QStringLiteral("more than %1 nodes").arg(SceneFile::MaximumNodeCount)};
        const auto field
            = [&](QLatin1String name) { return place(depth) + QLatin1Char('.') + name; };
        if (const auto *scene = qobject_cast<const SceneNode *>(child)) {
            const Vector3 p = scene->GetPosition(), r = scene->GetRotation(), s = scene->GetScale();
            refusal = check(field(key::position), {p.x, p.y, p.z}, SceneFile::MaximumPosition);
            if (refusal.problem.isEmpty())
                refusal = check(field(key::rotation), {r.x, r.y, r.z}, SceneFile::MaximumRotation);
            if (refusal.problem.isEmpty())
                refusal = check(field(key::scale), {s.x, s.y, s.z}, SceneFile::MaximumScale);
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
        const auto *light = qobject_cast<const LightNode *>(child);
        if (light && refusal.problem.isEmpty())
            refusal
                = check(field(key::intensity), {light->GetIntensity()}, SceneFile::MaximumOther);
        if (light && refusal.problem.isEmpty())
            refusal
                = check(field(key::shadowBlur), {light->GetShadowBlur()}, SceneFile::MaximumOther);
    }
    return refusal;
}

} // namespace vantrel::host
