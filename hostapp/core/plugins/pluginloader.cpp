// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/plugins/pluginloader.h"

#include "host/iplugin.h"
#include "host/pluginverification.h"
#include "hostapp/core/plugins/libraryfilecheck.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QLibrary>

namespace vantrel::host {

namespace {

using VerificationFunction = const char *(*) ();
using InstanceFunction = QObject *(*) ();

// "key=value" lines of a verification text.
QList<QPair<QByteArray, QByteArray>> fields(const QByteArray &text)
{
    QList<QPair<QByteArray, QByteArray>> result;
    for (const QByteArray &line : text.split('\n')) {
        const int equals = line.indexOf('=');
        if (equals > 0)
            result.append({line.left(equals), line.mid(equals + 1)});
    }
    return result;
}

// Names each field that differs, with both values, so that a user can see which build is off.
QString describeMismatch(const QByteArray &theirs, const QByteArray &ours)
{
    const auto theirFields = fields(theirs);
    if (theirFields.isEmpty()
        || theirFields.first()
               != qMakePair(QByteArray("pattern"), QByteArray("QT_PLUGIN_VERIFICATION_DATA")))
        return QStringLiteral("its verification text is not a Qt plug-in verification text");
    QStringList differences;
    for (const auto &field : fields(ours)) {
        QByteArray value = "(missing)";
        for (const auto &their : theirFields) {
            if (their.first == field.first)
                value = their.second;
        }
        if (value != field.second) {
            differences.append(QStringLiteral("%1 is \"%2\" where this program has \"%3\"")
                                   .arg(QString::fromLatin1(field.first),
                                        QString::fromLatin1(value),
                                        QString::fromLatin1(field.second)));
        }
    }
    return QStringLiteral("built for another Qt or compiler: %1")
        .arg(differences.join(QStringLiteral("; ")));
}

// A library hands out one plug-in object per process, however many loaders load it: the object
// goes with the last loader that holds it. Loaders live on the GUI thread.
QHash<IPlugin *, int> &holders()
{
    static QHash<IPlugin *, int> counts;
    return counts;
}

} // namespace

PluginLoader::~PluginLoader()
{
    for (const Loaded &loaded : std::as_const(m_loaded)) {
        loaded.plugin->Uninitialize();
        if (--holders()[loaded.plugin] == 0) {
            holders().remove(loaded.plugin);
            delete loaded.plugin;
        }
    }
}

QByteArray PluginLoader::verificationData()
{
    return QByteArray(VANTREL_PLUGIN_VERIFICATION_DATA);
}

QString PluginLoader::defaultToolsPluginPath()
{
    QString directory = qEnvironmentVariable("VANTREL_PLUGIN_DIR");
    if (directory.isEmpty())
        directory = QCoreApplication::applicationDirPath() + QStringLiteral("/../plugins");
    return QDir::cleanPath(directory + QStringLiteral("/libvantrel-tools.so"));
}

IPlugin *PluginLoader::load(const QString &path, IApplicationContext &app, QString *errorMessage)
{
    auto fail = [&](const QString &what) -> IPlugin * {
        if (errorMessage)
            *errorMessage = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), what);
        return nullptr;
    };
    const QFileInfo info(path);
    if (!info.exists())
        return fail(QStringLiteral("no such file"));
    // Loading a library runs its code (its constructors) at once, and a damaged one can kill the
    // program in the dynamic loader before any check of ours runs: look at the file first. The
    // file can still change between this look and the load. That is no reason to skip it: the
    // check is there for damaged files (a copy cut short, a text file under a library's name),
    // not for someone who can write the library, who could put any code in it anyway.
    QString problem;
    if (!checkLibraryFile(path, &problem))
        return fail(problem);
    const QString canonical = info.canonicalFilePath();
    for (const Loaded &loaded : std::as_const(m_loaded)) {
        if (loaded.path == canonical)
            return fail(QStringLiteral("this plug-in is already loaded"));
    }

    QLibrary library(canonical);
    if (!library.load())
        return fail(QStringLiteral("cannot be loaded: %1").arg(library.errorString()));
    // Nothing is taken from the library until its verification text matches: a library built
    // against another Qt could not safely hand over a single object.
    const auto verification = reinterpret_cast<VerificationFunction>(
        library.resolve("qt_plugin_query_verification_data"));
    if (!verification) {
        library.unload();
        return fail(QStringLiteral(
            "not a plug-in: it has no qt_plugin_query_verification_data entry point"));
    }
    const QByteArray theirs(verification());
    if (theirs != verificationData()) {
        library.unload();
        return fail(describeMismatch(theirs, verificationData()));
    }
    const auto instance = reinterpret_cast<InstanceFunction>(library.resolve("qt_plugin_instance"));
    if (!instance) {
        library.unload();
        return fail(QStringLiteral("not a plug-in: it has no qt_plugin_instance entry point"));
    }

    // From here on the library stays loaded: its code may be running in objects it handed out.
    QObject *object = instance();
    if (!object)
        return fail(QStringLiteral("its qt_plugin_instance returned no object"));
    IPlugin *plugin = qobject_cast<IPlugin *>(object);
    if (!plugin) {
        const QString className = QString::fromLatin1(object->metaObject()->className());
        delete object;
        return fail(QStringLiteral("its plug-in object (%1) does not offer %2")
                        .arg(className, QStringLiteral(VANTREL_IPLUGIN_IID)));
    }
    plugin->Initialize(app);
    ++holders()[plugin];
    m_loaded.append(Loaded{canonical, plugin});
    return plugin;
}

QList<IPlugin *> PluginLoader::plugins() const
{
    QList<IPlugin *> result;
    for (const Loaded &loaded : m_loaded)
        result.append(loaded.plugin);
    return result;
}

} // namespace vantrel::host
