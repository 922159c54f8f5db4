// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/hostapp/generatorchecks.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <utility>
#include <vector>

namespace vantrel::test {

namespace {

using Triangle = std::array<Vec, 3>;

// The corner positions of every triangle of every part.
std::vector<Triangle> triangles(const host::Mesh &mesh)
{
    std::vector<Triangle> result;
    for (const IMeshPart *p : mesh.parts()) {
        const host::MeshPart &part = meshPart(p);
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

// The signed volume of each connected shell: triangles that share an edge belong together.
std::vector<double> shellVolumes(const host::Mesh &mesh)
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

} // namespace

double signedVolume(const host::Mesh &mesh)
{
    double volume = 0.;
    for (const Triangle &triangle : triangles(mesh))
        volume += signedVolume(triangle);
    return volume;
}

void expectWellFormed(const host::Mesh &mesh, const std::string &label)
{
    std::map<std::string, int> faults;
    std::map<std::pair<std::array<float, 3>, std::array<float, 3>>, int> edges;
    for (const IMeshPart *p : mesh.parts()) {
        const host::MeshPart &part = meshPart(p);
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

std::unique_ptr<host::ShapeGenerator> make(const char *typeId)
{
    std::unique_ptr<host::ShapeGenerator> generator = host::createGenerator(QByteArray(typeId));
    EXPECT_TRUE(generator) << typeId;
    return generator;
}

} // namespace vantrel::test
