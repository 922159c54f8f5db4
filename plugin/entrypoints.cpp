// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The library's only exported symbols: the two entry points of the Qt 4 plug-in loader, which
// Qt 5 no longer generates (Q_EXPORT_PLUGIN2 is gone). Everything else is hidden, both by the
// default visibility and by the version script that links this module.

#include "host/pluginverification.h"
#include "plugin/toolsplugin.h"

#include <QPointer>

extern "C" Q_DECL_EXPORT const char *qt_plugin_query_verification_data()
{
    return VANTREL_PLUGIN_VERIFICATION_DATA;
}

extern "C" Q_DECL_EXPORT QObject *qt_plugin_instance()
{
    // A guarded pointer: once the host deletes the plug-in object the holder turns null and the
    // next call makes a fresh one instead of handing out a dangling pointer. The static is
    // initialised once, thread-safely, and released at process exit.
    static QPointer<QObject> instance;
    if (!instance)
        instance = new ToolsPlugin;
    return instance.data();
}
