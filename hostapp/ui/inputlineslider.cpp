// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/inputlineslider.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace {
constexpr int MaximumSteps = 100000;
constexpr int TickIntervals = 10;
constexpr int FieldPadding = 10; // the frame and margins of the line edit
} // namespace

InputLineSlider::InputLineSlider(
    float min, float max, int decimals, float displayScale, const QString &suffix, QWidget *parent)
    : QWidget(parent)
    , m_min(std::min(min, max))
    , m_max(std::max(min, max))
    , m_decimals(std::clamp(decimals, 0, 6))
    , m_scale(displayScale)
    , m_suffix(suffix)
    , m_value(m_min)
    , m_slider(new QSlider(Qt::Horizontal, this))
    , m_field(new QLineEdit(this))
{
    const double steps = std::round(double(m_max - m_min) * m_scale * std::pow(10.0, m_decimals));
    m_steps = int(std::clamp(steps, 1.0, double(MaximumSteps)));
    m_slider->setRange(0, m_steps);
    m_slider->setPageStep(std::max(1, m_steps / TickIntervals));
    m_slider->setTickInterval(std::max(1, m_steps / TickIntervals));

    m_field->setObjectName(QStringLiteral("value"));
    m_field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // Room for the longest value of the range with its sign, decimals and suffix.
    const QString widest
        = QString::number(-std::max(std::abs(m_min), std::abs(m_max)) * m_scale, 'f', m_decimals)
          + m_suffix;
    m_field->setFixedWidth(m_field->fontMetrics().horizontalAdvance(widest + QLatin1Char('0'))
                           + FieldPadding);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_field, 0);

    connect(m_slider, &QSlider::valueChanged, this, &InputLineSlider::onSliderChanged);
    connect(m_field, &QLineEdit::editingFinished, this, &InputLineSlider::onFieldEdited);
    connect(m_slider, &QSlider::sliderPressed, this, &InputLineSlider::dragStarted);
    connect(m_slider, &QSlider::sliderReleased, this, &InputLineSlider::dragFinished);
    m_field->setPlaceholderText(tr("mixed"));
    display(m_value);
}

void InputLineSlider::setTickMarks(bool on)
{
    m_slider->setTickPosition(on ? QSlider::TicksBelow : QSlider::NoTicks);
}

int InputLineSlider::fieldWidth() const
{
    return m_field->width();
}

void InputLineSlider::setFieldWidth(int width)
{
    m_field->setFixedWidth(width);
}

void InputLineSlider::SetValue(int mode, float value)
{
    if (mode == ShowLimited)
        value = std::clamp(value, m_min, m_max);
    display(value);
    if (mode == EditAsUser)
        emit valueEdited(value);
}

void InputLineSlider::showMixed()
{
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(0);
    m_field->clear();
    m_field->setModified(false);
}

bool InputLineSlider::isMixed() const
{
    return m_field->text().isEmpty();
}

bool InputLineSlider::isBusy() const
{
    return m_slider->isSliderDown() || (m_field->hasFocus() && m_field->isModified());
}

void InputLineSlider::display(float value)
{
    m_value = value;
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(positionOf(value));
    double shown = double(value) * m_scale;
    const double unit = std::pow(10.0, -m_decimals);
    if (std::abs(shown) < unit / 2)
        shown = 0.0; // no "-0.0"
    m_field->setText(QString::number(shown, 'f', m_decimals) + m_suffix);
    m_field->setModified(false);
}

int InputLineSlider::positionOf(float value) const
{
    if (!(m_max > m_min))
        return 0;
    const double t = (double(value) - m_min) / (double(m_max) - m_min);
    return int(std::lround(std::clamp(t, 0.0, 1.0) * m_steps));
}

float InputLineSlider::valueAt(int position) const
{
    return float(m_min + (double(m_max) - m_min) * position / m_steps);
}

void InputLineSlider::onSliderChanged(int position)
{
    const float value = valueAt(position);
    display(value);
    emit valueEdited(value);
}

void InputLineSlider::onFieldEdited()
{
    // Leaving the field also ends an edit; only a real change of the text counts, so that focus
    // moving away (or the window closing) writes nothing.
    if (!m_field->isModified())
        return;
    QString text = m_field->text().trimmed();
    if (!m_suffix.isEmpty() && text.endsWith(m_suffix.trimmed()))
        text.chop(m_suffix.trimmed().size());
    bool ok = false;
    const double shown
        = QLocale::c().toDouble(text.trimmed().replace(QLatin1Char(','), QLatin1Char('.')), &ok);
    if (!ok || !std::isfinite(shown)) {
        display(m_value); // not a number: the field goes back to the value it showed
        return;
    }
    const float value = float(shown / m_scale);
    display(value);
    emit valueEdited(value);
}
