// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The scene tree model and view against the document: every edit, its undo and redo, the check
// boxes, and the selection in both directions.
#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/scenetreemodel.h"
#include "hostapp/desktop/scenetreeview.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>

#include <functional>
#include <memory>
#include <set>

using namespace vantrel::host;

namespace {

QStringList s_warnings; // the model tester reports its failures as warnings

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        s_warnings.append(message);
}

// The document's tree, walked from its nodes: "name [x]" per node, indented by depth.
void dumpNodes(const BaseNode *node, int depth, QString &out)
{
    for (std::size_t i = 0; i < node->GetChildren().size(); ++i) {
        const BaseNode *child = node->childNode(i);
        out += QString(depth * 2, QLatin1Char(' ')) + child->GetName()
               + (child->IsVisible() ? QStringLiteral(" [x]\n") : QStringLiteral(" [ ]\n"));
        dumpNodes(child, depth + 1, out);
    }
}

// The same from the model's indexes alone; each row's parent, node and index are cross-checked.
void dumpRows(const SceneTreeModel &model, const QModelIndex &parent, int depth, QString &out)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        EXPECT_EQ(model.parent(index), parent) << index.data().toString().toStdString();
        EXPECT_EQ(model.indexOf(model.nodeAt(index)), index)
            << index.data().toString().toStdString();
        out += QString(depth * 2, QLatin1Char(' ')) + index.data().toString()
               + (index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStringLiteral(" [x]\n")
                                                                        : QStringLiteral(" [ ]\n"));
        dumpRows(model, index, depth + 1, out);
    }
}

class SceneTreeTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        s_warnings.clear();
        m_previousHandler = qInstallMessageHandler(collectWarnings);
        buildSampleScene(m_document);
    }
    void TearDown() override
    {
        qInstallMessageHandler(m_previousHandler);
        EXPECT_TRUE(s_warnings.isEmpty()) << s_warnings.join(QLatin1Char('\n')).toStdString();
    }

    QString documentTree() const
    {
        QString out;
        dumpNodes(m_document.root(), 0, out);
        return out;
    }
    static QString modelTree(const SceneTreeModel &model)
    {
        QString out;
        dumpRows(model, {}, 0, out);
        return out;
    }
    BaseNode *top(int row) const { return m_document.root()->childNode(std::size_t(row)); }

    Document m_document;
    QtMessageHandler m_previousHandler = nullptr;
};

TEST_F(SceneTreeTest, ModelFollowsEveryEditItsUndoAndRedo)
{
    SceneTreeModel model;
    model.setDocument(&m_document);
    QAbstractItemModelTester tester(&model,
                                    QAbstractItemModelTester::FailureReportingMode::Warning);
    ASSERT_EQ(modelTree(model), documentTree());

    BaseNode *group = static_cast<BaseNode *>(m_document.root()->CreateChildGroup("Crates"));
    std::vector<INode *> boxes;
    for (int i = 0; i < 5; ++i)
        boxes.push_back(group->createChildShape("generator.Boxes.Box", QString("Crate %1").arg(i)));
    const std::vector<std::function<void()>> edits = {
        [&] { boxes[2]->SetName("Renamed crate"); },
        [&] { boxes[3]->SetVisible(false); },
        [&] { m_document.CloneNode(group, 0); },
        [&] {
            m_document.MoveNodes(top(0), 0, {boxes[1], boxes[4]});
        },                                                            // across parents
        [&] { m_document.MoveNodes(m_document.root(), 0, {group}); }, // reorder
        [&] {
            m_document.DeleteNodes({boxes[0], boxes[3], top(1)});
        },                                                                     // scattered
        [&] { m_document.SetSelection({group}, Document::ReplaceSelection); }, // no tree change
    };
    for (std::size_t i = 0; i < edits.size(); ++i) {
        edits[i]();
        EXPECT_EQ(modelTree(model), documentTree()) << "after edit " << i;
    }
    while (m_document.undo()) {
        EXPECT_EQ(modelTree(model), documentTree())
            << "after undo to " << m_document.history().undoCount();
    }
    while (m_document.redo())
        EXPECT_EQ(modelTree(model), documentTree())
            << "after redo to " << m_document.history().undoCount();

    // A cancelled group deletes the nodes it created before the model hears of it.
    m_document.BeginUndoGroup();
    for (int i = 0; i < 40; ++i)
        m_document.CloneNode(group, 0);
    group->SetName("Crates, renamed inside the group");
    m_document.CancelUndoGroup();
    EXPECT_EQ(modelTree(model), documentTree()) << "after a cancelled group";
}

