#include "scene/NodeType.h"

#include "support/Scenario.h"

using NodeTypeTest = Scenario;

TEST_F(NodeTypeTest, NumbersAndNamesMatch)
{
    const int types[] = {0, 2, 5, 6, 10, 18, 45};
    const char* names[] = {"NodeDummy", "ObjectMesh", "LightPoint", "LightSpot", "Camera", "ObjectPrefab", "EditorCamera"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_STREQ(NodeType::getName(types[i]), names[i]);
        EXPECT_EQ(NodeType::findByName(names[i]), types[i]);
        EXPECT_TRUE(NodeType::isValid(types[i]));
    }
    EXPECT_EQ(NodeType::getName(1), nullptr);
    EXPECT_EQ(NodeType::getName(-1), nullptr);
    EXPECT_FALSE(NodeType::isValid(46));
    EXPECT_EQ(NodeType::findByName("objectmesh"), -1);
    EXPECT_EQ(NodeType::findByName(nullptr), -1);
}

TEST_F(NodeTypeTest, PropertyGroupsBelongToTheirTypes)
{
    EXPECT_TRUE(NodeType::hasLight(LIGHT_POINT));
    EXPECT_TRUE(NodeType::hasLight(LIGHT_SPOT));
    EXPECT_FALSE(NodeType::hasLight(OBJECT_MESH));
    EXPECT_TRUE(NodeType::hasCamera(CAMERA));
    EXPECT_TRUE(NodeType::hasCamera(EDITOR_CAMERA));
    EXPECT_FALSE(NodeType::hasCamera(LIGHT_SPOT));
    EXPECT_TRUE(NodeType::hasSurface(OBJECT_MESH));
    EXPECT_FALSE(NodeType::hasSurface(OBJECT_PREFAB));
}
