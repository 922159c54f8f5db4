// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::dump;
using vantrel::test::expectUndoRedoExact;

namespace {

// Whether code outside the document can hand T a change object of its own making.
template<class T, class = void>
struct TakesChanges : std::false_type
{};
template<class T>
struct TakesChanges<T, std::void_t<decltype(std::declval<T &>().apply(std::unique_ptr<Change>()))>>
    : std::true_type
{};
template<class T, class = void>
struct SetsSelectionRaw : std::false_type
{};
template<class T>
struct SetsSelectionRaw<
    T,
    std::void_t<decltype(std::declval<T &>().applySelection(std::vector<INode *>()))>>
    : std::true_type
{};

// No caller changes the scene without an undo step: neither the document nor its history takes
// a change from outside, the document cannot be used as a change recorder, and its raw setters
// are its own. (A change object handed in could edit the tree behind the recorded operations.)
static_assert(!TakesChanges<Document>::value);
static_assert(!TakesChanges<UndoHistory>::value);
static_assert(!std::is_convertible_v<Document *, ChangeRecorder *>);
static_assert(!SetsSelectionRaw<Document>::value);

class UndoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        BaseNode *root = m_document.root();
        m_group = static_cast<SceneNode *>(root->CreateChildGroup(QStringLiteral("Shelf")));
        m_box = addBoxNode(m_group, QStringLiteral("Box"), {-1, -1, 0}, {1, 1, 2});
        m_book = root->createChildShape("generator.Book.Paperback", QStringLiteral("Book"));
        m_light = static_cast<LightNode *>(root->CreateChildLight(QStringLiteral("Key")));
        m_document.history().clear(); // the scene above is the starting point, not a step
    }

    Document m_document;
    SceneNode *m_group = nullptr;
    MeshNode *m_box = nullptr;
    MeshNode *m_book = nullptr;
    LightNode *m_light = nullptr;
};

} // namespace

// Every kind of change the document records, each on its own: it changes the dump, undo gives
// the old dump back exactly, redo the new one.
TEST_F(UndoTest, EveryKindOfChangeIsUndoneAndRedoneExactly)
{
    const std::vector<std::pair<const char *, std::function<void()>>> changes = {
        {"name", [&] { m_box->SetName(QStringLiteral("Crate")); }},
        {"visibility", [&] { m_book->SetVisible(false); }},
        {"position",
         [&] {
             m_box->SetPosition({1, 2, 3}, true);
         }},
        {"rotation",
         [&] {
             m_book->SetRotation({10, 20, 30}, false);
         }},
        {"scale",
         [&] {
             m_group->SetScale({2, 2, 0.5f}, 0);
         }},
        {"light intensity", [&] { m_light->SetIntensity(0.25f); }},
        {"light shadow blur", [&] { m_light->SetShadowBlur(12.f); }},
        {"light casts shadows", [&] { m_light->SetCastShadows(true); }},
        {"light mode", [&] { m_light->SetLightMode(1); }},
        {"ambient level", [&] { m_document.SetAmbientIntensity(0.8f); }},
        {"lighting mode", [&] { m_document.SetLightingMode(1); }},
        {"selection",
         [&] {
             m_document.SetSelection({m_box, m_light}, Document::ReplaceSelection);
         }},
        {"generator parameter", [&] { m_book->generator()->setProperty("type", 1); }},
        {"new group", [&] { m_document.root()->CreateChildGroup(QStringLiteral("New")); }},
        {"new light", [&] { m_group->CreateChildLight(QStringLiteral("Fill")); }},
        {"new shape",
         [&] { m_group->createChildShape("generator.Boxes.Box", QStringLiteral("Carton")); }},
        {"clone", [&] { m_document.CloneNode(m_group, 0); }},
        {"deletion", [&] { m_document.DeleteNodes({m_group}); }},
        {"move to another parent",
         [&] {
             m_document.MoveNodes(m_group, 0, {m_book, m_light});
         }},
        {"reorder among siblings", [&] { m_document.MoveNodes(m_document.root(), 0, {m_light}); }},
    };
    for (const auto &[what, change] : changes) {
        const QByteArray before = dump(m_document);
        change();
        const QByteArray after = dump(m_document);
        EXPECT_NE(after, before) << what << " changed nothing that the dump shows";
        EXPECT_EQ(m_document.history().undoCount(), 1) << what << " is one step";
        expectUndoRedoExact(m_document, before, what);
    }
}

TEST_F(UndoTest, AnEndedGroupIsOneStepThatUndoAndRedoReplay)
{
    const QByteArray before = dump(m_document);
    m_document.history().setNextStepName(QStringLiteral("Arrange"));
    m_document.BeginUndoGroup();
    INode *stack = m_document.root()->CreateChildGroup(QStringLiteral("Stack"));
    m_document.MoveNodes(stack, 0, {m_box, m_book});
    INode *copy = m_document.CloneNode(m_box, 0);
    copy->SetName(QStringLiteral("Box copy"));
    m_book->generator()->setProperty("width", 30.f);
    m_document.DeleteNodes({m_light});
    m_document.SetSelection({stack}, Document::ReplaceSelection);
    m_document.EndUndoGroup();
    const QByteArray after = dump(m_document);

    EXPECT_EQ(m_document.history().undoCount(), 1);
    EXPECT_EQ(m_document.history().undoText(), QStringLiteral("Arrange"));
    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(dump(m_document), before);
    ASSERT_TRUE(m_document.redo());
    EXPECT_EQ(dump(m_document), after);
    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(dump(m_document), before);

    // A new change drops the step that could be redone, with the nodes it created.
    m_box->SetName(QStringLiteral("Other"));
    EXPECT_EQ(m_document.history().redoCount(), 0);
}

