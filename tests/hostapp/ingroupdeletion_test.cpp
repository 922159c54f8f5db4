// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Deleting nodes that the open undo group created itself: the nodes go at once, and Cancel, OK,
// undo and redo give exactly the scenes a recorded removal gives; a deletion that anything else in
// the group depends on stays recorded.
#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/ui/panelaccess.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>

#include <functional>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::dump;
using vantrel::test::expectUndoRedoExact;

namespace {

class InGroupDeletionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_shelf = static_cast<SceneNode *>(root()->CreateChildGroup(QStringLiteral("Shelf")));
        m_box = addBoxNode(m_shelf, QStringLiteral("Box"), {-1, -1, 0}, {1, 1, 2});
        m_book = root()->createChildShape("generator.Book.Paperback", QStringLiteral("Book"));
        m_document.history().clear();
    }

    BaseNode *root() const { return m_document.root(); }

    // Copies of the box appended to the shelf, named, moved and placed as a preview does it.
    std::vector<INode *> copies(int count)
    {
        std::vector<INode *> made;
        for (int k = 1; k <= count; ++k) {
            auto *copy = static_cast<SceneNode *>(m_document.CloneNode(m_box, 1));
            copy->SetName(QStringLiteral("Box - %1").arg(k + 1));
            m_document.MoveNodes(m_shelf, k, {copy});
            copy->SetPosition({float(k) * 3, 0, 0}, false);
            made.push_back(copy);
        }
        return made;
    }

    // Ends the open group; undo must give before back, redo the scene the group ended with.
    void expectExactStep(const QByteArray &before, const char *what)
    {
        m_document.EndUndoGroup();
        expectUndoRedoExact(m_document, before, what);
    }

    Document m_document;
    SceneNode *m_shelf = nullptr;
    MeshNode *m_box = nullptr;
    MeshNode *m_book = nullptr;
};

} // namespace

TEST_F(InGroupDeletionTest, NodesTheGroupCreatedGoAtOnceAndEveryEndingGivesTheSameScene)
{
    const QByteArray before = dump(m_document);
    // Without the deletion: the scene the group must end with either way.
    m_document.BeginUndoGroup();
    m_book->SetName(QStringLiteral("Renamed while open"));
    copies(3);
    root()->CreateChildGroup(QStringLiteral("Appended"));
    m_document.EndUndoGroup();
    const QByteArray expected = dump(m_document);
    ASSERT_TRUE(m_document.undo());
    m_document.history().clear();

    for (const bool cancel : {true, false}) {
        m_document.BeginUndoGroup();
        const std::vector<INode *> first = copies(5);
        const QPointer<INode> copy = first.front();
        const QPointer<INode> cloneChild = m_document.CloneNode(m_shelf, 0)->GetChildren()[2];
        m_book->SetName(QStringLiteral("Renamed while open"));
        m_document.DeleteNodes(first);
        EXPECT_TRUE(copy.isNull()) << "a copy the group created is freed at once";
        m_document.DeleteNodes({cloneChild->GetParent()});
        EXPECT_TRUE(cloneChild.isNull()) << "with whatever came with it";
        copies(3);
        root()->CreateChildGroup(QStringLiteral("Appended"));
        EXPECT_EQ(dump(m_document), expected);
        if (cancel) {
            m_document.CancelUndoGroup();
            EXPECT_EQ(dump(m_document), before) << "Cancel";
        } else {
            expectExactStep(before, "OK");
        }
    }

    // A group left empty by the deletion still stands for what the user did, as it would if it
    // held the recorded changes that undo each other.
    m_document.BeginUndoGroup();
    m_document.DeleteNodes({root()->CreateChildGroup(QStringLiteral("Gone"))});
    m_document.history().endGroup(UndoHistory::EmptyGroup::Drop);
    EXPECT_EQ(m_document.history().undoCount(), 1);
    EXPECT_EQ(dump(m_document), before);
}

