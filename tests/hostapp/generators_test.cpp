// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The shape generators as objects: the registry that makes them, their parameters and limits,
// clones sharing meshes, and the mesh builder they build with.
#include "host/iserializable.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshbuilder.h"
#include "tests/hostapp/generatorchecks.h"

#include <gtest/gtest.h>

#include <QMetaProperty>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

// Every shape's parameters, in the order scene files and the property panel list them: the sizes
// first, then what only that kind of shape has.
const std::vector<std::pair<std::vector<std::string>, QStringList>> s_parameters = {
    {{std::begin(s_discCases), std::end(s_discCases)},
     {"width", "height", "thickness", "coverAngle"}},
    {{"generator.Devices.iPad", "generator.Devices.iPhone4", "generator.Devices.iPhone5"},
     {"width", "height", "thickness", "cornerRadius"}},
    {{"generator.canvas.simple", "generator.Boxes.Box"}, {"width", "height", "depth"}},
    {{"generator.Boxes.SlidingBox"}, {"width", "height", "depth", "slide"}},
    {{"generator.Boxes.TaggedBox"}, {"width", "height", "depth", "tagHeight"}},
    {{"generator.DiscBox.Disc"}, {"diameter", "holeDiameter", "thickness"}},
    {{"generator.Book.HardCover", "generator.Book.Magazine"}, {"width", "height", "thickness"}},
    {{"generator.Book.PaperbackRoundCorners"}, {"width", "height", "thickness", "cornerRadius"}},
    {{std::begin(s_paperbacks), std::end(s_paperbacks)}, {"width", "height", "thickness", "type"}},
    {{"generator.Images.Image"}, {"width", "height", "thickness", "bend"}},
    {{"generator.external.model"}, {"path"}},
};

// Documented limits of every parameter, in its own unit.
const std::map<std::string, std::pair<double, double>> s_limits = {
    {"width", {0.01, 1000.}},
    {"height", {0.01, 1000.}},
    {"depth", {0.01, 1000.}},
    {"thickness", {0.01, 1000.}},
    {"tagHeight", {0.01, 1000.}},
    {"diameter", {0.01, 1000.}},
    {"holeDiameter", {0., 1000.}},
    {"cornerRadius", {0., 1000.}},
    {"slide", {0., 1.}},
    {"coverAngle", {0., 180.}},
    {"bend", {-180., 180.}},
    {"type", {0., 2.}},
};

} // namespace

TEST(GeneratorRegistry, EveryIdentifierCreatesItsOwnSerializableGenerator)
{
    QList<QByteArray> expected;
    for (const char *id : s_identifiers)
        expected.append(id);
    EXPECT_EQ(generatorIdentifiers(), expected) << "all twenty, in menu order";

    for (const QByteArray &id : generatorIdentifiers()) {
        std::unique_ptr<ShapeGenerator> generator = createGenerator(id);
        ASSERT_TRUE(generator) << id.constData();
        EXPECT_STREQ(generator->GetTypeId(), id.constData());
        QObject *object = generator.get();
        auto *serializable = qobject_cast<ISerializable *>(object);
        ASSERT_NE(serializable, nullptr) << id.constData();
        EXPECT_STREQ(serializable->GetTypeId(), id.constData());
        EXPECT_STREQ(generator->clone()->GetTypeId(), id.constData()) << "clones keep the kind";
    }
    for (const char *unknown : {"", "generator.boxes.box", "generator.Boxes.Box ", "Box"})
        EXPECT_EQ(createGenerator(unknown), nullptr) << '"' << unknown << '"';
}

TEST(GeneratorProperties, EveryShapeHasItsOwnParametersInPanelOrder)
{
    std::set<std::string> covered;
    for (const auto &[ids, names] : s_parameters) {
        for (const std::string &id : ids) {
            EXPECT_EQ(make(id.c_str())->parameterNames(), names) << id;
            EXPECT_TRUE(covered.insert(id).second) << id << " listed twice";
        }
    }
    EXPECT_EQ(covered.size(), std::size(s_identifiers)) << "every shape has its list";
}

