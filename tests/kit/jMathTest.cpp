#include "kit/jMath.h"

#include "support/Scenario.h"

using jMathTest = Scenario;

// Transforms compose right to left, Euler angles turn X first, and a camera that looks at a point
// puts it straight ahead; the projection maps its near plane to -1 and its far corner to (1, 1, 1).
TEST_F(jMathTest, TransformsComposeAndProjectIntoTheUnitCube)
{
    mat4 model = mat4::translate({1, 2, 3}) * mat4::rotateEuler({0, 0, 90}) * mat4::scale({2, 2, 2});
    EXPECT_LT(length(model.transformPoint({1, 0, 0}) - vec3(1, 4, 3)), 1e-5f);
    EXPECT_LT(length(mat4::rotateEuler({90, 90, 0}).transformPoint({0, 1, 0}) - vec3(1, 0, 0)), 1e-5f);
    EXPECT_EQ(mat4::translate({5, 5, 5}) * vec4(1, 0, 0, 0), vec4(1, 0, 0, 0)); // directions do not move
    mat4 view = mat4::lookAt({5, 0, 0}, {0, 0, 0}, {0, 1, 0});
    EXPECT_LT(length(view.transformPoint({0, 1, 0}) - vec3(0, 1, -5)), 1e-5f);
    mat4 projection = mat4::perspective(90.0f, 2.0f, 1.0f, 10.0f);
    EXPECT_LT(length(projection.transformPoint({0, 0, -1}) - vec3(0, 0, -1)), 1e-5f);
    EXPECT_LT(length(projection.transformPoint({20, 10, -10}) - vec3(1, 1, 1)), 1e-5f);
    EXPECT_EQ(normalize(vec3()), vec3()); // a zero vector stays zero
}
