// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"
#include "hostapp/ui/panelaccess.h"

#include <QPointer>
#include <QVector>
#include <QWidget>

class IPanelValues;
class IPropertyListHelper;
class QFormLayout;
class QLabel;

// The property panel of a settings object. Given only the QObject, it finds the object's rows
// through IUserInterfaceProperties (qobject_cast), builds one widget per row and writes every
// user change into the object's Qt property at once, through the property's WRITE accessor.
// After each write it shows the value the object stored, so a typed number out of range ends
// up showing the object's own limit.
//
// An object that offers IPanelValues is read and written through it instead: its rows need not
// be Qt properties, a value it reads as invalid is shown as mixed (an empty field with the
// placeholder "mixed", a partially checked box), a value it refuses is shown as refused (the
// field framed in red, the reason in its tool tip and under the rows) while the row goes back to
// the object's value, and it hears when a slider drag begins and ends.
//
// The panel may outlive its object and its helper (a tool window deletes its settings object
// before its child widgets are destroyed): once the object is gone the panel writes nothing,
// and it never calls the helper while it is being destroyed.
class VANTREL_HOSTUI_EXPORT PropertyListWidget : public QWidget, public PanelAccess
{
    Q_OBJECT
    Q_INTERFACES(PanelAccess)

public:
    PropertyListWidget(QObject *object, IPropertyListHelper *helper, QWidget *parent = nullptr);
    ~PropertyListWidget() override;

    // The widget that edits or shows the property: an InputLineSlider for sliders and percent
    // sliders, a QCheckBox for check boxes, a QLabel for a label that shows the property; null
    // when no row names it.
    QWidget *findWidget(const QString &property) const;
    // Why the latest edit was refused, or empty when it was taken.
    QString refusal() const;
    // Shows the object's values again. `changed` is the object whose change prompts the
    // refresh: null or the panel's own object refresh every row, any other object nothing.
    void UpdateValues(QObject *changed);

    QVariant panelValue(const QString &property) const override;
    bool setPanelValue(const QString &property, const QVariant &value) override;

public slots:
    void updateAll();

private:
    struct Row
    {
        QString kind;
        QString property;
        QString text;
        QWidget *widget;
    };

    void addRow(const QVariantMap &row, QFormLayout *&group, QWidget *&container);
    QWidget *makeSlider(const QVariantMap &row, bool percent);
    QWidget *makeCheckBox(const QVariantMap &row, QFormLayout *group);
    QWidget *makeLabel(const QVariantMap &row, QFormLayout *group);
    QWidget *makeLineEdit(const QVariantMap &row);
    QWidget *makeFileChooser(const QVariantMap &row);
    QVariant read(const QString &property) const;
    void showRefusal(const Row *row, const QString &reason);
    bool hasProperty(const QString &property) const;
    void write(const QString &property, QVariant value);
    void show(const Row &row) const;
    const Row *rowOf(const QString &property) const;
    void report(const QString &text) const;

    QPointer<QObject> m_object;
    IPropertyListHelper *m_helper;
    IPanelValues *m_values; // the object's, when it offers the interface
    QLabel *m_refusal = nullptr;
    QVector<Row> m_rows;
};
