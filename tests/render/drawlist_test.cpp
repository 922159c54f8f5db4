// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// What a picture shows and how it is framed, without OpenGL.
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/ilightnode.h"
#include "host/itransformations.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace vantrel;
using host::Document;
using vantrel::test::addBoxNode;
using vantrel::test::Near;

namespace {

INode *addLight(INode *parent, const QString &name, const Vector3 &position, bool castsShadows)
{
    INode *light = parent->CreateChildLight(name);
    qobject_cast<ITransformations *>(light)->SetPosition(position, false);
    qobject_cast<ILightNode *>(light)->SetCastShadows(castsShadows);
    return light;
}

// The point in the light's shadow frame: x and y after the division by w, and the stored depth.
Vector3 inShadowFrame(const render::ShadowFrame &frame, const Vector3 &p)
{
    Vector3 v = p;
    TransformPoint(v, frame.view);
    Vector4 clip(v.x, v.y, v.z, 1.f);
    TransformVector4(clip, frame.projection);
    return Vector3(clip.x / clip.w, clip.y / clip.w, v.z / frame.depthScale);
}

} // namespace

TEST(DrawList, EachNodeIsDrawnByItsOwnFlagAndLightsStayWithinTheShadersLimits)
{
    Document document;
    host::BaseNode *root = document.root();
    auto *group = static_cast<host::SceneNode *>(root->CreateChildGroup(QStringLiteral("Group")));
    group->applyPosition(Vector3(0, 0, 10));
    addBoxNode(group, QStringLiteral("Inside"), Vector3(0, 0, 0), Vector3(1, 2, 3));
    addBoxNode(root, QStringLiteral("Hidden"), Vector3(50, 50, 50), Vector3(60, 60, 60))
        ->SetVisible(false);
    group->SetVisible(false);
    // Ten lights, every other one casting shadows; the third is hidden.
    for (int i = 0; i < 10; ++i)
        addLight(root, QStringLiteral("L%1").arg(i), Vector3(float(i), 0, 100), i % 2 == 0);
    root->GetChildren()[4]->SetVisible(false); // L2

    const render::DrawList list = render::collectDrawList(document);
    ASSERT_EQ(list.items.size(), 1u)
        << "the shape below the hidden group shows; the hidden one not";
    EXPECT_FLOAT_EQ(list.items[0].world[14], 10.f) << "the shape stands where its group puts it";
    EXPECT_TRUE(Near(Vector3(list.bounds.min[0], list.bounds.min[1], list.bounds.min[2]),
                     Vector3(0, 0, 10)));
    EXPECT_TRUE(Near(Vector3(list.bounds.max[0], list.bounds.max[1], list.bounds.max[2]),
                     Vector3(1, 2, 13)));
    ASSERT_EQ(int(list.lights.size()), render::MaxLights);
    std::vector<float> places, shadowed;
    for (const render::DrawLight &light : list.lights) {
        places.push_back(light.position.x);
        if (light.castsShadows)
            shadowed.push_back(light.position.x);
    }
    EXPECT_EQ(places, (std::vector<float>{0, 1, 3, 4, 5, 6, 7, 8})) << "L2 hidden, L9 beyond 8";
    EXPECT_EQ(shadowed, (std::vector<float>{0, 4, 6, 8})) << "the first four casters";
    EXPECT_FLOAT_EQ(list.ambient, document.GetAmbientIntensity());

    document.SetLightingMode(Document::HeadLight);
    document.SetAmbientIntensity(0.25f);
    const render::DrawList headLit = render::collectDrawList(document);
    ASSERT_EQ(headLit.lights.size(), 1u) << "the head light replaces the scene's lights";
    EXPECT_TRUE(Near(headLit.lights[0].position, document.camera()->position()));
    EXPECT_FLOAT_EQ(headLit.lights[0].intensity, 0.75f);
    EXPECT_FALSE(headLit.lights[0].castsShadows);
}

