// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenedump.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/jsontext.h"
#include "hostapp/core/files/scenewriter.h"
#include "hostapp/core/scene/basenode.h"

namespace vantrel::host {

QByteArray dumpScene(const Document &document)
{
    namespace key = scenekey;
    JsonText out;
    out.raw(QLatin1String("{\n"));
    indent(out, 1);
    out.key(key::ambient).number(double(document.GetAmbientIntensity())).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::camera);
    SceneWriter::cameraObject(*document.camera(), out);
    out.raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::lightingMode).number(qint64(document.lightingMode())).raw(QLatin1String(",\n"));
    indent(out, 1);
    out.key(key::root).raw('{');
    const auto fields = [](const BaseNode &node, JsonText &text) {
        SceneWriter::nodeFields(node, SceneWriter::Style::Dump, text);
    };
    fields(*document.root(), out);
    out.key(key::children);
    SceneWriter::writeChildren(*document.root(), 1, fields, out);
    out.raw(QLatin1String("},\n"));
    indent(out, 1);
    out.key(key::selection);
    SceneWriter::selectionArray(document, out);
    out.raw(QLatin1String("\n}\n"));
    return out.text();
}

} // namespace vantrel::host
