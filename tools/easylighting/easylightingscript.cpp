// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/easylighting/easylightingscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "tools/easylighting/easylightingimplementation.h"
#include "tools/easylighting/easylightingsettings.h"

QScriptValue EasyLightingScript(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.easyLighting(params)", 1);
    const std::vector<ScriptSetting> keys = ScriptSettings(EasyLightingSettings);
    QVariantMap params;
    if (!call.dictionary(0, "The parameter has to be a dictionary", &params)
        || !call.numbers(params, NumberKeys(EasyLightingImplementation::staticMetaObject, keys)))
        return call.result();
    EasyLightingImplementation settings(&call.document(), false);
    ApplyScriptSettings(settings, params, keys);
    settings.setAccepted(true);
    return call.result();
}
