#include "ViewportCamera.h"

#include "support/Scenario.h"

using ViewportCameraTest = Scenario;

namespace {

constexpr int k_width = 800;
constexpr int k_height = 600;

} // namespace

TEST_F(ViewportCameraTest, TargetProjectsToTheCentre)
{
    ViewportCamera camera;
    float x = 0, y = 0;
    ASSERT_TRUE(camera.project(camera.getTarget(), k_width, k_height, x, y));
    EXPECT_NEAR(x, 400.0f, 1e-3f);
    EXPECT_NEAR(y, 300.0f, 1e-3f);
    camera.orbit(120.0f, -40.0f);
    ASSERT_TRUE(camera.project(camera.getTarget(), k_width, k_height, x, y));
    EXPECT_NEAR(x, 400.0f, 1e-3f);
    EXPECT_NEAR(y, 300.0f, 1e-3f);
}

TEST_F(ViewportCameraTest, UpIsUpAndRightIsRightOnScreen)
{
    ViewportCamera camera;
    const vec3 t = camera.getTarget();
    vec3 eye = camera.getEye();
    // The screen's right is the horizontal direction across the view.
    vec3 forward = normalize(t - eye);
    vec3 right = normalize(cross(forward, vec3(0, 1, 0)));
    float cx, cy, ux, uy, rx, ry;
    ASSERT_TRUE(camera.project(t, k_width, k_height, cx, cy));
    ASSERT_TRUE(camera.project(t + vec3(0, 1, 0), k_width, k_height, ux, uy));
    ASSERT_TRUE(camera.project(t + right, k_width, k_height, rx, ry));
    EXPECT_LT(uy, cy);
    EXPECT_NEAR(ux, cx, 1e-3f);
    EXPECT_GT(rx, cx);
    EXPECT_NEAR(ry, cy, 1e-3f);
}

TEST_F(ViewportCameraTest, PointsBehindTheEyeAreNotProjected)
{
    ViewportCamera camera;
    vec3 eye = camera.getEye();
    vec3 behind = eye + (eye - camera.getTarget());
    float x, y;
    EXPECT_FALSE(camera.project(behind, k_width, k_height, x, y));
    EXPECT_FALSE(camera.project(eye, k_width, k_height, x, y));
}

TEST_F(ViewportCameraTest, NearerObjectsLookBigger)
{
    ViewportCamera camera;
    const vec3 t = camera.getTarget();
    float ax, ay, bx, by;
    camera.project(t, k_width, k_height, ax, ay);
    camera.project(t + vec3(0, 1, 0), k_width, k_height, bx, by);
    float far = ay - by;
    camera.zoom(3.0f);
    EXPECT_LT(camera.getDistance(), 24.0f);
    camera.project(t, k_width, k_height, ax, ay);
    camera.project(t + vec3(0, 1, 0), k_width, k_height, bx, by);
    EXPECT_GT(ay - by, far * 1.5f);
    camera.zoom(-1000.0f);
    EXPECT_EQ(camera.getDistance(), 500.0f);
    camera.zoom(1000.0f);
    EXPECT_EQ(camera.getDistance(), 0.5f);
}

TEST_F(ViewportCameraTest, PanMovesTheGroundWithThePointer)
{
    ViewportCamera camera;
    const vec3 before = camera.getTarget();
    float x0, y0;
    camera.project(before, k_width, k_height, x0, y0);
    camera.pan(50.0f, 0.0f, k_height);
    float x1, y1;
    ASSERT_TRUE(camera.project(before, k_width, k_height, x1, y1));
    EXPECT_NEAR(x1 - x0, 50.0f, 0.5f);
    EXPECT_NEAR(y1, y0, 0.5f);
}

TEST_F(ViewportCameraTest, PitchStopsShortOfTheVertical)
{
    ViewportCamera camera;
    camera.orbit(0.0f, 500.0f);
    EXPECT_EQ(camera.getPitch(), 89.0f);
    camera.orbit(0.0f, -500.0f);
    EXPECT_EQ(camera.getPitch(), -89.0f);
}

TEST_F(ViewportCameraTest, SegmentsCrossingTheEyeAreCutAtTheNearPlane)
{
    vec3 a(0, 0, -5), b(0, 0, 5);
    ASSERT_TRUE(ViewportCamera::clipToNear(a, b));
    EXPECT_FLOAT_EQ(a.z, ViewportCamera::NEAR_PLANE);
    EXPECT_EQ(b, vec3(0, 0, 5));
    vec3 c(1, 2, -1), d(3, 4, -2);
    EXPECT_FALSE(ViewportCamera::clipToNear(c, d));
    vec3 e(1, 1, 1), f(2, 2, 2);
    ASSERT_TRUE(ViewportCamera::clipToNear(e, f));
    EXPECT_EQ(e, vec3(1, 1, 1));
}
