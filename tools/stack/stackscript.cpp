// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stackscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "tools/stack/stackbuilder.h"
#include "tools/stack/stackclassification.h"

#include <QScriptContext>

#include <algorithm>

QScriptValue StackScript(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.stack(nodes, params)", 2);
    std::vector<INode *> nodes;
    QVariantMap params;
    // A bare node is no array here: the stack's order comes from the array.
    if (call.ok() && !context->argument(0).isArray()) {
        call.fail("The first parameter has to be an array of nodes");
        return call.result();
    }
    // The dictionary is read whole before anything changes; its getters may take a node out of
    // the scene, which the frame then refuses as it refuses such a node in the array.
    if (!call.nodes(0, "The first parameter has to be an array of nodes", &nodes)
        || !call.dictionary(1, "The second parameter has to be a dictionary", &params)
        || !call.numbers(params,
                         {"repeats",
                          "seed",
                          "twistStep",
                          "twistDisorder",
                          "offsetX",
                          "offsetY",
                          "offsetDisorder"}))
        return call.result();
    if (nodes.empty()) {
        call.fail("The list of nodes is empty");
        return call.result();
    }
    if (FilterStackableNodes(nodes) != AllSuitable) {
        call.fail("The list contains nodes that cannot be stacked");
        return call.result();
    }
    const QLatin1String repeatsKey("repeats");
    // A count beyond the int range saturates, so that 5e9 is refused as too many rather than
    // wrapped round to a small or negative count.
    const int repeats
        = params.contains(repeatsKey) ? ScriptSettingInt(params.value(repeatsKey)) : 3;
    const long long shapes = (long long) nodes.size() * std::max(repeats, 1);
    if (shapes > MostStackedShapes) {
        const QByteArray message
            = QStringLiteral("The stack would hold %1 shapes; at most %2 can be "
                             "stacked")
                  .arg(shapes)
                  .arg(MostStackedShapes)
                  .toUtf8();
        call.fail(message.constData());
        return call.result();
    }

    StackBuilder builder(nodes, &call.document(), std::size_t(std::max(repeats, 0)), false);
    auto apply = [&params](const char *key, auto &parameter, auto convert) {
        const QString name = QLatin1String(key);
        if (!params.contains(name))
            return false;
        parameter = convert(params.value(name));
        return true;
    };
    const auto toInt = [](const QVariant &v) { return ScriptSettingInt(v); };
    const auto toFloat = [](const QVariant &v) { return v.toFloat(); };
    if (apply("seed", builder.seed, toInt))
        builder.Layout();
    if (apply("twistStep", builder.twistStep, toFloat))
        builder.Layout();
    if (apply("twistDisorder", builder.twistDisorder, toFloat))
        builder.Layout();
    if (apply("offsetX", builder.offsetX, toFloat))
        builder.Layout();
    if (apply("offsetY", builder.offsetY, toFloat))
        builder.Layout();
    if (apply("offsetDisorder", builder.offsetDisorder, toFloat))
        builder.Layout();
    builder.committed = true;
    return call.result();
}
