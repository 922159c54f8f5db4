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

#include <QDialogButtonBox>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int MostRepeats = 100;
} // namespace

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
    bool carryOver = false;
    int seed = 0;
    float parameters[5] = {};
    if (m_builder) {
        carryOver = true;
        seed = m_builder->seed;
        parameters[0] = m_builder->twistStep;
        parameters[1] = m_builder->twistDisorder;
        parameters[2] = m_builder->offsetX;
        parameters[3] = m_builder->offsetY;
        parameters[4] = m_builder->offsetDisorder;
        // Not committed: its undo group is cancelled and the previous preview disappears.
        m_builder.reset();
    }
    m_builder = std::make_unique<StackBuilder>(
        nodes, m_document, std::size_t(std::max(repeatCount, 0)), true);
    if (carryOver) {
        m_builder->seed = seed;
        m_builder->twistStep = parameters[0];
        m_builder->twistDisorder = parameters[1];
        m_builder->offsetX = parameters[2];
        m_builder->offsetY = parameters[3];
        m_builder->offsetDisorder = parameters[4];
        m_builder->Layout();
    }
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
    m_builder->committed = true;
    QDialog::accept();
}

int StackWindow::generationSeed() const
{
    return m_builder->seed;
}

float StackWindow::twistStep() const
{
    return m_builder->twistStep;
}

float StackWindow::twistDisorder() const
{
    return m_builder->twistDisorder;
}

float StackWindow::offsetX() const
{
    return m_builder->offsetX;
}

float StackWindow::offsetY() const
{
    return m_builder->offsetY;
}

float StackWindow::offsetDisorder() const
{
    return m_builder->offsetDisorder;
}

void StackWindow::setGenerationRepeatList(int count)
{
    count = std::clamp(count, 1, MostRepeats);
    if (count == m_repeatCount)
        return;
    m_repeatCount = count;
    rebuild(m_nodes, m_repeatCount);
}

template<typename T>
void StackWindow::relayout(T &parameter, T value)
{
    parameter = value;
    m_builder->Layout();
    if (m_propertyList)
        m_propertyList->UpdateValues(nullptr);
}

void StackWindow::setGenerationSeed(int seed)
{
    relayout(m_builder->seed, seed);
}

void StackWindow::setTwistStep(float step)
{
    relayout(m_builder->twistStep, step);
}

void StackWindow::setTwistDisorder(float disorder)
{
    relayout(m_builder->twistDisorder, disorder);
}

void StackWindow::setOffsetX(float offset)
{
    relayout(m_builder->offsetX, offset);
}

void StackWindow::setOffsetY(float offset)
{
    relayout(m_builder->offsetY, offset);
}

void StackWindow::setOffsetDisorder(float disorder)
{
    relayout(m_builder->offsetDisorder, disorder);
}

QList<QVariantMap> StackWindow::GetPropertiesList()
{
    PropertiesListBuilder builder(QStringLiteral("Generation"));
    builder.AddSlider(
        QStringLiteral("Repeat the list"), QStringLiteral("generationRepeatList"), 1, 100, 34, 3);
    builder.AddSlider(QStringLiteral("Seed"), QStringLiteral("generationSeed"), 0, 10000, 40, 3);
    builder.AddPanel(QStringLiteral("Twist"));
    builder.AddSlider(QStringLiteral("Step"), QStringLiteral("twistStep"), -45, 45, 2242, 1);
    builder.AddPercentSlider(QStringLiteral("Disorder"), QStringLiteral("twistDisorder"), false);
    builder.AddPanel(QStringLiteral("Offset"));
    builder.AddSlider(QStringLiteral("X"), QStringLiteral("offsetX"), -5, 5, 2114, 1);
    builder.AddSlider(QStringLiteral("Y"), QStringLiteral("offsetY"), -5, 5, 2114, 1);
    builder.AddPercentSlider(QStringLiteral("Disorder"), QStringLiteral("offsetDisorder"), false);
    return builder;
}