TEST_F(UndoTest, ACancelledGroupRestoresTheSceneExactly)
{
    m_document.SetSelection({m_box}, Document::ReplaceSelection);
    m_document.history().clear();
    const QByteArray before = dump(m_document);

    m_document.BeginUndoGroup();
    INode *group = m_document.root()->CreateChildGroup(QStringLiteral("Box"));
    m_document.MoveNodes(m_document.root(), 0, {group});
    m_document.MoveNodes(group, 0, {m_box});
    for (int i = 0; i < 5; ++i)
        m_document.MoveNodes(group, i + 1, {m_document.CloneNode(m_box, 1)});
    m_document.DeleteNodes({m_group, m_light}); // takes the selected box's old parent
    m_box->SetPosition({0, 0, 0}, false);
    m_book->generator()->setProperty("type", 2);
    m_document.SetAmbientIntensity(0.1f);
    m_document.CancelUndoGroup();

    EXPECT_EQ(dump(m_document), before);
    EXPECT_EQ(m_document.history().undoCount(), 0) << "nothing was kept";

    // A preview rebuilt at once (cancelled, begun again) keeps its step's name; anything else in
    // between forgets it.
    m_document.history().setNextStepName(QStringLiteral("Stack..."));
    m_document.BeginUndoGroup();
    m_box->SetName(QStringLiteral("First try"));
    m_document.CancelUndoGroup();
    m_document.BeginUndoGroup();
    m_box->SetName(QStringLiteral("Second try"));
    m_document.EndUndoGroup();
    EXPECT_EQ(m_document.history().undoText(), QStringLiteral("Stack..."));
    m_document.history().setNextStepName(QStringLiteral("Stack..."));
    m_document.BeginUndoGroup();
    m_box->SetName(QStringLiteral("Third try"));
    m_document.CancelUndoGroup();
    m_book->SetName(QStringLiteral("Renamed"));
    m_document.BeginUndoGroup();
    m_box->SetName(QStringLiteral("Fourth try"));
    m_document.EndUndoGroup();
    EXPECT_EQ(m_document.history().undoText(), QStringLiteral("Edit"));
}

TEST_F(UndoTest, NestedGroupsEndIntoTheOuterOneAndCancelOnlyTheirOwnChanges)
{
    const QByteArray before = dump(m_document);
    m_document.BeginUndoGroup();
    m_box->SetName(QStringLiteral("A"));

    m_document.BeginUndoGroup();
    m_book->SetName(QStringLiteral("B"));
    m_document.root()->CreateChildGroup(QStringLiteral("dropped"));
    m_document.CancelUndoGroup();
    EXPECT_EQ(m_book->GetName(), QStringLiteral("Book")) << "the inner cancel reverts its change";
    EXPECT_EQ(m_box->GetName(), QStringLiteral("A")) << "but not the outer group's";
    EXPECT_EQ(m_document.root()->GetChildren().size(), 3u);

    m_document.BeginUndoGroup();
    m_light->SetName(QStringLiteral("C"));
    m_document.EndUndoGroup();
    EXPECT_EQ(m_document.history().undoCount(), 0) << "an inner end makes no step of its own";
    EXPECT_FALSE(m_document.undo()) << "no undo while a group is open";

    m_document.EndUndoGroup();
    const QByteArray after = dump(m_document);
    EXPECT_EQ(m_document.history().undoCount(), 1);
    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(dump(m_document), before) << "one undo reverts the outer and the ended inner group";
    ASSERT_TRUE(m_document.redo());
    EXPECT_EQ(dump(m_document), after);
}

TEST_F(UndoTest, ChangesOutsideGroupsAreStepsOfTheirOwnAndNoOpsAreNotRecorded)
{
    m_box->SetName(QStringLiteral("One"));
    m_box->SetPosition({0, 0, 5}, true);
    m_box->SetPosition({0, 0, 5}, true); // the same value: nothing to record
    m_light->SetIntensity(m_light->GetIntensity());
    EXPECT_EQ(m_document.history().undoCount(), 2);

    // An ended group that collected nothing is still the step the user took (say, OK in a tool
    // window without changes).
    m_document.BeginUndoGroup();
    m_document.EndUndoGroup();
    EXPECT_EQ(m_document.history().undoCount(), 3);

    // Unbalanced ends and cancels are ignored.
    m_document.EndUndoGroup();
    m_document.CancelUndoGroup();
    EXPECT_EQ(m_document.history().undoCount(), 3);
}
