#include "scene/Material.h"

#include "scene/Engine.h"
#include "scene/MaterialParameter.h"
#include "scene/World.h"
#include "SceneSamples.h"
#include "support/Scenario.h"

class MaterialTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        ASSERT_TRUE(m_world.load(demoWorldPath().c_str()));
    }
    void TearDown() override
    {
        m_world.release();
        Scenario::TearDown();
    }
    static Material* material(const char* name) { return Engine::get()->getMaterialManager()->get(name); }
    static float value(const char* name, const char* tag)
    {
        Material* m = material(name);
        return m->getParameterByID(m->findParameterIDByTag(tag))->getValue().x;
    }

    World m_world;
};

TEST_F(MaterialTest, SampleFormsABaseToDerivedHierarchy)
{
    Material* surface = material("surface");
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->getParent(), nullptr);
    ASSERT_EQ(surface->getNumChildren(), 2);
    EXPECT_EQ(surface->getChild(0)->getName(), "brick");
    EXPECT_EQ(surface->getChild(1)->getName(), "metal");
    EXPECT_EQ(surface->getChild(2), nullptr);
    EXPECT_EQ(material("brick_mossy")->getParent(), material("brick"));
    EXPECT_EQ(material("brick")->getChild(0), material("brick_mossy"));
    EXPECT_EQ(material("water")->getParent(), material("glass"));
    EXPECT_EQ(material("emissive")->getNumChildren(), 0);
    EXPECT_EQ(material("nothing"), nullptr);
}

