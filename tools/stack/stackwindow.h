// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/iuserinterfaceproperties.h"
#include "hostapp/ui/propertywidgethelper.h"

#include <QDialog>

#include <memory>
#include <vector>

class IApplicationContext;
class IDocument;
class IDocumentContext;
class INode;
class PropertyListWidget;
class QListWidget;
class StackBuilder;
struct StackLayout;

// The Stack window: the selected shapes in stacking order (bottom first) in a list the user
// reorders by dragging, and the stack's settings in a panel. Every change shows at once: the
// seed, twist and offsets re-lay the same stack; the repeat count and the order build it again
// from the selected shapes (the old preview taken back first, the settings carried over). OK
// keeps the last preview as one undo step with the "Stack" group selected; every other way out
// takes the scene back to where it was before the window opened.
//
// The window is its own settings object: its Qt properties are the settings the panel edits
// (StackSettings).
class StackWindow : public QDialog, public IUserInterfaceProperties
{
    Q_OBJECT
    Q_INTERFACES(IUserInterfaceProperties)
    Q_PROPERTY(int generationRepeatList READ generationRepeatList WRITE setGenerationRepeatList)
    Q_PROPERTY(int generationSeed READ generationSeed WRITE setGenerationSeed)
    Q_PROPERTY(float twistStep READ twistStep WRITE setTwistStep)
    Q_PROPERTY(float twistDisorder READ twistDisorder WRITE setTwistDisorder)
    Q_PROPERTY(float offsetX READ offsetX WRITE setOffsetX)
    Q_PROPERTY(float offsetY READ offsetY WRITE setOffsetY)
    Q_PROPERTY(float offsetDisorder READ offsetDisorder WRITE setOffsetDisorder)

public:
    // nodes: stackable, at least one, bottom first.
    StackWindow(const std::vector<INode *> &nodes,
                IApplicationContext &app,
                IDocumentContext &context,
                int repeatCount,
                QWidget *parent);
    ~StackWindow() override;

    int generationRepeatList() const { return m_repeatCount; }
    int generationSeed() const;
    float twistStep() const;
    float twistDisorder() const;
    float offsetX() const;
    float offsetY() const;
    float offsetDisorder() const;
    // A different count (limited to the table's 1..100) builds the stack again; the same count does
    // nothing.
    void setGenerationRepeatList(int count);
    // The others re-lay the stack as it is.
    void setGenerationSeed(int seed);
    void setTwistStep(float step);
    void setTwistDisorder(float disorder);
    void setOffsetX(float offset);
    void setOffsetY(float offset);
    void setOffsetDisorder(float disorder);

    QList<QVariantMap> GetPropertiesList() override;

signals:
    void sortStackImpl();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void onAccept();
    void onSortStackImpl();

private:
    void rebuild(const std::vector<INode *> &nodes, int repeatCount);
    QVariant panelValue(const QString &property) const;
    // Lays the stack out again with one parameter changed.
    template<typename T>
    void relayout(T StackLayout::*parameter, T value);

    QListWidget *m_list;
    std::vector<INode *> m_nodes;
    IDocument *m_document;
    std::unique_ptr<StackBuilder> m_builder;
    PropertyListWidget *m_propertyList = nullptr;
    PropertyWidgetHelper m_helper;
    int m_repeatCount;
};
