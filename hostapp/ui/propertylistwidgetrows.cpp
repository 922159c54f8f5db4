// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The widgets of PropertyListWidget's rows, one maker for each kind of row.
#include "hostapp/ui/propertylistwidget.h"

#include "hostapp/ui/filechooser.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/ipanelvalues.h"
#include "hostapp/ui/propertieslistbuilder.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>

#include <algorithm>

namespace {

QString text(const QVariantMap &row, const char *key)
{
    return row.value(QLatin1String(key)).toString();
}

int number(const QVariantMap &row, const char *key)
{
    return row.value(QLatin1String(key)).toInt();
}

} // namespace

QWidget *PropertyListWidget::makeSlider(const QVariantMap &row, bool percent)
{
    const QString property = text(row, PanelRow::Property);
    const int flags = number(row, PanelRow::Flags);
    int decimals = number(row, PanelRow::Decimals);
    bool wholeNumbers = flags & PropertiesListBuilder::WholeNumbers;
    if (m_object && hasProperty(property)) {
        const QMetaObject *meta = m_object->metaObject();
        const QMetaProperty metaProperty
            = meta->property(meta->indexOfProperty(property.toLatin1().constData()));
        wholeNumbers = wholeNumbers || metaProperty.userType() == QMetaType::Int;
    }
    if (wholeNumbers && !percent)
        decimals = 0;
    QString suffix;
    if (percent)
        suffix = QStringLiteral(" %");
    else if (flags & PropertiesListBuilder::Degrees)
        suffix = QStringLiteral("\u00b0");
    auto *slider = new InputLineSlider(row.value(QLatin1String(PanelRow::Minimum)).toFloat(),
                                       row.value(QLatin1String(PanelRow::Maximum)).toFloat(),
                                       decimals,
                                       percent ? 100.0f : 1.0f,
                                       suffix);
    slider->setTickMarks(flags & PropertiesListBuilder::TickMarks);
    connect(slider, &InputLineSlider::valueEdited, this, [this, property](float value) {
        write(property, value);
    });
    connect(slider, &InputLineSlider::dragStarted, this, [this, property] {
        if (m_object && m_values)
            m_values->panelGestureStarted(property);
    });
    connect(slider, &InputLineSlider::dragFinished, this, [this, property] {
        if (m_object && m_values)
            m_values->panelGestureFinished(property);
    });
    return slider;
}

QWidget *PropertyListWidget::makeCheckBox(const QVariantMap &row, QFormLayout *group)
{
    const QString property = text(row, PanelRow::Property);
    const bool controlFirst = number(row, PanelRow::Order) == PropertiesListBuilder::ControlFirst;
    auto *box = new QCheckBox(controlFirst ? text(row, PanelRow::Text) : QString());
    if (controlFirst)
        group->addRow(box);
    else
        group->addRow(text(row, PanelRow::Text), box);
    if (m_values) {
        // A box that shows mixed values is partially checked; a click makes it checked, and
        // toggled would not tell.
        connect(box, &QCheckBox::clicked, this, [this, property](bool on) { write(property, on); });
    } else {
        connect(box, &QCheckBox::toggled, this, [this, property](bool on) { write(property, on); });
    }
    return box;
}

QWidget *PropertyListWidget::makeLabel(const QVariantMap &row, QFormLayout *group)
{
    auto *label = new QLabel(text(row, PanelRow::Text));
    label->setWordWrap(true);
    switch (number(row, PanelRow::Side)) {
    case PropertiesListBuilder::RightSide:
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        break;
    case PropertiesListBuilder::CentreSide:
        label->setAlignment(Qt::AlignCenter);
        break;
    default:
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        break;
    }
    if (const int change = number(row, PanelRow::SizeChange)) {
        QFont font = label->font();
        font.setPointSizeF(std::max(1.0, font.pointSizeF() + change));
        label->setFont(font);
    }
    if (number(row, PanelRow::Order) == PropertiesListBuilder::ControlFirst)
        group->addRow(QString(), label);
    else
        group->addRow(label);
    return label;
}

QWidget *PropertyListWidget::makeLineEdit(const QVariantMap &row)
{
    const QString property = text(row, PanelRow::Property);
    auto *field = new QLineEdit;
    field->setPlaceholderText(tr("mixed"));
    connect(field, &QLineEdit::editingFinished, this, [this, field, property] {
        // Only a real change counts: focus leaving an untouched field writes nothing.
        if (!field->isModified())
            return;
        field->setModified(false);
        write(property, field->text());
    });
    return field;
}

QWidget *PropertyListWidget::makeFileChooser(const QVariantMap &row)
{
    const QString property = text(row, PanelRow::Property);
    auto *chooser = new FileChooser(text(row, PanelRow::Filter));
    connect(chooser, &FileChooser::pathEdited, this, [this, property](const QString &path) {
        write(property, path);
    });
    return chooser;
}