TEST_F(MaterialTest, DerivedMaterialsListTheBaseParametersFirst)
{
    const char* expected[] = {"albedo", "roughness", "metallic", "specular_tint", "uv_scale", "emission",
                              "bump_angle", "moss_color", "moss_direction"};
    Material* mossy = material("brick_mossy");
    ASSERT_EQ(mossy->getNumParameters(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(mossy->getParameter(i)->getTag(), expected[i]);
        EXPECT_EQ(mossy->findParameterIDByTag(expected[i]), i);
        EXPECT_EQ(mossy->getParameterByID(i), mossy->getParameter(i));
        EXPECT_EQ(mossy->getParameter(i)->getMaterial(), mossy);
    }
    EXPECT_EQ(material("brick")->getNumParameters(), 7);
    EXPECT_EQ(material("surface")->getNumParameters(), 6);
}

TEST_F(MaterialTest, ParametersKeepTypeCodesAndComponentCounts)
{
    Material* surface = material("surface");
    MaterialParameter* albedo = surface->getParameterByID(surface->findParameterIDByTag("albedo"));
    EXPECT_EQ(albedo->getType(), 1);
    EXPECT_EQ(albedo->getNumComponents(), 4);
    EXPECT_EQ(albedo->getValue(), vec4(0.8f, 0.8f, 0.8f, 1.0f));
    MaterialParameter* tint = surface->getParameter(3);
    EXPECT_EQ(tint->getType(), 0);
    EXPECT_EQ(tint->getNumComponents(), 3);
    MaterialParameter* moss = material("brick_mossy")->getParameter(8);
    EXPECT_EQ(moss->getType(), 9);
    EXPECT_EQ(moss->getValue(), vec4(0.0f, 1.0f, 0.0f, 0.0f));
    EXPECT_EQ(material("brick_mossy")->getParameter(7)->getType(), 10);
    EXPECT_EQ(material("brick")->getParameter(6)->getType(), 7);
}

TEST_F(MaterialTest, MissingTagsAndIdsGiveNothing)
{
    Material* glass = material("glass");
    EXPECT_EQ(glass->findParameterIDByTag("nope"), -1);
    EXPECT_EQ(glass->findParameterIDByTag("IOR"), -1);
    EXPECT_EQ(glass->findParameterIDByTag(""), -1) << "glass has an untagged parameter";
    EXPECT_EQ(glass->getParameterByID(-1), nullptr);
    EXPECT_EQ(glass->getParameterByID(glass->getNumParameters()), nullptr);
    EXPECT_TRUE(glass->getParameter(3)->getTag().empty());
    EXPECT_EQ(material("surface")->findParameterIDByTag("bump_angle"), -1) << "derived parameters stay below";
}

TEST_F(MaterialTest, InheritedParametersFollowTheBase)
{
    EXPECT_TRUE(material("brick")->getParameter(1)->isInherited());
    EXPECT_FALSE(material("brick")->getParameter(0)->isInherited());
    EXPECT_EQ(value("brick", "roughness"), 0.5f);
    EXPECT_EQ(value("brick", "albedo"), 0.62f);

    material("surface")->getParameter(1)->setValue(vec4(0.9f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(value("brick", "roughness"), 0.9f);
    EXPECT_EQ(value("brick_mossy", "roughness"), 0.9f) << "two levels down";
    EXPECT_EQ(value("metal", "roughness"), 0.2f) << "metal overrides roughness";

    material("surface")->getParameter(0)->setValue(vec4(0.1f, 0.1f, 0.1f, 1.0f));
    EXPECT_EQ(value("brick", "albedo"), 0.62f);
    EXPECT_EQ(value("brick_mossy", "albedo"), 0.62f) << "mossy inherits brick's override";
}

TEST_F(MaterialTest, SettingAnInheritedValueOverridesIt)
{
    MaterialParameter* roughness = material("brick")->getParameter(1);
    roughness->setValue(vec4(0.3f, 0.0f, 0.0f, 0.0f));
    EXPECT_FALSE(roughness->isInherited());
    material("surface")->getParameter(1)->setValue(vec4(0.7f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(value("brick", "roughness"), 0.3f);
    EXPECT_EQ(value("brick_mossy", "roughness"), 0.3f) << "mossy now follows brick";
}

TEST_F(MaterialTest, OverridesSurviveSaveAndLoad)
{
    TempDir dir;
    material("brick")->getParameter(1)->setValue(vec4(0.3f, 0.0f, 0.0f, 0.0f));
    ASSERT_TRUE(m_world.save(dir.file("m.world").c_str()));
    World other;
    ASSERT_TRUE(other.load(dir.file("m.world").c_str()));
    EXPECT_FALSE(material("brick")->getParameter(1)->isInherited());
    EXPECT_EQ(value("brick", "roughness"), 0.3f);
    EXPECT_TRUE(material("brick_mossy")->getParameter(1)->isInherited());
    EXPECT_TRUE(material("metal")->getParameter(4)->isInherited());
    other.release();
}

TEST_F(MaterialTest, BaseParametersAddedLaterReachDerivedMaterials)
{
    Material base("base");
    Material derived("derived", &base);
    Material leaf("leaf", &derived);
    ASSERT_NE(leaf.addParameter("gloss", 2, 1, vec4(0.4f, 0.0f, 0.0f, 0.0f)), nullptr);
    ASSERT_NE(base.addParameter("tint", 1, 3, vec4(1.0f, 0.5f, 0.25f, 9.0f)), nullptr);
    ASSERT_EQ(derived.getNumParameters(), 1);
    ASSERT_EQ(leaf.getNumParameters(), 2);
    EXPECT_EQ(leaf.getParameter(1)->getTag(), "tint");
    EXPECT_TRUE(leaf.getParameter(1)->isInherited());
    EXPECT_EQ(leaf.getParameter(1)->getValue(), vec4(1.0f, 0.5f, 0.25f, 0.0f));

    MaterialParameter* own = derived.addParameter("tint", 1, 3, vec4(0.0f, 1.0f, 0.0f, 0.0f));
    ASSERT_EQ(own, derived.getParameter(0)) << "an override keeps the inherited slot";
    EXPECT_FALSE(own->isInherited());
    EXPECT_EQ(leaf.getParameter(1)->getValue(), vec4(0.0f, 1.0f, 0.0f, 0.0f));
}

TEST_F(MaterialTest, AddParameterRefusesBadDefinitions)
{
    Material base("base");
    base.addParameter("a", 0, 2, vec4_zero);
    Material derived("derived", &base);
    EXPECT_EQ(base.addParameter("t", 11, 1, vec4_zero), nullptr);
    expectLogged("Material::addParameter:material \"base\" parameter \"t\": type code 11 is not 0 to 10");
    EXPECT_EQ(base.addParameter("t", 0, 0, vec4_zero), nullptr);
    expectLogged("0 components, expected 1 to 4");
    EXPECT_EQ(base.addParameter("a", 0, 2, vec4_zero), nullptr);
    expectLogged("material \"base\" already has a parameter \"a\"");
    EXPECT_EQ(derived.addParameter("a", 1, 2, vec4_zero), nullptr);
    expectLogged("parameter \"a\": an override must keep type 0 with 2 components");
    EXPECT_EQ(base.getNumParameters(), 1);
    EXPECT_TRUE(derived.getParameter(0)->isInherited());
}

TEST_F(MaterialTest, DerivedMaterialsOutliveTheirBase)
{
    Material* base = jNew<Material>("tests/scene/MaterialTest", __LINE__, "MaterialTest", jString("base"));
    base->addParameter("k", 0, 1, vec4(2.0f, 0.0f, 0.0f, 0.0f));
    Material derived("derived", base);
    EXPECT_EQ(base->getChild(0), &derived);
    jDelete(base, "tests/scene/MaterialTest", __LINE__, "MaterialTest");
    EXPECT_EQ(derived.getParent(), nullptr);
    EXPECT_FALSE(derived.getParameter(0)->isInherited());
    EXPECT_EQ(derived.getParameter(0)->getValue().x, 2.0f);
    {
        Material child("child", &derived);
        EXPECT_EQ(derived.getNumChildren(), 1);
    }
    EXPECT_EQ(derived.getNumChildren(), 0);
}

TEST_F(MaterialTest, SampleCoversEveryTypeCodeTracksCanBind)
{
    // Track bindings choose their kind from (type code, component count); the sample offers each.
    bool seen[11][5] = {};
    MaterialManager* manager = Engine::get()->getMaterialManager();
    for (int m = 0; m < manager->getNumMaterials(); ++m) {
        Material* material = manager->getMaterial(m);
        for (int p = 0; p < material->getNumParameters(); ++p) {
            MaterialParameter* parameter = material->getParameter(p);
            seen[parameter->getType()][parameter->getNumComponents()] = true;
        }
    }
    EXPECT_TRUE(seen[0][1] && seen[0][3] && seen[0][4]) << "float, vec3 and colour vectors";
    EXPECT_TRUE(seen[0][2]) << "a two-component vector, which tracks cannot bind";
    EXPECT_TRUE(seen[1][3] || seen[1][4]);
    EXPECT_TRUE(seen[10][3] || seen[10][4]);
    EXPECT_TRUE(seen[2][1] && seen[7][1]);
    EXPECT_TRUE(seen[9][3]);
    EXPECT_TRUE(seen[3][1] && seen[4][1] && seen[5][1] && seen[6][1] && seen[8][1]) << "codes tracks refuse";
}
