// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stackwindow.h"

#include "frame/toolwindow.h"
#include "host/idocumentcontext.h"
#include "host/inode.h"
#include "hostapp/ui/button.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tools/stack/stackbuilder.h"
#include "tools/stack/stacksettings.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

StackWindow::StackWindow(const std::vector<INode *> &nodes,
                         IApplicationContext &app,
                         IDocumentContext &context,
                         int repeatCount,
                         QWidget *parent)
    : QDialog(parent)
    , m_list(new QListWidget(this))
    , m_nodes(nodes)
    , m_document(context.GetDocument())
    , m_helper(app, context)
    , m_repeatCount(repeatCount)
{
    m_list->setObjectName(QStringLiteral("nodes"));
    m_list->setAcceptDrops(true);
    m_list->setDragEnabled(true);
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setDropIndicatorShown(false);
    m_list->installEventFilter(this);
    m_list->setAttribute(Qt::WA_MacShowFocusRect, false);
    for (INode *node : m_nodes)
        m_list->addItem(node->GetName());

    rebuild(m_nodes, m_repeatCount);

    auto *frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("frameList"));
    auto *frameLayout = new QHBoxLayout(frame);
    frameLayout->setContentsMargins(5, 5, 5, 5);
    frameLayout->addWidget(m_list);

    m_propertyList = new PropertyListWidget(this, &m_helper, this);
    auto *panelLayout = new QVBoxLayout;
    panelLayout->setSpacing(0);
    panelLayout->addWidget(m_propertyList);
    panelLayout->addStretch();

    auto *columns = new QHBoxLayout;
    columns->addWidget(frame);
    columns->addSpacing(5);
    columns->addLayout(panelLayout);

    const ToolButtons buttons = MakeToolButtons(*this);
    connect(buttons.ok, &QPushButton::clicked, this, &StackWindow::onAccept);

    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addLayout(columns);
    layout->addWidget(buttons.box);
    FinishToolWindow(*this, QStringLiteral("Stacks"), QSize(600, 550));

    connect(this,
            &StackWindow::sortStackImpl,
            this,
            &StackWindow::onSortStackImpl,
            Qt::QueuedConnection);
    if (auto *slider = qobject_cast<InputLineSlider *>(
            m_propertyList->findWidget(QStringLiteral("generationRepeatList"))))
        slider->SetValue(InputLineSlider::ShowAsGiven, float(m_repeatCount));
}

StackWindow::~StackWindow()
{
    // Items going with the list must not look like a drop.
    m_list->removeEventFilter(this);
    // The panel edits this window's own properties: it goes first, while they still exist.
    delete m_propertyList;
    m_propertyList = nullptr;
    // Keeps the last preview when OK was pressed, takes it back otherwise.
    m_builder.reset();
    m_nodes.clear();
}

void StackWindow::rebuild(const std::vector<INode *> &nodes, int repeatCount)
{
    std::optional<StackLayout> carriedOver;
    if (m_builder) {
        carriedOver = m_builder->layout();
        // Not committed: its undo group is cancelled and the previous preview disappears.
        m_builder.reset();
    }
    m_builder = std::make_unique<StackBuilder>(
        nodes, m_document, std::size_t(std::max(repeatCount, 0)), true);
    if (carriedOver)
        m_builder->Layout(*carriedOver);
}

QVariant StackWindow::panelValue(const QString &property) const
{
    const auto *slider = m_propertyList
                             ? qobject_cast<InputLineSlider *>(m_propertyList->findWidget(property))
                             : nullptr;
    return slider ? QVariant(slider->getValue()) : QVariant();
}

bool StackWindow::eventFilter(QObject *, QEvent *event)
{
    // A drag inside the list ends with the list losing its drag object; the rows show their new
    // order only after the drop is complete, so the re-sort runs queued.
    if (event->type() == QEvent::ChildRemoved)
        emit sortStackImpl();
    return false;
}

void StackWindow::onSortStackImpl()
{
    // Rows are matched to nodes by name, each name taking the first unmatched node of that name
    // in the previous order, so shapes of equal names keep their order among themselves.
    std::vector<INode *> remaining = m_nodes;
    std::vector<INode *> sorted;
    for (int row = 0; row < m_list->count(); ++row) {
        const QString text = m_list->item(row)->data(Qt::DisplayRole).toString();
        const auto match = std::find_if(remaining.begin(), remaining.end(), [&](INode *node) {
            return node->GetName() == text;
        });
        if (match != remaining.end()) {
            sorted.push_back(*match);
            remaining.erase(match);
        }
    }
    // No row matched a node (a script renamed the shapes while the window was open): there is
    // nothing to stack in another order, and the stack stays as it is.
    if (sorted.empty())
        return;
    m_nodes = sorted;
    rebuild(m_nodes, panelValue(QStringLiteral("generationRepeatList")).toInt());
}

void StackWindow::onAccept()
{
    m_builder->setCommitted(true);
    QDialog::accept();
}

int StackWindow::generationSeed() const
{
    return m_builder->layout().seed;
}

float StackWindow::twistStep() const
{
    return m_builder->layout().twistStep;
}

float StackWindow::twistDisorder() const
{
    return m_builder->layout().twistDisorder;
}

float StackWindow::offsetX() const
{
    return m_builder->layout().offsetX;
}

float StackWindow::offsetY() const
{
    return m_builder->layout().offsetY;
}

float StackWindow::offsetDisorder() const
{
    return m_builder->layout().offsetDisorder;
}

void StackWindow::setGenerationRepeatList(int count)
{
    count = std::clamp(count, int(StackRepeatSetting.minimum), int(StackRepeatSetting.maximum));
    if (count == m_repeatCount)
        return;
    m_repeatCount = count;
    rebuild(m_nodes, m_repeatCount);
}

template<typename T>
void StackWindow::relayout(T StackLayout::*parameter, T value)
{
    StackLayout layout = m_builder->layout();
    layout.*parameter = value;
    m_builder->Layout(layout);
    if (m_propertyList)
        m_propertyList->UpdateValues(nullptr);
}

void StackWindow::setGenerationSeed(int seed)
{
    relayout(&StackLayout::seed, seed);
}

void StackWindow::setTwistStep(float step)
{
    relayout(&StackLayout::twistStep, step);
}

void StackWindow::setTwistDisorder(float disorder)
{
    relayout(&StackLayout::twistDisorder, disorder);
}

void StackWindow::setOffsetX(float offset)
{
    relayout(&StackLayout::offsetX, offset);
}

void StackWindow::setOffsetY(float offset)
{
    relayout(&StackLayout::offsetY, offset);
}

void StackWindow::setOffsetDisorder(float disorder)
{
    relayout(&StackLayout::offsetDisorder, disorder);
}

QList<QVariantMap> StackWindow::GetPropertiesList()
{
    PropertiesListBuilder builder(QStringLiteral("Generation"));
    AddSettingRows(builder, StackSettings);
    return builder;
}
