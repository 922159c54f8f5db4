// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Shapes of one kind and parameters share one mesh: the shared mesh is always the one the
// generator would build itself, a parameter change gives only that shape another mesh, models
// read from files are never shared, and meshes no shape holds are freed.
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/generators/boxgenerator.h"
#include "hostapp/core/scene/generators/devicegenerator.h"
#include "hostapp/core/scene/generators/discgenerator.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/generators/imagegenerator.h"
#include "hostapp/core/scene/generators/paperbackgenerator.h"
#include "hostapp/core/scene/meshcache.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <thread>
#include <vector>

using namespace vantrel::host;

namespace {

// The generator class with its own build() in reach, to compare against: without Q_OBJECT it
// keeps the class name of the generator it stands for.
template<class Generator>
class FreshBuild : public Generator
{
public:
    using Generator::Generator;
    MeshPtr fresh() const { return this->build(); }
};

// Every part's vertex records (all 15 floats, by their bits) and triangle lists equal.
::testing::AssertionResult sameMesh(const Mesh &actual, const Mesh &expected)
{
    if (actual.meshParts().size() != expected.meshParts().size())
        return ::testing::AssertionFailure()
               << actual.meshParts().size() << " parts, expected " << expected.meshParts().size();
    for (std::size_t i = 0; i < actual.meshParts().size(); ++i) {
        const MeshPart &a = *actual.meshParts()[i];
        const MeshPart &e = *expected.meshParts()[i];
        if (a.GetVertices().size() != e.GetVertices().size() || a.indices() != e.indices())
            return ::testing::AssertionFailure() << "part " << i << " differs in size or triangles";
        if (std::memcmp(a.GetVertices().data(),
                        e.GetVertices().data(),
                        a.GetVertices().size() * sizeof(VertexRecord))
            != 0)
            return ::testing::AssertionFailure() << "part " << i << " differs in a vertex";
    }
    return ::testing::AssertionSuccess();
}

// Builds a generator of class G and identifier id, applies the writes in order, and checks that
// its mesh, taken through the cache, equals what the class builds itself for those values.
template<class G>
MeshPtr expectCachedEqualsFresh(const char *id,
                                const std::vector<std::pair<const char *, QVariant>> &writes)
{
    FreshBuild<G> generator(id);
    for (const auto &[name, value] : writes)
        EXPECT_TRUE(generator.setProperty(name, value)) << id << " " << name;
    const MeshPtr cached = generator.mesh();
    EXPECT_TRUE(sameMesh(*cached, *generator.fresh()))
        << id << " after " << writes.size() << " writes";
    return cached;
}

} // namespace

TEST(MeshCache, LikeShapesShareOneMeshAndAParameterChangeGivesOnlyThatShapeItsOwn)
{
    Document document;
    MeshNode *first
        = document.root()->createChildShape(BoxGenerator::s_typeId, QStringLiteral("First"));
    MeshNode *second
        = document.root()->createChildShape(BoxGenerator::s_typeId, QStringLiteral("Second"));
    document.history().clear();
    const MeshPtr original = first->mesh();
    EXPECT_EQ(second->mesh(), original) << "two boxes made one by one share one mesh";
    const QByteArray before = vantrel::test::dump(document);

    ASSERT_TRUE(second->generator()->setProperty("width", 33.5f));
    const MeshPtr widened = second->mesh();
    EXPECT_NE(widened, original);
    EXPECT_EQ(first->mesh(), original) << "the other box keeps its own mesh";
    FreshBuild<BoxGenerator> reference(BoxGenerator::s_typeId);
    reference.setWidth(33.5f);
    EXPECT_TRUE(sameMesh(*widened, *reference.fresh()));
    EXPECT_EQ(widened->localBox().max[0], 33.5f / 2);

    // A third box given the new width later shares the changed box's mesh, not the old one.
    MeshNode *third
        = document.root()->createChildShape(BoxGenerator::s_typeId, QStringLiteral("Third"));
    ASSERT_TRUE(third->generator()->setProperty("width", 33.5));
    EXPECT_EQ(third->mesh(), widened);

    document.undo(); // the third box's width
    document.undo(); // the third box
    document.undo(); // the second box's width
    EXPECT_TRUE(sameMesh(*second->mesh(), *original));
    EXPECT_EQ(vantrel::test::dump(document), before);
    document.redo();
    EXPECT_TRUE(sameMesh(*second->mesh(), *widened));
    EXPECT_EQ(first->mesh(), original);
}

