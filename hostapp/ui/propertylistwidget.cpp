// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/propertylistwidget.h"

#include "host/iuserinterfaceproperties.h"
#include "hostapp/ui/filechooser.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/ipanelvalues.h"
#include "hostapp/ui/ipropertylisthelper.h"
#include "hostapp/ui/propertieslistbuilder.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QtDebug>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

namespace {

QString text(const QVariantMap &row, const char *key)
{
    return row.value(QLatin1String(key)).toString();
}

bool isNumber(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

QFormLayout *newForm(QWidget *container)
{
    auto *form = new QFormLayout(container);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(8);
    return form;
}

} // namespace

PropertyListWidget::PropertyListWidget(QObject *object,
                                       IPropertyListHelper *helper,
                                       QWidget *parent)
    : QWidget(parent)
    , m_object(object)
    , m_helper(helper)
    , m_values(qobject_cast<IPanelValues *>(object))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 4);
    layout->setSpacing(10);

    auto *properties = qobject_cast<IUserInterfaceProperties *>(object);
    const QList<QVariantMap> rows
        = properties ? properties->GetPropertiesList() : QList<QVariantMap>();
    QFormLayout *group = nullptr;
    QWidget *container = nullptr;
    for (const QVariantMap &row : rows)
        addRow(row, group, container);
    m_refusal = new QLabel(this);
    m_refusal->setObjectName(QStringLiteral("refusal"));
    m_refusal->setWordWrap(true);
    m_refusal->setStyleSheet(QStringLiteral("color: #c62828;"));
    m_refusal->hide();
    layout->addWidget(m_refusal);
    layout->addStretch(1);

    // One width for every number field, so that the sliders line up.
    const QList<InputLineSlider *> sliders = findChildren<InputLineSlider *>();
    int fieldWidth = 0;
    for (const InputLineSlider *slider : sliders)
        fieldWidth = std::max(fieldWidth, slider->fieldWidth());
    for (InputLineSlider *slider : sliders)
        slider->setFieldWidth(fieldWidth);
    updateAll();
}

PropertyListWidget::~PropertyListWidget()
{
    // The rows' widgets outlive this destructor's body (QWidget deletes them later): cut them off
    // so nothing they emit while going reaches the object or the helper.
    m_object = nullptr;
    m_helper = nullptr;
    for (const Row &row : qAsConst(m_rows))
        disconnect(row.widget, nullptr, this, nullptr);
}

void PropertyListWidget::addRow(const QVariantMap &row, QFormLayout *&group, QWidget *&container)
{
    const QString kind = text(row, PanelRow::Kind);
    if (kind == QLatin1String(PanelRow::Title)) {
        setAccessibleName(text(row, PanelRow::Text));
        return;
    }
    if (kind == QLatin1String(PanelRow::Group) || !group) {
        // Rows before the first group stand under the panel's title.
        auto *box = new QGroupBox(kind == QLatin1String(PanelRow::Group) ? text(row, PanelRow::Text)
                                                                         : accessibleName(),
                                  this);
        layout()->addWidget(box);
        group = newForm(box);
        container = box;
        if (kind == QLatin1String(PanelRow::Group))
            return;
    }
    const QString property = text(row, PanelRow::Property);
    QWidget *widget = nullptr;
    if (kind == QLatin1String(PanelRow::Slider) || kind == QLatin1String(PanelRow::Percent)) {
        widget = makeSlider(row, kind == QLatin1String(PanelRow::Percent));
        group->addRow(new QLabel(text(row, PanelRow::Text), container), widget);
    } else if (kind == QLatin1String(PanelRow::CheckBox)) {
        widget = makeCheckBox(row, group);
    } else if (kind == QLatin1String(PanelRow::Label)) {
        widget = makeLabel(row, group);
    } else if (kind == QLatin1String(PanelRow::LineEdit) || kind == QLatin1String(PanelRow::File)) {
        widget = kind == QLatin1String(PanelRow::File) ? makeFileChooser(row) : makeLineEdit(row);
        group->addRow(new QLabel(text(row, PanelRow::Text), container), widget);
    } else {
        report(tr("The panel has no kind of row called \"%1\"").arg(kind));
        return;
    }
    widget->setObjectName(property);
    if (!property.isEmpty() && !hasProperty(property)) {
        widget->setEnabled(false);
        report(tr("The panel's row \"%1\" names the setting \"%2\", which does not exist")
                   .arg(text(row, PanelRow::Text), property));
    }
    m_rows.append(Row{kind, property, text(row, PanelRow::Text), widget});
}

bool PropertyListWidget::hasProperty(const QString &property) const
{
    if (m_object && m_values)
        return true; // the object answers for its rows itself
    return m_object
           && m_object->metaObject()->indexOfProperty(property.toLatin1().constData()) >= 0;
}

const PropertyListWidget::Row *PropertyListWidget::rowOf(const QString &property) const
{
    if (property.isEmpty())
        return nullptr;
    for (const Row &row : m_rows) {
        if (row.property == property)
            return &row;
    }
    return nullptr;
}

QWidget *PropertyListWidget::findWidget(const QString &property) const
{
    const Row *row = rowOf(property);
    return row ? row->widget : nullptr;
}

