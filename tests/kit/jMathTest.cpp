#include "kit/jMath.h"

#include "support/Scenario.h"

namespace {

void expectNear(const vec3& actual, const vec3& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
    EXPECT_NEAR(actual.z, expected.z, 1e-5f);
}

} // namespace

using jMathTest = Scenario;

TEST_F(jMathTest, IdentityLeavesPointsAlone)
{
    mat4 identity = mat4::identity();
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(identity.at(row, column), row == column ? 1.0f : 0.0f);
    expectNear(identity.transformPoint({1.5f, -2.0f, 3.0f}), {1.5f, -2.0f, 3.0f});
    mat4 t = mat4::translate({1, 2, 3});
    expectNear((t * mat4::identity()).transformPoint({0, 0, 0}), {1, 2, 3});
}

TEST_F(jMathTest, TranslateAndScaleMovePoints)
{
    expectNear(mat4::translate({1, 2, 3}).transformPoint({10, 20, 30}), {11, 22, 33});
    expectNear(mat4::scale({2, 3, 4}).transformPoint({1, 1, 1}), {2, 3, 4});
    // scale first, then translate
    expectNear((mat4::translate({1, 0, 0}) * mat4::scale({2, 2, 2})).transformPoint({1, 1, 1}), {3, 2, 2});
    vec4 direction = mat4::translate({5, 5, 5}) * vec4(1, 0, 0, 0);
    EXPECT_EQ(direction, vec4(1, 0, 0, 0)); // directions do not move
}

TEST_F(jMathTest, EulerRotationsTurnCounterClockwise)
{
    expectNear(mat4::rotateEuler({0, 0, 90}).transformPoint({1, 0, 0}), {0, 1, 0});
    expectNear(mat4::rotateEuler({90, 0, 0}).transformPoint({0, 1, 0}), {0, 0, 1});
    expectNear(mat4::rotateEuler({0, 90, 0}).transformPoint({0, 0, 1}), {1, 0, 0});
    // X is applied before Z: x-axis stays under X, then Z takes it to y
    expectNear(mat4::rotateEuler({90, 0, 90}).transformPoint({1, 0, 0}), {0, 1, 0});
}

TEST_F(jMathTest, PerspectiveMapsTheFrustumIntoTheUnitCube)
{
    mat4 p = mat4::perspective(60.0f, 16.0f / 9.0f, 0.1f, 100.0f);
    expectNear(p.transformPoint({0, 0, -0.1f}), {0, 0, -1});
    expectNear(p.transformPoint({0, 0, -100.0f}), {0, 0, 1});
    float halfHeight = 10.0f * std::tan(30.0f * 3.14159265f / 180.0f);
    vec3 corner = p.transformPoint({halfHeight * 16.0f / 9.0f, halfHeight, -10.0f});
    EXPECT_NEAR(corner.x, 1.0f, 1e-4f);
    EXPECT_NEAR(corner.y, 1.0f, 1e-4f);
    for (float z : {-0.2f, -1.0f, -50.0f, -99.0f}) {
        vec3 inside = p.transformPoint({0.3f * -z, -0.2f * -z, z});
        EXPECT_LT(std::abs(inside.x), 1.0f);
        EXPECT_LT(std::abs(inside.y), 1.0f);
        EXPECT_GT(inside.z, -1.0f);
        EXPECT_LT(inside.z, 1.0f);
    }
    vec3 outside = p.transformPoint({5.0f, 0, -1.0f});
    EXPECT_GT(outside.x, 1.0f);
}

TEST_F(jMathTest, LookAtPutsTheTargetStraightAhead)
{
    mat4 view = mat4::lookAt({0, 0, 10}, {0, 0, 0}, {0, 1, 0});
    expectNear(view.transformPoint({0, 0, 0}), {0, 0, -10});
    mat4 side = mat4::lookAt({5, 0, 0}, {0, 0, 0}, {0, 1, 0});
    expectNear(side.transformPoint({0, 0, 0}), {0, 0, -5});
    expectNear(side.transformPoint({0, 1, 0}), {0, 1, -5});
}

TEST_F(jMathTest, VectorHelpers)
{
    EXPECT_EQ(cross(vec3(1, 0, 0), vec3(0, 1, 0)), vec3(0, 0, 1));
    EXPECT_FLOAT_EQ(dot(vec3(1, 2, 3), vec3(4, 5, 6)), 32.0f);
    expectNear(normalize({3, 0, 4}), {0.6f, 0, 0.8f});
    EXPECT_EQ(normalize(vec3()), vec3()); // a zero vector stays zero
    dvec3 d(1, 2, 3);
    d[1] = 5.0;
    EXPECT_EQ(d + dvec3(1, 1, 1), dvec3(2, 6, 4));
    EXPECT_EQ(vec4_zero, vec4());
}
