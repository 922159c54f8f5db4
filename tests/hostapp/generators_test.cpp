// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/iserializable.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/mesh.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <gtest/gtest.h>

#include <QMetaProperty>

#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace vantrel::host;

namespace {

constexpr double Pi = 3.14159265358979323846;

struct Vec
{
    double x, y, z;
};
Vec operator-(const Vec &a, const Vec &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec operator*(const Vec &a, double s)
{
    return {a.x * s, a.y * s, a.z * s};
}
double dot(const Vec &a, const Vec &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec cross(const Vec &a, const Vec &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double norm(const Vec &a)
{
    return std::sqrt(dot(a, a));
}
Vec vec(const float *f)
{
    return {f[0], f[1], f[2]};
}

const MeshPart &meshPart(const IMeshPart *part)
{
    return *static_cast<const MeshPart *>(part);
}

using Triangle = std::array<Vec, 3>;

// The corner positions of every triangle of every part.
std::vector<Triangle> triangles(const Mesh &mesh)
{
    std::vector<Triangle> result;
    for (const IMeshPart *p : mesh.parts()) {
        const MeshPart &part = meshPart(p);
        for (std::size_t t = 0; t + 2 < part.indices().size(); t += 3) {
            Triangle corners;
            for (int k = 0; k < 3; ++k)
                corners[k] = vec(part.GetVertices()[part.indices()[t + k]].position);
            result.push_back(corners);
        }
    }
    return result;
}

// The tetrahedron from the origin to the triangle; summed over a closed, outward-facing surface
// it gives the enclosed volume, in cm³.
double signedVolume(const Triangle &c)
{
    return dot(c[0], cross(c[1], c[2])) / 6.;
}

double signedVolume(const Mesh &mesh)
{
    double volume = 0.;
    for (const Triangle &triangle : triangles(mesh))
        volume += signedVolume(triangle);
    return volume;
}

// The signed volume of each connected shell: triangles that share an edge belong together.
std::vector<double> shellVolumes(const Mesh &mesh)
{
    const std::vector<Triangle> all = triangles(mesh);
    std::vector<std::size_t> parent(all.size());
    for (std::size_t i = 0; i < parent.size(); ++i)
        parent[i] = i;
    const auto root = [&parent](std::size_t i) {
        while (parent[i] != i)
            i = parent[i] = parent[parent[i]];
        return i;
    };
    std::map<std::pair<std::array<double, 3>, std::array<double, 3>>, std::size_t> firstUse;
    for (std::size_t t = 0; t < all.size(); ++t) {
        for (int e = 0; e < 3; ++e) {
            const Vec &a = all[t][e], &b = all[t][(e + 1) % 3];
            std::array<double, 3> ka{a.x, a.y, a.z}, kb{b.x, b.y, b.z};
            if (kb < ka)
                std::swap(ka, kb);
            const auto [it, inserted] = firstUse.emplace(std::make_pair(ka, kb), t);
            if (!inserted)
                parent[root(t)] = root(it->second);
        }
    }
    std::map<std::size_t, double> volumes;
    for (std::size_t t = 0; t < all.size(); ++t)
        volumes[root(t)] += signedVolume(all[t]);
    std::vector<double> result;
    result.reserve(volumes.size());
    for (const auto &entry : volumes)
        result.push_back(entry.second);
    return result;
}

// Checks every promise a generated mesh makes; counts faults per kind so that one broken shape
// gives a handful of messages rather than thousands. Closedness is checked over all parts
// together, because a carton's panels are parts of their own.
void expectWellFormed(const Mesh &mesh, const std::string &label)
{
    std::map<std::string, int> faults;
    std::map<std::pair<std::array<float, 3>, std::array<float, 3>>, int> edges;
    for (const IMeshPart *p : mesh.parts()) {
        const MeshPart &part = meshPart(p);
        const auto &v = part.GetVertices();
        const auto &idx = part.indices();
        ASSERT_FALSE(v.empty()) << label << ": empty part";
        ASSERT_EQ(idx.size() % 3, 0u) << label;
        for (const quint32 i : idx)
            ASSERT_LT(i, v.size()) << label << ": index out of range";
        for (const VertexRecord &r : v) {
            const Vec n = vec(r.normal), t = vec(r.tangent), b = vec(r.bitangent);
            faults["position not finite"]
                += !std::isfinite(r.position[0] + r.position[1] + r.position[2]);
            faults["normal not unit"] += std::abs(norm(n) - 1.) > 1e-4;
            faults["tangent not unit"] += std::abs(norm(t) - 1.) > 1e-4;
            faults["tangent not perpendicular to normal"] += std::abs(dot(n, t)) > 1e-4;
            // u runs left to right and v top to bottom seen from outside, so (t, b, n) is a
            // left-handed frame everywhere: +1 would mean mirrored artwork.
            faults["handedness not -1 (mirrored texture)"] += r.tangent[3] != -1.f;
            faults["bitangent not w * (n x t)"] += norm(b - cross(n, t) * r.tangent[3]) > 1e-4;
            faults["uv outside 0..1"] += !(r.texCoord[0] >= 0.f && r.texCoord[0] <= 1.f
                                           && r.texCoord[1] >= 0.f && r.texCoord[1] <= 1.f);
        }
        const auto key = [&v](quint32 i) {
            return std::array<float, 3>{v[i].position[0], v[i].position[1], v[i].position[2]};
        };
        for (std::size_t k = 0; k < idx.size(); k += 3) {
            const quint32 c[3] = {idx[k], idx[k + 1], idx[k + 2]};
            for (int e = 0; e < 3; ++e)
                ++edges[{key(c[e]), key(c[(e + 1) % 3])}];
            const Vec p0 = vec(v[c[0]].position), e1 = vec(v[c[1]].position) - p0,
                      e2 = vec(v[c[2]].position) - p0;
            const Vec face = cross(e1, e2);
            if (norm(face) < 1e-12)
                continue;
            const float *uv0 = v[c[0]].texCoord, *uv1 = v[c[1]].texCoord, *uv2 = v[c[2]].texCoord;
            const double du1 = uv1[0] - uv0[0], dv1 = uv1[1] - uv0[1];
            const double du2 = uv2[0] - uv0[0], dv2 = uv2[1] - uv0[1];
            const double det = du1 * dv2 - du2 * dv1;
            const Vec dPdu = (e1 * dv2 - e2 * dv1) * (1. / det);
            const Vec dPdv = (e2 * du1 - e1 * du2) * (1. / det);
            for (const quint32 i : c) {
                faults["vertex normal against winding"] += dot(face, vec(v[i].normal)) <= 0.;
                if (std::abs(det) > 1e-9) {
                    faults["tangent against u"] += dot(dPdu, vec(v[i].tangent)) <= 0.;
                    faults["bitangent against v"] += dot(dPdv, vec(v[i].bitangent)) <= 0.;
                }
            }
        }
    }
    // Closed and consistently wound: every edge is walked as often one way as the other.
    for (const auto &[edge, count] : edges) {
        const auto reverse = edges.find({edge.second, edge.first});
        faults["open or inconsistently wound edge"]
            += reverse == edges.end() || reverse->second != count;
    }
    // Outward facing: each connected shell encloses a positive volume (an inside-out piece is
    // closed and consistently wound too, but its volume is negative).
    for (const double volume : shellVolumes(mesh))
        faults["shell inside out"] += volume <= 0.;
    for (const auto &[fault, count] : faults)
        EXPECT_EQ(count, 0) << label << ": " << fault;
}

std::unique_ptr<ShapeGenerator> make(const char *typeId)
{
    std::unique_ptr<ShapeGenerator> generator = createGenerator(QByteArray(typeId));
    EXPECT_TRUE(generator) << typeId;
    return generator;
}

float number(const ShapeGenerator &generator, const char *name)
{
    return generator.property(name).toFloat();
}

bool hasParameter(const ShapeGenerator &generator, const char *name)
{
    return generator.parameterNames().contains(QString::fromLatin1(name));
}

const char *const s_identifiers[] = {
    "generator.DiscBox.DigipakDVD",
    "generator.DiscBox.DigipakCD",
    "generator.DiscBox.DVD",
    "generator.DiscBox.SlimCD",
    "generator.DiscBox.BluRay",
    "generator.Devices.iPad",
    "generator.Devices.iPhone4",
    "generator.Devices.iPhone5",
    "generator.canvas.simple",
    "generator.Boxes.Box",
    "generator.Boxes.SlidingBox",
    "generator.Boxes.TaggedBox",
    "generator.DiscBox.Disc",
    "generator.Book.HardCover",
    "generator.Book.PaperbackRoundCorners",
    "generator.Book.Magazine",
    "generator.Book.Stepback",
    "generator.Book.Paperback",
    "generator.Images.Image",
    "generator.external.model",
};

const char *const s_discCases[] = {
    "generator.DiscBox.DigipakDVD",
    "generator.DiscBox.DigipakCD",
    "generator.DiscBox.DVD",
    "generator.DiscBox.SlimCD",
    "generator.DiscBox.BluRay",
};
const char *const s_paperbacks[] = {"generator.Book.Paperback", "generator.Book.Stepback"};

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

TEST(GeneratorMeshes, EveryShapeIsClosedOutwardFacingAndWellFormed)
{
    for (const char *id : s_identifiers) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        const MeshPtr mesh = generator->mesh();
        if (hasParameter(*generator, "path")) {
            EXPECT_TRUE(mesh->parts().empty()) << "no model handed over yet";
            continue;
        }
        EXPECT_GE(mesh->parts().size(), 1u) << id;
        expectWellFormed(*mesh, id);
    }
}

TEST(GeneratorMeshes, ExtentsFollowTheParametersAndDefaultsHaveRealWorldSizes)
{
    // Published sizes (along x, z and y) of the products with one standard size; the others
    // vary too much between products to name one.
    const std::map<std::string, std::array<double, 3>> published = {
        {"generator.DiscBox.DigipakDVD", {13.5, 19., 1.}},
        {"generator.DiscBox.DigipakCD", {14.2, 12.5, 0.8}},
        {"generator.DiscBox.DVD", {13.5, 19., 1.4}},
        {"generator.DiscBox.SlimCD", {14.2, 12.5, 0.5}},
        {"generator.DiscBox.BluRay", {12.8, 14.8, 1.2}},
        {"generator.Devices.iPad", {18.57, 24.12, 0.88}},
        {"generator.Devices.iPhone4", {5.86, 11.52, 0.93}},
        {"generator.Devices.iPhone5", {5.86, 12.38, 0.76}},
        {"generator.canvas.simple", {40., 30., 2.}},
        {"generator.Boxes.Box", {20., 30., 10.}},
        {"generator.DiscBox.Disc", {12., 12., 0.12}},
        {"generator.Images.Image", {20., 15., 0.05}},
    };
    // Hand-held packaging and books, in centimetres (not millimetres or metres).
    const double plausible[3][2] = {{5., 40.}, {3., 40.}, {0.1, 15.}};
    for (const char *id : s_identifiers) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        if (hasParameter(*generator, "path"))
            continue; // the extents are the model's
        // The parameters giving the extents along x, z and y, and one that stands on top.
        const bool disc = hasParameter(*generator, "diameter");
        const char *const names[3] = {disc ? "diameter" : "width",
                                      disc ? "diameter" : "height",
                                      hasParameter(*generator, "depth") ? "depth" : "thickness"};
        const char *extraHeight = hasParameter(*generator, "tagHeight") ? "tagHeight" : nullptr;

        const auto size = published.find(id);
        for (int k = 0; k < 3; ++k) {
            const double value = number(*generator, names[k]);
            if (size != published.end())
                EXPECT_NEAR(value, size->second[k], 1e-5) << id << " " << names[k];
            else
                EXPECT_TRUE(value >= plausible[k][0] && value <= plausible[k][1])
                    << id << " " << names[k] << " = " << value;
        }
        // Defaults first, then every length scaled, to see that the mesh follows.
        for (const double scale : {1., 0.37}) {
            for (const char *name : {names[0], names[1], names[2], extraHeight}) {
                if (name)
                    generator->setProperty(name, number(*generator, name) * scale);
            }
            const double width = number(*generator, names[0]), thick = number(*generator, names[2]);
            const double height = number(*generator, names[1])
                                  + (extraHeight ? number(*generator, extraHeight) : 0.);
            const TBBox<float> box = generator->mesh()->localBox();
            const double tolerance = 1e-5 * (width + height + thick);
            const std::string label = std::string(id) + " scale " + std::to_string(scale);
            const double expected[3][2]
                = {{-width / 2, width / 2}, {-thick / 2, thick / 2}, {0., height}};
            const char *const meaning[3] = {"width on x, centred",
                                            "thickness on y, centred",
                                            "standing on the floor, height on z"};
            for (int a = 0; a < 3; ++a) {
                EXPECT_NEAR(box.min[a], expected[a][0], tolerance) << label << ": " << meaning[a];
                EXPECT_NEAR(box.max[a], expected[a][1], tolerance) << label << ": " << meaning[a];
            }
        }
    }
}

TEST(GeneratorMeshes, VolumesAndNormalsMatchTheSolidsTheyModel)
{
    std::unique_ptr<ShapeGenerator> box = make("generator.Boxes.Box");
    EXPECT_NEAR(signedVolume(*box->mesh()), 20. * 30. * 10., 6000. * 0.01) << "default box";
    box->setProperty("width", 3.);
    box->setProperty("height", 4.);
    box->setProperty("depth", 5.);
    EXPECT_NEAR(signedVolume(*box->mesh()), 60., 0.6) << "3 x 4 x 5 box";
    // A box is convex, so every face points away from its centre.
    const Vec centre = {0., 0., 2.};
    for (const IMeshPart *p : box->mesh()->parts()) {
        const MeshPart &part = meshPart(p);
        for (std::size_t t = 0; t < part.indices().size(); t += 3) {
            double outwards = 0.;
            for (std::size_t k = t; k < t + 3; ++k) {
                const VertexRecord &r = part.GetVertices()[part.indices()[k]];
                outwards += dot(vec(r.normal), vec(r.position) - centre) / 3.;
            }
            EXPECT_GT(outwards, 0.) << "triangle " << t / 3 << " of a box part faces inwards";
        }
    }

    // A ring of 12 cm with a 1.5 cm hole, 1.2 mm thick: pi (R² - r²) t.
    std::unique_ptr<ShapeGenerator> disc = make("generator.DiscBox.Disc");
    const double ring = Pi * (6. * 6. - 0.75 * 0.75) * 0.12;
    EXPECT_NEAR(signedVolume(*disc->mesh()), ring, ring * 0.01) << "disc with its hole";
    disc->setProperty("holeDiameter", 0.);
    EXPECT_NEAR(signedVolume(*disc->mesh()), Pi * 36. * 0.12, Pi * 36. * 0.12 * 0.01) << "no hole";
    expectWellFormed(*disc->mesh(), "disc without a hole");

    // Bending a sheet keeps its volume; at 180 degrees the middle surface is a half circle of
    // radius width / pi, and at 90 degrees a quarter circle of radius 2 width / pi.
    std::unique_ptr<ShapeGenerator> image = make("generator.Images.Image");
    const double w = 20., h = 15., t = 0.05;
    for (const double bend : {180., -180., 90.}) {
        image->setProperty("bend", bend);
        const std::string label = "image bent " + std::to_string(bend);
        const MeshPtr mesh = image->mesh();
        expectWellFormed(*mesh, label);
        EXPECT_NEAR(signedVolume(*mesh), w * h * t, w * h * t * 0.01) << label;
        const double radius = w / (std::abs(bend) * Pi / 180.);
        const double halfSpan = (radius + t / 2) * std::sin(std::abs(bend) * Pi / 360.);
        const TBBox<float> extent = mesh->localBox();
        EXPECT_NEAR(extent.max[0], halfSpan, 1e-3) << label;
        EXPECT_NEAR(extent.min[0], -halfSpan, 1e-3) << label;
        const double edgeDepth = radius * (1. - std::cos(std::abs(bend) * Pi / 360.));
        if (bend > 0.)
            EXPECT_NEAR(extent.max[1], edgeDepth + t / 2 * std::cos(bend * Pi / 360.), 1e-3)
                << label;
        else
            EXPECT_NEAR(extent.min[1], -edgeDepth, 1e-3) << label;
    }
}

TEST(GeneratorMeshes, CoversSwingOpenAboutTheSpine)
{
    struct Opening
    {
        const char *parameter;
        double value;
        double degrees; // how far the cover turns
    };
    std::vector<std::pair<const char *, std::vector<Opening>>> shapes;
    for (const char *id : s_discCases)
        shapes.push_back({id, {{"coverAngle", 90., 90.}, {"coverAngle", 180., 180.}}});
    for (const char *id : s_paperbacks)
        shapes.push_back({id, {{"type", 1., 30.}, {"type", 2., 180.}, {"type", 0., 0.}}});

    for (const auto &[id, openings] : shapes) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        const double w = number(*generator, "width"), t = number(*generator, "thickness");
        const double closedVolume = signedVolume(*generator->mesh());
        for (const Opening &opening : openings) {
            generator->setProperty(opening.parameter, opening.value);
            const MeshPtr mesh = generator->mesh();
            const std::string label
                = std::string(id) + " " + opening.parameter + " " + std::to_string(opening.value);
            expectWellFormed(*mesh, label);
            EXPECT_NEAR(signedVolume(*mesh), closedVolume, closedVolume * 1e-4)
                << label << ": turned, not bent";
            EXPECT_NEAR(mesh->localBox().max[1], t / 2, 1e-4) << label << ": the back stays put";
            // The cover (the first part) turns about the spine's outer front edge, which
            // therefore stays put.
            int onHinge = 0;
            for (const VertexRecord &v : mesh->parts()[0]->GetVertices())
                onHinge += std::abs(v.position[0] + w / 2) < 1e-4
                           && std::abs(v.position[1] + t / 2) < 1e-4;
            EXPECT_GT(onHinge, 0) << label << ": no cover vertex left on the hinge line";
            if (opening.degrees < 180.)
                EXPECT_NEAR(mesh->localBox().min[1],
                            -t / 2 - w * std::sin(opening.degrees * Pi / 180.),
                            opening.degrees > 0. ? 1e-3 : 1e-4)
                    << label << ": the fore-edge swings out by width * sin(angle)";
            else
                EXPECT_NEAR(mesh->localBox().min[0], -1.5 * w, 1e-3)
                    << label << ": the cover lies open beside the spine";
        }
    }
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
