// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QList>
#include <QString>

class IApplicationContext;
class IPlugin;

namespace vantrel::host {

// Loads plug-in libraries the way the host's Qt 4 loader did: it checks the file's ELF headers
// against the file first (checkLibraryFile: a damaged library is refused, not loaded), reads the
// library's verification text (qt_plugin_query_verification_data) and compares it with its own
// before it takes anything from the library, then asks qt_plugin_instance for the plug-in object,
// checks that it is an IPlugin (by its identifier) and initialises it with the application context.
//
// Loaded libraries stay loaded for the rest of the process, since the tools they registered run
// their code. The loader owns the plug-in objects: its destructor calls Uninitialize on each and
// deletes it.
class VANTREL_HOST_EXPORT PluginLoader
{
public:
    PluginLoader() = default;
    ~PluginLoader();
    PluginLoader(const PluginLoader &) = delete;
    PluginLoader &operator=(const PluginLoader &) = delete;

    // The host's own verification text.
    static QByteArray verificationData();
    // Where `vantrel` looks for the tools plug-in: $VANTREL_PLUGIN_DIR, else ../plugins beside
    // the program; the file is libvantrel-tools.so.
    static QString defaultToolsPluginPath();

    // Loads, checks and initialises the plug-in. On failure returns null and sets errorMessage
    // to "<file>: <what is wrong>"; the application is left as it was.
    IPlugin *load(const QString &path, IApplicationContext &app, QString *errorMessage);

    QList<IPlugin *> plugins() const;

private:
    struct Loaded
    {
        QString path;
        IPlugin *plugin;
    };
    QList<Loaded> m_loaded;
};

} // namespace vantrel::host
