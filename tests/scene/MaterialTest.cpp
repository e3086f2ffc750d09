#include "scene/Material.h"

#include "scene/MaterialManager.h"
#include "SceneSamples.h"

using MaterialTest = DemoWorld;

// Material bindings are chosen from this hierarchy: derived materials in file order below their
// base, each listing its base's parameters first.
TEST_F(MaterialTest, SampleFormsABaseToDerivedHierarchy)
{
    Material* surface = material("surface");
    ASSERT_EQ(surface->getNumChildren(), 2);
    EXPECT_EQ(surface->getChild(1), material("metal"));
    EXPECT_EQ(surface->getChild(2), nullptr);
    EXPECT_EQ(material("brick_mossy")->getParent(), material("brick"));
    EXPECT_EQ(material("water")->getParent(), material("glass"));
    EXPECT_EQ(material("Surface"), nullptr);
    const char* expected[] = {"albedo", "roughness", "metallic", "specular_tint", "uv_scale", "emission",
                              "bump_angle", "moss_color", "moss_direction"};
    Material* mossy = material("brick_mossy");
    ASSERT_EQ(mossy->getNumParameters(), 9);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(mossy->findParameterIDByTag(expected[i]), i);
    EXPECT_EQ(mossy->getParameterByID(9), nullptr);
    EXPECT_EQ(surface->findParameterIDByTag("bump_angle"), -1) << "derived parameters stay below";
    EXPECT_EQ(material("glass")->findParameterIDByTag(""), -1) << "glass has an untagged parameter";
}

// A value set on a base reaches every derived material that has not overridden it, however deep;
// setting the value on a derived material overrides it from then on.
TEST_F(MaterialTest, InheritedValuesFollowTheBaseUntilOverridden)
{
    EXPECT_TRUE(material("brick")->getParameter(1)->isInherited());
    material("surface")->getParameter(1)->setValue(vec4(0.9f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(value("brick_mossy", "roughness"), 0.9f) << "two levels down";
    EXPECT_EQ(value("metal", "roughness"), 0.2f) << "metal overrides roughness";
    material("surface")->getParameter(0)->setValue(vec4(0.1f, 0.1f, 0.1f, 1.0f));
    EXPECT_EQ(value("brick_mossy", "albedo"), 0.62f) << "mossy inherits brick's override";
    MaterialParameter* roughness = material("brick")->getParameter(1);
    roughness->setValue(vec4(0.3f, 0.0f, 0.0f, 0.0f));
    EXPECT_FALSE(roughness->isInherited());
    material("surface")->getParameter(1)->setValue(vec4(0.7f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(value("brick_mossy", "roughness"), 0.3f) << "mossy now follows brick";
}

// A parameter added to a base later reaches its derived materials (components past its count
// cleared) and is overridden in the same slot; without its base, a material owns its values.
TEST_F(MaterialTest, BaseParametersAddedLaterReachDerivedMaterials)
{
    Material* base = jNew<Material>("tests/scene/MaterialTest", __LINE__, "MaterialTest", jString("base"));
    Material derived("derived", base);
    Material leaf("leaf", &derived);
    ASSERT_NE(leaf.addParameter("gloss", 2, 1, vec4(0.4f, 0.0f, 0.0f, 0.0f)), nullptr);
    ASSERT_NE(base->addParameter("tint", 1, 3, vec4(1.0f, 0.5f, 0.25f, 9.0f)), nullptr);
    ASSERT_EQ(leaf.getNumParameters(), 2);
    EXPECT_TRUE(leaf.getParameter(1)->isInherited());
    EXPECT_EQ(leaf.getParameter(1)->getValue(), vec4(1.0f, 0.5f, 0.25f, 0.0f));
    MaterialParameter* own = derived.addParameter("tint", 1, 3, vec4(0.0f, 1.0f, 0.0f, 7.0f));
    ASSERT_EQ(own, derived.getParameter(0));
    EXPECT_FALSE(own->isInherited());
    EXPECT_EQ(leaf.getParameter(1)->getValue(), vec4(0.0f, 1.0f, 0.0f, 0.0f));
    base->addParameter("k", 0, 1, vec4(2.0f, 0.0f, 0.0f, 0.0f));
    jDelete(base, "tests/scene/MaterialTest", __LINE__, "MaterialTest");
    EXPECT_EQ(derived.getParent(), nullptr);
    EXPECT_FALSE(derived.getParameter(1)->isInherited());
    EXPECT_EQ(derived.getParameter(1)->getValue().x, 2.0f);
}

TEST_F(MaterialTest, AddParameterRefusesBadDefinitions)
{
    Material base("base");
    base.addParameter("a", 0, 2, vec4_zero);
    Material derived("derived", &base);
    EXPECT_EQ(base.addParameter("t", 11, 1, vec4_zero), nullptr);
    expectLogged("Material::addParameter:material \"base\" parameter \"t\": type code 11 is not 0 to 10");
    EXPECT_EQ(MaterialParameter::getTypeName(11), nullptr);
    EXPECT_EQ(base.addParameter("t", 0, 0, vec4_zero), nullptr);
    expectLogged("0 components, expected 1 to 4");
    EXPECT_EQ(base.addParameter("a", 0, 2, vec4_zero), nullptr);
    expectLogged("material \"base\" already has a parameter \"a\"");
    EXPECT_EQ(derived.addParameter("a", 1, 2, vec4_zero), nullptr);
    expectLogged("parameter \"a\": an override must keep type 0 with 2 components");
    EXPECT_EQ(base.getNumParameters(), 1);
    EXPECT_TRUE(derived.getParameter(0)->isInherited());
}

// Materials added by hand join the list; a null one, or one whose name is taken, is refused.
TEST_F(MaterialTest, ManagerAddsMaterialsAndRefusesNullAndTakenNames)
{
    Material* extra = jNew<Material>("tests/scene/MaterialTest", __LINE__, "MaterialTest", jString("extra"));
    ASSERT_TRUE(materials()->add(extra));
    EXPECT_EQ(materials()->getMaterial(7), extra);
    Material twin("brick");
    EXPECT_FALSE(materials()->add(&twin));
    expectLogged("MaterialManager::add:a material named \"brick\" exists already");
    EXPECT_FALSE(materials()->add(nullptr));
    expectLogged("MaterialManager::add:material");
    EXPECT_EQ(materials()->getNumMaterials(), 8);
}
