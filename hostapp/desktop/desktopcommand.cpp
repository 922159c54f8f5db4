// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/desktopcommand.h"

#include "hostapp/desktop/mainwindow.h"

#include <QApplication>
#include <QTextStream>

namespace vantrel::host {

int runDesktop(const QString &pluginPath, const QString &scenePath, QTextStream &err)
{
    // Without a display Qt would draw the window nowhere and the program would wait for ever.
    if (QGuiApplication::platformName() == QLatin1String("offscreen")
        || QGuiApplication::platformName() == QLatin1String("minimal")) {
        err << "vantrel: the desktop window needs a display (DISPLAY is not set); without one "
               "use vantrel run, render or demo\n";
        return 1;
    }
    MainWindow window(pluginPath);
    QString error;
    if (!window.initialize(&error)) {
        err << "vantrel: cannot load the tools plug-in: " << error << '\n';
        return 1;
    }
    QObject::connect(&window, &MainWindow::fileErrorShown, [&err](const QString &message) {
        err << "vantrel: " << message << '\n';
        err.flush();
    });
    window.show();
    if (!scenePath.isEmpty())
        window.openFile(scenePath);
    return QApplication::exec() == 0 ? 0 : 1;
}

} // namespace vantrel::host
