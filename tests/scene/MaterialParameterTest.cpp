#include "scene/MaterialParameter.h"

#include "scene/Material.h"
#include "support/Scenario.h"

using MaterialParameterTest = Scenario;

TEST_F(MaterialParameterTest, ComponentsPastTheCountStayZero)
{
    Material material("m");
    MaterialParameter* p = material.addParameter("uv", 0, 2, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(p->getValue(), vec4(1.0f, 2.0f, 0.0f, 0.0f));
    p->setValue(vec4(5.0f, 6.0f, 7.0f, 8.0f));
    EXPECT_EQ(p->getValue(), vec4(5.0f, 6.0f, 0.0f, 0.0f));
    EXPECT_EQ(p->getTag(), "uv");
    EXPECT_EQ(p->getNumComponents(), 2);
}

TEST_F(MaterialParameterTest, TypeCodesHaveNames)
{
    const char* names[] = {"vector", "color", "slider", "toggle", "integer", "choice",
                           "flags", "angle", "slot", "direction", "color_hdr"};
    for (int type = 0; type <= 10; ++type)
        EXPECT_STREQ(MaterialParameter::getTypeName(type), names[type]);
    EXPECT_EQ(MaterialParameter::getTypeName(11), nullptr);
    EXPECT_EQ(MaterialParameter::getTypeName(-1), nullptr);
}

TEST_F(MaterialParameterTest, OwnParametersOfABaseAreNeverInherited)
{
    Material base("base");
    MaterialParameter* p = base.addParameter("k", 7, 1, vec4(90.0f, 0.0f, 0.0f, 0.0f));
    EXPECT_FALSE(p->isInherited());
    p->setValue(vec4(45.0f, 0.0f, 0.0f, 0.0f));
    EXPECT_FALSE(p->isInherited());
    EXPECT_EQ(p->getValue().x, 45.0f);
}