TEST(MeshCache, CachedMeshesEqualAFreshBuildForEveryParameterSet)
{
    const MeshPtr box = expectCachedEqualsFresh<BoxGenerator>(BoxGenerator::s_typeId, {});
    // The same values reached another way (changed, then set back) find the same mesh.
    EXPECT_EQ(expectCachedEqualsFresh<BoxGenerator>(
                  BoxGenerator::s_typeId, {{"depth", 4.f}, {"width", 20.f}, {"depth", 10.f}}),
              box);
    const MeshPtr wide
        = expectCachedEqualsFresh<BoxGenerator>(BoxGenerator::s_typeId, {{"width", 20.000002f}});
    EXPECT_NE(wide, box) << "floats one bit apart are other parameters";

    expectCachedEqualsFresh<DiscGenerator>(DiscGenerator::s_typeId,
                                           {{"diameter", 8.f}, {"holeDiameter", 0.f}});
    const MeshPtr flat
        = expectCachedEqualsFresh<ImageGenerator>(ImageGenerator::s_typeId, {{"bend", 0.f}});
    const MeshPtr bent
        = expectCachedEqualsFresh<ImageGenerator>(ImageGenerator::s_typeId, {{"bend", -35.f}});
    EXPECT_NE(flat, bent);
    expectCachedEqualsFresh<PaperbackGenerator>(PaperbackGenerator::s_stepbackId,
                                                {{"thickness", 2.5f}});
    expectCachedEqualsFresh<PaperbackGenerator>(PaperbackGenerator::s_paperbackId,
                                                {{"thickness", 2.5f}});

    // One class, several identifiers with their own proportions: the same values do not make
    // the same mesh, and each identifier gets its own.
    const std::vector<std::pair<const char *, QVariant>> sameValues
        = {{"width", 7.f}, {"height", 12.f}, {"thickness", 0.8f}, {"cornerRadius", 0.9f}};
    const MeshPtr pad
        = expectCachedEqualsFresh<DeviceGenerator>(DeviceGenerator::s_iPadId, sameValues);
    const MeshPtr phone
        = expectCachedEqualsFresh<DeviceGenerator>(DeviceGenerator::s_iPhone4Id, sameValues);
    EXPECT_NE(pad, phone);
}

TEST(MeshCache, ModelsAreNeverSharedAndUnusedMeshesAreFreed)
{
    // Two models at the same (empty) path, each handed a mesh of its own: neither may show the
    // other's.
    Document document;
    MeshNode *low
        = vantrel::test::addBoxNode(document.root(), QStringLiteral("Low"), {0, 0, 0}, {1, 1, 1});
    MeshNode *high
        = vantrel::test::addBoxNode(document.root(), QStringLiteral("High"), {0, 0, 5}, {1, 1, 6});
    // Writing the path back, as undo does, drops the mesh shown, so the next look goes through
    // the mesh lookup again.
    for (MeshNode *node : {low, high})
        node->generator()->restoreValue("path", QString());
    EXPECT_NE(low->mesh(), high->mesh());
    EXPECT_EQ(low->GetLocalBBox().max[2], 1.f);
    EXPECT_EQ(high->GetLocalBBox().max[2], 6.f);

    // The cache holds no mesh alive by itself, however many kinds of box came and went.
    const int liveBefore = MeshCache::instance().liveCount();
    std::weak_ptr<const Mesh> gone;
    for (int i = 0; i < 500; ++i) {
        BoxGenerator box(BoxGenerator::s_typeId);
        box.setWidth(10.f + float(i) / 64);
        if (i == 0)
            gone = box.mesh();
        else
            box.mesh();
    }
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(MeshCache::instance().liveCount(), liveBefore);
}

TEST(MeshCache, ShapesOnSeveralThreadsAtOnceGetOneMesh)
{
    // A size no other test uses, so that the first thread to ask builds it.
    std::vector<MeshPtr> meshes(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        threads.emplace_back([&meshes, i] {
            DiscGenerator disc(DiscGenerator::s_typeId);
            disc.setDiameter(9.25f);
            meshes[i] = disc.mesh();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const MeshPtr &mesh : meshes)
        EXPECT_EQ(mesh, meshes.front());
}
