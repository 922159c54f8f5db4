// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolsettings.h"
#include "frame/toolwindow.h"
#include "hostapp/core/session.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QPushButton>

#include <functional>

using namespace vantrel::host;

namespace {

// Every setting the three settings windows show, so that their panels can be laid out at the
// windows' fixed sizes before the tools exist.
class ShowcaseSettings final : public ToolSettings
{
    Q_OBJECT
    Q_PROPERTY(float angleH MEMBER m_angleH)
    Q_PROPERTY(float angleV MEMBER m_angleV)
    Q_PROPERTY(float contrast MEMBER m_contrast)
    Q_PROPERTY(float blur MEMBER m_blur)
    Q_PROPERTY(float padding MEMBER m_padding)
    Q_PROPERTY(bool keepAspect MEMBER m_keepAspect)
    Q_PROPERTY(int repeatX MEMBER m_repeatX)
    Q_PROPERTY(int repeatY MEMBER m_repeatY)
    Q_PROPERTY(int repeatZ MEMBER m_repeatZ)
    Q_PROPERTY(float stepX MEMBER m_stepX)
    Q_PROPERTY(float stepY MEMBER m_stepY)
    Q_PROPERTY(float stepZ MEMBER m_stepZ)

public:
    using Rows = std::function<void(PropertiesListBuilder &)>;
    ShowcaseSettings(IDocument *document, QString title, Rows rows)
        : ToolSettings(document, true)
        , m_title(std::move(title))
        , m_rows(std::move(rows))
    {}
    QList<QVariantMap> GetPropertiesList() override
    {
        PropertiesListBuilder builder(m_title);
        m_rows(builder);
        return builder;
    }

private:
    QString m_title;
    Rows m_rows;
    float m_angleH = -135.0f, m_angleV = 45.0f, m_contrast = 0.6f, m_blur = 0.25f;
    float m_padding = 0.1f;
    bool m_keepAspect = true;
    int m_repeatX = 30, m_repeatY = 30, m_repeatZ = 30;
    float m_stepX = -100.0f, m_stepY = 12.5f, m_stepZ = 0.0f;
};

class ShowcaseWindow final : public ToolWindow
{
    Q_OBJECT

public:
    ShowcaseWindow(Session &session, const QString &title, QSize size, ShowcaseSettings::Rows rows)
        : ToolWindow(session.application(), session.context(), nullptr)
    {
        setUp(new ShowcaseSettings(document(), title, std::move(rows)), title, size);
    }
};

struct Showcase
{
    const char *file;
    const char *title;
    QSize size;
    ShowcaseSettings::Rows rows;
};

const QString noProperty;

} // namespace

// Lays out the three settings windows at their fixed sizes, saves what they look like
// (build/screenshots/*.png, for a person to look at) and checks that no row is squeezed below
// the height it asks for or cut off by the window's edge.
TEST(ToolWindowScreenshotTest, TheSettingsWindowsFitTheirFixedSizes)
{
    const Showcase showcases[] = {
        {"easy-lighting.png",
         "Easy Lighting",
         QSize(600, 420),
         [](PropertiesListBuilder &b) {
             b.AddPanel(QStringLiteral("Shadow Parameters"));
             b.AddSlider(
                 QStringLiteral("Horizontal angle"), QStringLiteral("angleH"), -180, 180, 2754, 1);
             b.AddSlider(
                 QStringLiteral("Vertical angle"), QStringLiteral("angleV"), 1, 89, 2754, 1);
             b.AddLabel(QString(),
                        0,
                        PropertiesListBuilder::TextFirst,
                        PropertiesListBuilder::LeftSide,
                        noProperty);
             b.AddPercentSlider(QStringLiteral("Contrast"), QStringLiteral("contrast"), true);
             b.AddPercentSlider(QStringLiteral("Blur"), QStringLiteral("blur"), true);
         }},
        {"fit-to-view.png",
         "Fit To View",
         QSize(400, 190),
         [](PropertiesListBuilder &b) {
             b.AddPanel(QString());
             b.AddPercentSlider(QStringLiteral("Padding"), QStringLiteral("padding"), true);
             b.AddCheckBox(QStringLiteral("Keep Aspect Ratio"),
                           QStringLiteral("keepAspect"),
                           PropertiesListBuilder::TextFirst);
         }},
        {"step-and-repeat.png",
         "Step and Repeat",
         QSize(600, 450),
         [](PropertiesListBuilder &b) {
             b.AddPanel(QStringLiteral("Repeats"));
             b.AddSlider(QStringLiteral("Columns"), QStringLiteral("repeatX"), 1, 30, 288, 0);
             b.AddSlider(QStringLiteral("Rows"), QStringLiteral("repeatY"), 1, 30, 288, 0);
             b.AddSlider(QStringLiteral("Layers"), QStringLiteral("repeatZ"), 1, 30, 288, 0);
             b.AddPanel(QStringLiteral("Steps"));
             b.AddSlider(QStringLiteral("Right"), QStringLiteral("stepX"), -100, 100, 320, 2);
             b.AddSlider(QStringLiteral("Back"), QStringLiteral("stepY"), -100, 100, 320, 2);
             b.AddSlider(QStringLiteral("Up"), QStringLiteral("stepZ"), -100, 100, 320, 2);
         }},
    };
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR)));
    Session session;
    for (const Showcase &showcase : showcases) {
        SCOPED_TRACE(showcase.title);
        ShowcaseWindow window(session, QLatin1String(showcase.title), showcase.size, showcase.rows);
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

#include "screenshot_test.moc"