TEST(GeneratorProperties, WritesAreLimitedAndMeshesStayValidAtTheLimits)
{
    for (const char *id : s_identifiers) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        QStringList numeric;
        for (const QString &name : generator->parameterNames()) {
            if (name != QLatin1String("path"))
                numeric.append(name);
        }
        for (const QString &name : std::as_const(numeric)) {
            const QByteArray key = name.toLatin1();
            const std::string label = std::string(id) + " " + key.constData();
            const auto limits = s_limits.find(key.toStdString());
            ASSERT_NE(limits, s_limits.end()) << label << " has no documented limits";
            const auto [low, high] = limits->second;
            // Far below, far above, and a value inside that is kept.
            const double writes[3][3] = {
                {-1e9, low, 1e-6}, {1e9, high, 1e-6}, {(low + high) / 2, (low + high) / 2, 1e-3}};
            for (const auto &[written, expected, tolerance] : writes) {
                generator->setProperty(key.constData(), written);
                EXPECT_NEAR(generator->property(key.constData()).toDouble(), expected, tolerance)
                    << label << " written " << written;
            }
            if (generator->property(key.constData()).userType() == QMetaType::Float) {
                generator->setProperty(key.constData(), std::numeric_limits<double>::quiet_NaN());
                const double value = generator->property(key.constData()).toDouble();
                EXPECT_TRUE(value >= low - 1e-6 && value <= high + 1e-6)
                    << label << ": NaN gave " << value;
            }
        }
        // All low, all high, and the thinnest and fattest mixes of the two.
        for (int mix = 0; mix < 4; ++mix) {
            for (int i = 0; i < numeric.size(); ++i) {
                const bool high = mix == 1 || (mix == 2 && i > 0) || (mix == 3 && i == 0);
                generator->setProperty(numeric[i].toLatin1().constData(), high ? 1e9 : -1e9);
            }
            expectWellFormed(*generator->mesh(),
                             std::string(id) + " limits mix " + std::to_string(mix));
        }
    }
}

TEST(ShapeGenerators, ClonesShareTheMeshUntilOneOfThemChanges)
{
    for (const char *id :
         {"generator.Boxes.Box", "generator.DiscBox.DVD", "generator.Images.Image"}) {
        std::unique_ptr<ShapeGenerator> original = make(id);
        const MeshPtr shared = original->mesh();
        std::unique_ptr<ShapeGenerator> copy = original->clone();
        EXPECT_EQ(copy->mesh(), shared) << id << ": a clone shares the mesh object";
        EXPECT_EQ(copy->parameters(), original->parameters()) << id;

        copy->setProperty("width", original->property("width"));
        EXPECT_EQ(copy->mesh(), shared) << id << ": writing the current value changes nothing";
        copy->setProperty("width", 7.5);
        EXPECT_NE(copy->mesh(), shared) << id << ": the changed clone builds its own mesh";
        EXPECT_EQ(original->mesh(), shared) << id << ": the original keeps the shared mesh";

        original->setProperty("width", 5000.); // limited to the upper bound
        const MeshPtr atLimit = original->mesh();
        original->setProperty("width", 9000.);
        EXPECT_EQ(original->mesh(), atLimit) << id << ": a write limited to the current value";
    }
}

TEST(ExternalModelGenerator, ShowsTheHandedMeshAndClonesKeepIt)
{
    std::unique_ptr<ShapeGenerator> generator = make("generator.external.model");
    EXPECT_EQ(generator->mesh()->vertexCount(), 0) << "empty until a model is handed over";

    MeshBuilder builder;
    builder.addBox(Vector3(0, 0, 0), Vector3(1, 2, 3));
    const MeshPtr model = builder.build();
    auto *external = qobject_cast<ExternalModelGenerator *>(generator.get());
    ASSERT_NE(external, nullptr);
    external->setModelMesh(model);
    EXPECT_EQ(generator->mesh(), model);

    std::unique_ptr<ShapeGenerator> copy = generator->clone();
    external->setModelMesh(nullptr);
    EXPECT_TRUE(generator->mesh()->parts().empty());
    EXPECT_EQ(copy->mesh(), model);
}

TEST(MeshBuilder, PartsMarksAndTransforms)
{
    MeshBuilder empty;
    empty.beginPart();
    const MeshPtr nothing = empty.build();
    EXPECT_TRUE(nothing->parts().empty()) << "no empty parts";
    EXPECT_EQ(nothing->vertexCount(), 0);

    MeshBuilder builder;
    builder.addBox(Vector3(0, 0, 0), Vector3(1, 1, 1));
    builder.beginPart();
    builder.beginPart(); // still empty: no second new part
    const MeshBuilder::Mark mark = builder.mark();
    builder.addBox(Vector3(0, 0, 0), Vector3(1, 1, 1));
    builder.beginPart();
    builder.addBox(Vector3(0, 0, 0), Vector3(1, 1, 1));
    builder.transformSince(mark, MeshBuilder::hingeRotation(0.f, 0.f, 90.f));
    const MeshPtr mesh = builder.build();
    ASSERT_EQ(mesh->parts().size(), 3u);
    expectWellFormed(*mesh, "unit boxes");
    // Swung 90 degrees about the z axis: +x goes to -y, +y to +x.
    for (std::size_t i = 0; i < 3; ++i) {
        TBBox<float> box;
        for (const VertexRecord &v : mesh->parts()[i]->GetVertices()) {
            for (int a = 0; a < 3; ++a) {
                box.min[a] = std::min(box.min[a], v.position[a]);
                box.max[a] = std::max(box.max[a], v.position[a]);
            }
        }
        const float expectedMinY = i == 0 ? 0.f : -1.f;
        EXPECT_NEAR(box.min[1], expectedMinY, 1e-6) << "part " << i;
        EXPECT_NEAR(box.min[0], 0.f, 1e-6) << "part " << i;
        EXPECT_NEAR(box.max[0], 1.f, 1e-6) << "part " << i;
    }
}
