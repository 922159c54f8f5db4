// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fittoviewscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "tools/fittoview/fittoviewimplementation.h"
#include "tools/fittoview/fittoviewsettings.h"

QScriptValue FitToViewScript(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.fitToView(params)", 1);
    const std::vector<ScriptSetting> keys = ScriptSettings(FitToViewSettings);
    QVariantMap params;
    if (!call.dictionary(0, "The parameter has to be a dictionary", &params)
        || !call.numbers(params, NumberKeys(FitToViewImplementation::staticMetaObject, keys)))
        return call.result();
    FitToViewImplementation settings(&call.document());
    ApplyScriptSettings(settings, params, keys);
    settings.setAccepted(true);
    return call.result();
}