TEST(DrawList, ALightWithNonsenseValuesStillGivesADrawableLight)
{
    Document document;
    INode *light = addLight(document.root(), QStringLiteral("L"), Vector3(0, 0, 0), true);
    auto *values = qobject_cast<ILightNode *>(light);
    values->SetLightMode(ILightNode::DirectionalLight);
    // The host's setters keep NaN and infinities out of the scene; the draw list copes even so,
    // whatever state reaches it.
    auto *own = static_cast<host::LightNode *>(light);
    own->applyShadowBlur(NAN);
    values->SetIntensity(-2.f);
    render::DrawList list = render::collectDrawList(document);
    ASSERT_EQ(list.lights.size(), 1u);
    EXPECT_TRUE(Near(list.lights[0].position, Vector3(0, 0, 1)))
        << "a directional light at the origin shines straight down";
    EXPECT_EQ(list.lights[0].shadowBlur, 0.f);
    EXPECT_EQ(list.lights[0].intensity, 0.f);

    own->applyShadowBlur(INFINITY);
    qobject_cast<ITransformations *>(light)->SetPosition(Vector3(0, -3, 4), false);
    list = render::collectDrawList(document);
    EXPECT_EQ(list.lights[0].shadowBlur, 1000.f) << "ten metres at most";
    EXPECT_TRUE(Near(list.lights[0].position, Vector3(0, -0.6f, 0.8f))) << "towards the light";
}

TEST(Framing, PictureHeightFollowsTheFrameWithinLimits)
{
    EXPECT_EQ(render::pictureSize(1200, 4.f / 3.f), QSize(1200, 900));
    EXPECT_EQ(render::pictureSize(1000, 2.39f), QSize(1000, 418)) << "418.4 rounds down";
    EXPECT_EQ(render::pictureSize(4096, 0.05f), QSize(4096, 4096)) << "the height is limited";
    EXPECT_EQ(render::pictureSize(16, 20.f), QSize(16, 1)) << "at least one row";
}

TEST(Framing, DepthRangeHoldsTheBoxAndShadowFramesHoldTheCasters)
{
    TBBox<float> box;
    ExtendBox(box, Vector3(-20, -10, 0));
    ExtendBox(box, Vector3(30, 15, 40));

    // A camera 100 units in front of the box's centre, looking along +y.
    Matrix camera;
    camera[0] = 0, camera[1] = 1, camera[2] = 0;  // forward
    camera[4] = -1, camera[5] = 0, camera[6] = 0; // left
    camera[8] = 0, camera[9] = 0, camera[10] = 1; // up
    camera[12] = 5, camera[13] = -100, camera[14] = 20;
    Matrix view;
    CalculateViewMatrix(view, camera);
    const render::DepthRange range = render::depthRange(box, view);
    EXPECT_GT(range.nearPlane, 0.f);
    EXPECT_LE(range.nearPlane, 90.f) << "the box's nearest face is 90 units away";
    EXPECT_GE(range.farPlane, 115.f) << "its farthest face is 115 units away";
    EXPECT_LT(range.farPlane, 130.f);

    const std::vector<render::DrawLight> lights = {
        {Vector3(-60, -80, 120), false, 1.f, 1.f, true}, // a point light outside
        {Vector3(0.6f, 0, 0.8f), true, 1.f, 1.f, true},  // a directional light
        {Vector3(5, 2, 30), false, 1.f, 1.f, true},      // a point light among the casters
    };
    for (std::size_t i = 0; i < lights.size(); ++i) {
        const render::ShadowFrame frame = render::shadowFrame(lights[i], box);
        for (int corner = 0; corner < 8; ++corner) {
            const Vector3 p((corner & 1) ? box.max[0] : box.min[0],
                            (corner & 2) ? box.max[1] : box.min[1],
                            (corner & 4) ? box.max[2] : box.min[2]);
            const Vector3 seen = inShadowFrame(frame, p);
            // Inside the light's cone, only corners below it are seen: it looks straight down.
            if (i == 2 && p.z > lights[i].position.z)
                continue;
            EXPECT_TRUE(std::abs(seen.x) <= 1.f && std::abs(seen.y) <= 1.f && seen.z > 0.f
                        && seen.z < 1.f)
                << "light " << i << " corner " << corner << " at " << seen.x << ", " << seen.y
                << " depth " << seen.z;
        }
    }
    // The directional light's map is orthographic: a caster's depth grows along the light only.
    const render::ShadowFrame directional = render::shadowFrame(lights[1], box);
    const Vector3 a = inShadowFrame(directional, Vector3(0, 0, 0));
    const Vector3 b = inShadowFrame(directional, Vector3(-6, 0, -8)); // 10 units down the light
    EXPECT_NEAR((b.z - a.z) * directional.depthScale, 10.f, 1e-3f);
    EXPECT_NEAR(b.x, a.x, 1e-5f);
    EXPECT_NEAR(b.y, a.y, 1e-5f);
}