TEST_F(SceneTreeTest, CheckBoxIsOneUndoStepAndOnlyDataChanges)
{
    SceneTreeModel model;
    model.setDocument(&m_document);
    QAbstractItemModelTester tester(&model,
                                    QAbstractItemModelTester::FailureReportingMode::Warning);
    const QModelIndex first = model.index(0, 0);
    ASSERT_TRUE(first.flags() & Qt::ItemIsUserCheckable);
    QSignalSpy dataChanged(&model, &QAbstractItemModel::dataChanged);
    int structureSignals = 0;
    for (auto signal :
         {&QAbstractItemModel::layoutAboutToBeChanged, &QAbstractItemModel::layoutChanged})
        QObject::connect(&model, signal, [&] { ++structureSignals; });
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { ++structureSignals; });
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, [&] { ++structureSignals; });
    const int steps = m_document.history().undoCount();

    EXPECT_TRUE(model.setData(first, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(top(0)->IsVisible());
    EXPECT_EQ(m_document.history().undoCount(), steps + 1);
    EXPECT_EQ(m_document.history().undoText(), "Hide");
    EXPECT_EQ(first.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_FALSE(dataChanged.isEmpty());
    EXPECT_EQ(structureSignals, 0) << "a data change is no layout change";

    ASSERT_TRUE(m_document.undo());
    EXPECT_TRUE(top(0)->IsVisible());
    EXPECT_EQ(first.data(Qt::CheckStateRole).toInt(), Qt::Checked);
    model.setData(first, Qt::Unchecked, Qt::CheckStateRole);
    model.setData(first, Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(m_document.history().undoText(), "Show");
    EXPECT_EQ(model.data(first, Qt::ToolTipRole).toString().isEmpty(), false);
}

TEST_F(SceneTreeTest, ExpansionAndSelectionSurviveChangesElsewhere)
{
    SceneTreeView view;
    view.setDocument(&m_document);
    SceneTreeModel *model = view.sceneModel();
    auto *group = static_cast<BaseNode *>(m_document.root()->CreateChildGroup("Shelf"));
    BaseNode *book = group->createChildShape("generator.Boxes.Box", "Book");
    group->createChildShape("generator.Boxes.Box", "Other book");
    BaseNode *lone = m_document.root()->createChildShape("generator.Boxes.Box", "Lone");
    view.collapseAll();
    view.expand(model->indexOf(group));
    m_document.SetSelection({book}, Document::ReplaceSelection);

    const std::vector<std::pair<const char *, std::function<void()>>> changes = {
        {"clone elsewhere", [&] { m_document.CloneNode(lone, 0); }},
        {"delete scattered rows",
         [&] {
             m_document.DeleteNodes({top(0), lone});
         }},
        {"undo of that", [&] { m_document.undo(); }},
        {"the group itself moved", [&] { m_document.MoveNodes(m_document.root(), 0, {group}); }},
    };
    for (const auto &change : changes) {
        change.second();
        EXPECT_TRUE(view.isExpanded(model->indexOf(group))) << change.first;
        const QModelIndexList selected = view.selectionModel()->selectedRows();
        ASSERT_EQ(selected.size(), 1) << change.first;
        EXPECT_EQ(model->nodeAt(selected.first()), book) << change.first;
    }
}

TEST_F(SceneTreeTest, SelectionFollowsBothWays)
{
    SceneTreeView view;
    view.setDocument(&m_document);
    SceneTreeModel *model = view.sceneModel();
    view.collapseAll();
    auto selectedNodes = [&] {
        std::set<INode *> nodes;
        for (const QModelIndex &row : view.selectionModel()->selectedRows())
            nodes.insert(model->nodeAt(row));
        return nodes;
    };
    const int steps = m_document.history().undoCount();

    // Rows picked in the tree: one "Select" step, and the tree shows what the document holds.
    QItemSelection rows(model->index(0, 0), model->index(1, 0));
    view.selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    const std::set<INode *> picked = {top(0), top(1)};
    const auto &selection = m_document.GetSelection();
    EXPECT_EQ(std::set<INode *>(selection.begin(), selection.end()), picked);
    EXPECT_EQ(m_document.history().undoCount(), steps + 1);
    EXPECT_EQ(m_document.history().undoText(), "Select");

    // A node deep in a collapsed group selected by the document (as the 3D view would).
    BaseNode *deep = nullptr;
    for (std::size_t i = 0; i < m_document.root()->GetChildren().size() && !deep; ++i) {
        for (BaseNode *n = top(int(i)); !n->GetChildren().empty(); n = n->childNode(0))
            deep = n->childNode(0);
    }
    ASSERT_TRUE(deep) << "the sample scene has a group";
    m_document.SetSelection({deep}, Document::ReplaceSelection);
    EXPECT_EQ(selectedNodes(), std::set<INode *>{deep});
    EXPECT_TRUE(view.isExpanded(model->indexOf(deep->parentNode())));
    EXPECT_EQ(model->nodeAt(view.currentIndex()), deep);
    EXPECT_EQ(m_document.history().undoCount(), steps + 2)
        << "following the document records nothing";

    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(selectedNodes(), picked);
    ASSERT_TRUE(m_document.redo());
    EXPECT_EQ(selectedNodes(), std::set<INode *>{deep});
}

TEST_F(SceneTreeTest, ThousandsOfCopiesStayConsistentAndSelectAsOneRange)
{
    SceneTreeView view;
    // Something ahead of the tree in the document's list (a tool window's event loop) repaints
    // it after every change, before the model has heard of the change.
    int paints = 0;
    QObject::connect(&m_document, &Document::changed, &view, [&] {
        if (m_document.history().openGroupCount() == 0 && !view.grab().isNull())
            ++paints;
    });
    view.setDocument(&m_document);
    SceneTreeModel *model = view.sceneModel();
    auto *group = static_cast<BaseNode *>(m_document.root()->CreateChildGroup("Grid"));
    BaseNode *box = group->createChildShape("generator.Boxes.Box", "Box");
    view.expand(model->indexOf(group));
    const QByteArray before = m_document.history().undoText().toUtf8();

    // One event-loop turn, as a tool's preview runs: more rows than the model compares at once.
    m_document.BeginUndoGroup();
    std::vector<INode *> copies;
    for (int i = 0; i < 6000; ++i)
        copies.push_back(m_document.CloneNode(box, 0));
    copies.back()->SetName("Last copy");
    m_document.SetSelection(copies, Document::ReplaceSelection);
    EXPECT_EQ(model->rowCount(model->indexOf(group)), 6001) << "rows follow at once";
    EXPECT_EQ(view.selectionModel()->selection().size(), 1) << "one range for 6000 siblings";
    QCoreApplication::processEvents();
    EXPECT_EQ(modelTree(*model), documentTree()) << "names follow once the event loop ran";

    const int paintsBefore = paints;
    m_document.CancelUndoGroup(); // deletes the 6000 copies before anyone hears of it
    QCoreApplication::processEvents();
    EXPECT_EQ(paints, paintsBefore + 1);
    EXPECT_EQ(modelTree(*model), documentTree());
    EXPECT_EQ(m_document.history().undoText().toUtf8(), before);
}

TEST_F(SceneTreeTest, ModelOfADeletedDocumentIsEmptyAndSafe)
{
    auto document = std::make_unique<Document>();
    buildSampleScene(*document);
    SceneTreeView view;
    view.setDocument(document.get());
    view.expandAll();
    const QPersistentModelIndex first = view.sceneModel()->index(0, 0);
    document.reset();
    EXPECT_EQ(view.sceneModel()->rowCount(), 0);
    EXPECT_EQ(view.sceneModel()->nodeAt(first), nullptr);
    EXPECT_FALSE(view.grab().isNull()) << "painting after the document is gone";
    view.setDocument(nullptr);
}

} // namespace
