// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "tools/easylighting/easylightingwindow.h"
#include "tools/fittoview/fittoviewwindow.h"
#include "tools/stepandrepeat/stepandrepeatwindow.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPixmap>

#include <functional>
#include <memory>

using namespace vantrel::host;

namespace {

struct Showcase
{
    const char *file;
    QSize size;
    std::function<ToolWindow *(Session &)> open;
};

} // namespace

// Lays out the three settings windows, as the tools open them, at their fixed sizes, saves what
// they look like (build/screenshots/*.png, for a person to look at) and checks that no row is
// squeezed below the height it asks for or cut off by the window's edge.
TEST(ToolWindowScreenshotTest, TheSettingsWindowsFitTheirFixedSizes)
{
    const Showcase showcases[] = {
        {"easy-lighting.png",
         QSize(600, 420),
         [](Session &session) {
             return new EasyLightingWindow(session.application(), session.context(), nullptr);
         }},
        {"fit-to-view.png",
         QSize(400, 190),
         [](Session &session) {
             return new FitToViewWindow(session.application(), session.context(), nullptr);
         }},
        {"step-and-repeat.png",
         QSize(600, 450),
         [](Session &session) {
             return new StepAndRepeatWindow(session.application(), session.context(), nullptr);
         }},
    };
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR)));
    Session session;
    MeshNode *box = session.document().root()->createChildShape("generator.Boxes.Box",
                                                                QStringLiteral("Gift Box"));
    session.document().SetSelection({box}, Document::ReplaceSelection);
    for (const Showcase &showcase : showcases) {
        SCOPED_TRACE(showcase.file);
        const std::unique_ptr<ToolWindow> opened(showcase.open(session));
        ToolWindow &window = *opened;
        window.show();
        const QRect inside = window.rect();
        const QList<QWidget *> widgets = window.findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            if (!widget->isVisible())
                continue;
            const QRect area(widget->mapTo(&window, QPoint(0, 0)), widget->size());
            EXPECT_TRUE(inside.contains(area))
                << widget->metaObject()->className() << " \"" << widget->objectName().toStdString()
                << "\" reaches past the window's edge";
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height())
                << widget->metaObject()->className() << " \"" << widget->objectName().toStdString()
                << "\" is squeezed";
        }
        const QImage picture = window.grab().toImage();
        EXPECT_EQ(picture.size(), showcase.size);
        const QString path
            = QStringLiteral(VANTREL_SCREENSHOT_DIR "/") + QLatin1String(showcase.file);
        EXPECT_TRUE(picture.save(path)) << path.toStdString();
        window.reject();
    }
}