void PropertyListWidget::write(const QString &property, QVariant value)
{
    if (!m_object)
        return;
    if (m_values) {
        const QString reason = m_values->panelWrite(property, value);
        // The panel may have been rebuilt by what the write changed: look the row up again.
        showRefusal(rowOf(property), reason);
        if (const Row *row = rowOf(property))
            show(*row);
        return;
    }
    const QMetaObject *meta = m_object->metaObject();
    const int index = meta->indexOfProperty(property.toLatin1().constData());
    if (index < 0)
        return; // reported when the row was built
    const QMetaProperty metaProperty = meta->property(index);
    if (metaProperty.userType() == QMetaType::Int) {
        const double rounded = std::round(value.toDouble());
        value = int(std::clamp(rounded, double(INT_MIN), double(INT_MAX)));
    }
    if (!metaProperty.write(m_object, value)) {
        report(tr("The setting \"%1\" does not take %2").arg(property, value.toString()));
        return;
    }
    // Show what the object kept: its write accessor may have limited the value.
    if (const Row *row = rowOf(property))
        show(*row);
}

QVariant PropertyListWidget::read(const QString &property) const
{
    if (m_values)
        return m_values->panelRead(property);
    return m_object->property(property.toLatin1().constData());
}

void PropertyListWidget::show(const Row &row) const
{
    if (!m_object || row.property.isEmpty())
        return;
    const QVariant value = read(row.property);
    // Without the interface an invalid value means the property is missing: show nothing. With
    // it, the objects behind the row differ.
    if (!value.isValid() && !m_values)
        return;
    if (auto *slider = qobject_cast<InputLineSlider *>(row.widget)) {
        if (slider->isBusy())
            return; // the user's drag or typing wins over a refresh
        if (value.isValid())
            slider->SetValue(InputLineSlider::ShowAsGiven, value.toFloat());
        else
            slider->showMixed();
    } else if (auto *box = qobject_cast<QCheckBox *>(row.widget)) {
        const QSignalBlocker blocker(box);
        box->setTristate(!value.isValid());
        box->setCheckState(!value.isValid() ? Qt::PartiallyChecked
                           : value.toBool() ? Qt::Checked
                                            : Qt::Unchecked);
    } else if (auto *field = qobject_cast<QLineEdit *>(row.widget)) {
        if (!(field->hasFocus() && field->isModified()))
            field->setText(value.toString());
    } else if (auto *chooser = qobject_cast<FileChooser *>(row.widget)) {
        if (!(chooser->field()->hasFocus() && chooser->field()->isModified()))
            chooser->setPath(value.toString());
    } else if (auto *label = qobject_cast<QLabel *>(row.widget)) {
        label->setText(row.text.isEmpty() ? value.toString()
                                          : row.text + QLatin1Char(' ') + value.toString());
    }
}

void PropertyListWidget::showRefusal(const Row *row, const QString &reason)
{
    for (const Row &each : qAsConst(m_rows)) {
        each.widget->setToolTip(QString());
        each.widget->setProperty("refused", false);
        each.widget->setStyleSheet(QString());
    }
    m_refusal->setText(reason);
    m_refusal->setVisible(!reason.isEmpty());
    if (!row || reason.isEmpty())
        return;
    row->widget->setToolTip(reason);
    row->widget->setProperty("refused", true);
    row->widget->setStyleSheet(QStringLiteral("QLineEdit { border: 2px solid #c62828; }"));
}

QString PropertyListWidget::refusal() const
{
    return m_refusal->text();
}

void PropertyListWidget::updateAll()
{
    for (const Row &row : qAsConst(m_rows))
        show(row);
}

void PropertyListWidget::UpdateValues(QObject *changed)
{
    if (!changed || changed == m_object)
        updateAll();
}

QVariant PropertyListWidget::panelValue(const QString &property) const
{
    const Row *row = rowOf(property);
    if (!row)
        return QVariant();
    if (auto *slider = qobject_cast<InputLineSlider *>(row->widget))
        return double(slider->getValue());
    if (auto *box = qobject_cast<QCheckBox *>(row->widget))
        return box->isChecked();
    if (auto *field = qobject_cast<QLineEdit *>(row->widget))
        return field->text();
    if (auto *chooser = qobject_cast<FileChooser *>(row->widget))
        return chooser->path();
    return QVariant();
}

bool PropertyListWidget::setPanelValue(const QString &property, const QVariant &value)
{
    const Row *row = rowOf(property);
    if (!row || !row->widget->isEnabled())
        return false;
    if (auto *slider = qobject_cast<InputLineSlider *>(row->widget)) {
        // A slider holds a float: a number beyond single precision would arrive as infinity.
        const double number = value.toDouble();
        if (!isNumber(value) || !std::isfinite(number)
            || std::fabs(number) > double(std::numeric_limits<float>::max()))
            return false;
        slider->SetValue(InputLineSlider::EditAsUser, value.toFloat());
        return true;
    }
    if (auto *box = qobject_cast<QCheckBox *>(row->widget)) {
        if (value.userType() != QMetaType::Bool)
            return false;
        if (m_values) {
            write(property, value.toBool());
            return true;
        }
        box->setChecked(value.toBool()); // toggled, as a click would, when it changes
        return true;
    }
    if (value.userType() != QMetaType::QString)
        return false;
    if (auto *field = qobject_cast<QLineEdit *>(row->widget)) {
        field->setText(value.toString());
        write(property, value);
        return true;
    }
    if (auto *chooser = qobject_cast<FileChooser *>(row->widget)) {
        chooser->setPath(value.toString());
        write(property, value);
        return true;
    }
    return false;
}

void PropertyListWidget::report(const QString &text) const
{
    if (m_helper)
        m_helper->ReportPanelError(text);
    else
        qWarning().noquote() << text;
}