TEST_F(InGroupDeletionTest, ADeletionSomethingElseDependsOnStaysRecorded)
{
    // Each makes, inside the open group, the node to delete and what depends on it.
    const std::vector<std::pair<const char *, std::function<INode *()>>> cases = {
        {"selected once",
         [&] {
             INode *copy = copies(1).front();
             m_document.SetSelection({copy}, Document::ReplaceSelection);
             m_document.SetSelection({}, Document::ReplaceSelection);
             return copy;
         }},
        {"an older node moved below it",
         [&] {
             INode *copy = copies(1).front();
             m_document.MoveNodes(copy, 0, {m_book});
             return copy;
         }},
        {"its siblings reordered after it came",
         [&] {
             INode *copy = copies(2).back();
             m_shelf->CreateChildGroup(QStringLiteral("Divider"));
             m_document.MoveNodes(m_shelf, 2, {m_box}); // between the copies and the divider
             return copy;
         }},
        {"a node it came with lives on, an older one took its place",
         [&] {
             INode *clone = m_document.CloneNode(m_shelf, 0);
             m_document.MoveNodes(root(), 0, {clone->GetChildren()[0]});
             m_document.MoveNodes(clone, 0, {m_book});
             return clone;
         }},
        {"a parameter changed",
         [&] {
             auto *copy = static_cast<MeshNode *>(m_document.CloneNode(m_book, 1));
             copy->generator()->setProperty("width", 30.f);
             return copy;
         }},
        {"made before the group", [&] { return m_box; }},
        {"made in the outer group",
         [&] {
             INode *copy = copies(1).front();
             m_document.BeginUndoGroup();
             m_book->SetName(QStringLiteral("Inner"));
             return copy;
         }},
    };
    for (const auto &[what, make] : cases) {
        const QByteArray before = dump(m_document);
        // The same made and removed the way scripts remove nodes, which is always recorded.
        m_document.BeginUndoGroup();
        m_document.removeNodes({make()});
        const QByteArray removed = dump(m_document);
        while (m_document.history().openGroupCount() > 0)
            m_document.CancelUndoGroup();
        ASSERT_EQ(dump(m_document), before) << what;

        m_document.BeginUndoGroup();
        const QPointer<INode> node = make();
        m_document.DeleteNodes({node});
        EXPECT_FALSE(node.isNull()) << what << ": kept for undo";
        EXPECT_EQ(dump(m_document), removed) << what;
        while (m_document.history().openGroupCount() > 1)
            m_document.EndUndoGroup();
        expectExactStep(before, what);
    }
}

// The real tool: its window's count changes keep only the copies it shows, and script edits made
// while it is open never leave it holding a freed copy.
TEST(StepAndRepeatPreview, CountChangesKeepOnlyTheShownCopies)
{
    Session session;
    QString error;
    ASSERT_TRUE(session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        << error.toStdString();
    Document &document = session.document();
    MeshNode *box = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    document.SetSelection({box}, Document::ReplaceSelection);
    document.history().clear();
    const QByteArray before = dump(document);
    ITool *tool = session.tools().findTool(QStringLiteral("Step and Repeat..."));
    ASSERT_NE(tool, nullptr);

    // Opens the window (on its first grid of 3 columns), sets the values in order and ends it
    // with the button; returns a copy of the first grid.
    const auto preview
        = [&](const std::vector<std::pair<const char *, double>> &values, const char *button) {
              tool->Execute(session.context());
              QDialog *window = session.userInterface().openWindow();
              const QPointer<INode> first = box->GetParent()->GetChildren().back();
              for (const auto &[property, value] : values)
                  FindPanel(window)->setPanelValue(QLatin1String(property), value);
              window->findChild<QPushButton *>(QLatin1String(button))->click();
              QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
              return first;
          };
    // The grid without any count change, so without any deletion.
    EXPECT_FALSE(preview({{"stepX", 2.5}}, "ok").isNull());
    const QByteArray grid = dump(document);
    ASSERT_TRUE(document.undo());

    const std::vector<std::pair<const char *, double>> changes
        = {{"repeatX", 5}, {"repeatX", 4}, {"repeatX", 3}, {"stepX", 2.5}};
    EXPECT_TRUE(preview(changes, "cancel").isNull()) << "a count change frees the old copies";
    EXPECT_EQ(dump(document), before) << "Cancel";
    preview(changes, "ok");
    EXPECT_EQ(dump(document), grid) << "OK";
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), before) << "undo";
    ASSERT_TRUE(document.redo());
    EXPECT_EQ(dump(document), grid) << "redo";
    ASSERT_TRUE(document.undo());

    // A copy a script removes (the newest, which nothing else refers to) stays the tool's to
    // delete at the next count change.
    ASSERT_TRUE(session.runner().evaluate(
        QStringLiteral("document.runTool('Step and Repeat...'); var w = document.window;"
                       "var g = document.findNode('Box');"
                       "g.children[g.children.length - 1].remove(); w.set('repeatX', 4);"
                       "g.children[g.children.length - 1].name = 'Renamed'; w.set('stepX', 2);"
                       "w.set('repeatX', 2); w.cancel();"),
        QStringLiteral("test.js"),
        &error))
        << error.toStdString();
    EXPECT_EQ(dump(document), before) << "Cancel after a script's removal";
}
