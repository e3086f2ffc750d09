#include "scene/MaterialManager.h"

#include "scene/Material.h"
#include "support/Scenario.h"

class MaterialManagerTest : public Scenario {
protected:
    static Material* make(const char* name, Material* parent = nullptr)
    {
        return jNew<Material>("tests/scene/MaterialManagerTest", __LINE__, "MaterialManagerTest", jString(name), parent);
    }
};

TEST_F(MaterialManagerTest, KeepsMaterialsInTheOrderAdded)
{
    MaterialManager manager;
    Material* stone = make("stone");
    ASSERT_TRUE(manager.add(stone));
    ASSERT_TRUE(manager.add(make("wet_stone", stone)));
    ASSERT_TRUE(manager.add(make("alpha")));
    ASSERT_EQ(manager.getNumMaterials(), 3);
    EXPECT_EQ(manager.getMaterial(0)->getName(), "stone");
    EXPECT_EQ(manager.getMaterial(1)->getName(), "wet_stone");
    EXPECT_EQ(manager.getMaterial(2)->getName(), "alpha");
    EXPECT_EQ(manager.getMaterial(3), nullptr);
    EXPECT_EQ(manager.get("wet_stone")->getParent(), stone);
    EXPECT_EQ(manager.get("Stone"), nullptr);
}

TEST_F(MaterialManagerTest, RefusesNullAndTakenNames)
{
    MaterialManager manager;
    ASSERT_TRUE(manager.add(make("stone")));
    Material* twin = make("stone");
    EXPECT_FALSE(manager.add(twin));
    expectLogged("MaterialManager::add:a material named \"stone\" exists already");
    jDelete(twin, "tests/scene/MaterialManagerTest", __LINE__, "MaterialManagerTest");
    EXPECT_FALSE(manager.add(nullptr));
    expectLogged("MaterialManager::add:material");
    EXPECT_EQ(manager.getNumMaterials(), 1);
}

TEST_F(MaterialManagerTest, ReplaceInstallsMaterialsAndRemembersTheOwner)
{
    MaterialManager manager;
    manager.add(make("old"));
    jVector<Material*> fresh;
    Material* base = make("base");
    fresh.append(base);
    fresh.append(make("derived", base));
    int owner = 0;
    manager.replace(fresh, &owner);
    EXPECT_TRUE(fresh.empty());
    EXPECT_EQ(manager.getOwner(), &owner);
    ASSERT_EQ(manager.getNumMaterials(), 2);
    EXPECT_EQ(manager.get("old"), nullptr);
    EXPECT_EQ(manager.get("derived")->getParent(), manager.get("base"));
    manager.clear();
    EXPECT_EQ(manager.getNumMaterials(), 0);
    EXPECT_EQ(manager.getOwner(), nullptr);
}
