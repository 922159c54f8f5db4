// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// A property panel over an object that offers IPanelValues: mixed values, refused values and
// slider drags, as the panel shows and reports them.
#include "host/iuserinterfaceproperties.h"
#include "hostapp/ui/filechooser.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/ipanelvalues.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QSlider>
#include <QStringList>

namespace {

// Values by row; a value listed in m_mixed reads as mixed; widths over 100 are refused.
class Values : public QObject, public IUserInterfaceProperties, public IPanelValues
{
    Q_OBJECT
    Q_INTERFACES(IUserInterfaceProperties IPanelValues)

public:
    QList<QVariantMap> GetPropertiesList() override
    {
        PropertiesListBuilder builder(QStringLiteral("Selection"));
        builder.AddPanel(QStringLiteral("Shape"));
        builder.AddLineEdit(QStringLiteral("Name"), QStringLiteral("name"));
        builder.AddCheckBox(QStringLiteral("Visible"),
                            QStringLiteral("visible"),
                            PropertiesListBuilder::ControlFirst);
        builder.AddSlider(QStringLiteral("Width"), QStringLiteral("width"), 0, 100, 0, 1);
        builder.AddFileChooser(QStringLiteral("Image"), QStringLiteral("image"), QString());
        return builder;
    }
    QVariant panelRead(const QString &property) const override
    {
        return m_mixed.contains(property) ? QVariant() : m_values.value(property);
    }
    QString panelWrite(const QString &property, const QVariant &value) override
    {
        m_log << QStringLiteral("write %1 %2").arg(property, value.toString());
        if (property == QLatin1String("width") && value.toDouble() > 100)
            return QStringLiteral("Width must be between 0 and 100");
        m_values.insert(property, value);
        m_mixed.removeAll(property);
        return QString();
    }
    void panelGestureStarted(const QString &property) override { m_log << "start " + property; }
    void panelGestureFinished(const QString &property) override { m_log << "finish " + property; }

    QVariantMap m_values{{QStringLiteral("name"), QStringLiteral("Book")},
                         {QStringLiteral("visible"), true},
                         {QStringLiteral("width"), 20.0},
                         {QStringLiteral("image"), QString()}};
    QStringList m_mixed;
    QStringList m_log;
};

template<class T>
T *widget(PropertyListWidget &panel, const char *property)
{
    return qobject_cast<T *>(panel.findWidget(QLatin1String(property)));
}

} // namespace

TEST(PanelValuesTest, MixedRowsShowMixedUntilOneValueIsEnteredForAll)
{
    Values values;
    values.m_mixed
        = QStringList{QStringLiteral("name"), QStringLiteral("visible"), QStringLiteral("width")};
    PropertyListWidget panel(&values, nullptr);
    auto *width = widget<InputLineSlider>(panel, "width");
    ASSERT_NE(width, nullptr);
    EXPECT_TRUE(width->isMixed());
    EXPECT_EQ(widget<QLineEdit>(panel, "name")->text(), QString());
    EXPECT_EQ(widget<QCheckBox>(panel, "visible")->checkState(), Qt::PartiallyChecked);

    // A click on the partial box sets every object's value to checked.
    widget<QCheckBox>(panel, "visible")->click();
    EXPECT_EQ(values.m_log, QStringList{QStringLiteral("write visible true")});
    EXPECT_EQ(widget<QCheckBox>(panel, "visible")->checkState(), Qt::Checked);

    width->field()->setText(QStringLiteral("42"));
    width->field()->setModified(true);
    emit width->field()->editingFinished();
    EXPECT_FALSE(width->isMixed());
    EXPECT_EQ(width->field()->text(), QStringLiteral("42.0"));
    EXPECT_EQ(values.m_values.value(QStringLiteral("width")).toDouble(), 42.0);
}

TEST(PanelValuesTest, ARefusedValueIsMarkedAndTheRowShowsTheObjectsValueAgain)
{
    Values values;
    PropertyListWidget panel(&values, nullptr);
    auto *width = widget<InputLineSlider>(panel, "width");
    width->SetValue(InputLineSlider::EditAsUser, 250.f);
    EXPECT_EQ(panel.refusal(), QStringLiteral("Width must be between 0 and 100"));
    EXPECT_TRUE(width->property("refused").toBool());
    EXPECT_EQ(width->toolTip(), panel.refusal());
    EXPECT_EQ(width->field()->text(), QStringLiteral("20.0"));
    EXPECT_EQ(values.m_values.value(QStringLiteral("width")).toDouble(), 20.0);

    // The next accepted edit, of any row, clears the mark.
    EXPECT_TRUE(panel.setPanelValue(QStringLiteral("image"), QStringLiteral("/tmp/a.png")));
    EXPECT_TRUE(panel.refusal().isEmpty());
    EXPECT_FALSE(width->property("refused").toBool());
    EXPECT_EQ(widget<FileChooser>(panel, "image")->path(), QStringLiteral("/tmp/a.png"));
}

TEST(PanelValuesTest, ASliderDragIsBracketedAndARefreshLeavesTheDraggedSliderAlone)
{
    Values values;
    PropertyListWidget panel(&values, nullptr);
    QSlider *slider = widget<InputLineSlider>(panel, "width")->slider();
    slider->setSliderDown(true); // as a press on the handle
    slider->setValue(300);
    values.m_values.insert(QStringLiteral("width"), 5.0); // something else changes it meanwhile
    panel.updateAll();
    EXPECT_EQ(slider->value(), 300);
    slider->setValue(400);
    slider->setSliderDown(false);
    EXPECT_EQ(values.m_log,
              (QStringList{QStringLiteral("start width"),
                           QStringLiteral("write width 30"),
                           QStringLiteral("write width 40"),
                           QStringLiteral("finish width")}));
    panel.updateAll();
    EXPECT_EQ(widget<InputLineSlider>(panel, "width")->getValue(), 40.f);
}

#include "panelvalues_test.moc"
