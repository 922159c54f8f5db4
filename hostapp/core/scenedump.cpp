// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scenedump.h"

#include "host/hostfunctions.h"
#include "hostapp/core/basenode.h"
#include "hostapp/core/document.h"
#include "hostapp/core/jsontext.h"
#include "hostapp/core/scenewriter.h"

#include <utility>

namespace vantrel::host {

QByteArray dumpScene(const Document &document)
{
    const Camera &camera = *document.camera();
    const QLatin1String next(", ");
    JsonText out;
    out.raw(QLatin1String("{\n"));
    indent(out, 1);
    out.key(QLatin1String("ambient")).number(double(document.GetAmbientIntensity()));
    out.raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(QLatin1String("camera")).raw('{');
    out.key(QLatin1String("aspectRatio")).number(double(camera.GetAspectRatio())).raw(next);
    out.key(QLatin1String("distance")).number(double(camera.GetDistance())).raw(next);
    out.key(QLatin1String("fieldOfView")).number(double(camera.GetFieldOfView())).raw(next);
    out.key(QLatin1String("pitch")).number(double(camera.pitch())).raw(next);
    out.key(QLatin1String("target"))
        .vector(camera.GetTarget())
        .raw(next)
        .key(QLatin1String("yaw"))
        .number(double(camera.yaw()));
    out.raw(QLatin1String("},\n"));
    indent(out, 1);
    out.key(QLatin1String("lightingMode")).number(qint64(document.lightingMode()));
    out.raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(QLatin1String("root")).raw('{');
    const auto fields = [](const BaseNode &node, JsonText &text) {
        SceneWriter::nodeFields(node, SceneWriter::Style::Dump, text);
    };
    fields(*document.root(), out);
    out.key(QLatin1String("children"));
    SceneWriter::writeChildren(*document.root(), 1, fields, out);
    out.raw(QLatin1String("},\n"));
    indent(out, 1);
    out.key(QLatin1String("selection")).raw('[');
    bool first = true;
    for (INode *node : document.GetSelection()) {
        if (!std::exchange(first, false))
            out.raw(next);
        out.string(SceneWriter::selectionPath(static_cast<BaseNode *>(node)));
    }
    out.raw(QLatin1String("]\n}\n"));
    return out.text();
}

} // namespace vantrel::host
