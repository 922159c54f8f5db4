// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stackscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "tools/stack/stackbuilder.h"
#include "tools/stack/stackclassification.h"
#include "tools/stack/stacksettings.h"
#include "tools/stack/stackwindow.h"

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
    const std::vector<ScriptSetting> keys = ScriptSettings(StackSettings);
    // The dictionary is read whole before anything changes; its getters may take a node out of
    // the scene, which the frame then refuses as it refuses such a node in the array. The
    // window's properties are the settings' types.
    if (!call.nodes(0, "The first parameter has to be an array of nodes", &nodes)
        || !call.dictionary(1, "The second parameter has to be a dictionary", &params)
        || !call.numbers(params, NumberKeys(StackWindow::staticMetaObject, keys)))
        return call.result();
    if (nodes.empty()) {
        call.fail("The list of nodes is empty");
        return call.result();
    }
    if (FilterStackableNodes(nodes) != AllSuitable) {
        call.fail("The list contains nodes that cannot be stacked");
        return call.result();
    }
    const QLatin1String repeatsKey(StackRepeatSetting.key);
    // A count beyond the int range saturates, so that 5e9 is refused as too many rather than
    // wrapped round to a small or negative count.
    const int repeats = params.contains(repeatsKey) ? ScriptSettingInt(params.value(repeatsKey))
                                                    : int(StackRepeatSetting.initial);
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
    // The layout holds every setting but the repeat count, which the builder has used already.
    StackLayout layout = builder.layout();
    ApplyScriptSettingsToGadget(StackLayout::staticMetaObject, &layout, params, keys);
    builder.Layout(layout);
    builder.setCommitted(true);
    return call.result();
}
