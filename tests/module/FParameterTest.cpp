#include "data/FParameterSingle.h"

#include "ModuleFixture.h"
#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"
#include "data/FParameterDouble.h"
#include "data/FParameterFloat.h"
#include "data/FParameterToggle.h"
#include "data/FParameterTrack.h"
#include "data/FParameterVec3.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackRow.h"

namespace {

constexpr float NO_TIME = -1e9f;
const vec4 FLAT(0.0f, 0.0f, 0.0f, 0.0f);

} // namespace

class FParameterTest : public ModuleFixture {
protected:
    // A float parameter with keys at the given times (values 10 × time), sorted.
    FParameterFloat* floatWithKeys(std::initializer_list<float> times)
    {
        FParameterFloat* parameter = doc()->createParameterFloat("Keys");
        for (float t : times)
            parameter->createKey(t, 10.0f * t, FLAT, 1);
        parameter->sortKeys();
        return parameter;
    }
    // The row text of a float parameter registered as a material value with this display name.
    jString materialRow(const char* display)
    {
        TrackParameter* param = Track::CreateParameter(TRACK_PARAMETER_FLOAT);
        param->setTypeName("Material.float");
        param->setDisplayName(display);
        engine()->addParameter(param);
        FParameterFloat* parameter = doc()->createParameterFloat(param, "Shown");
        return parameter ? parameter->getRow()->getName() : jString("<refused>");
    }
};

// Keys, their marks and the cached times sort together; a marked key leaves the marks with its key.
// The key before a time is the first key before the first, and none on a key, at or after the last.
TEST_F(FParameterTest, KeysSortWithTheirMarksAndTimesWhichAnswerTheKeyBefore)
{
    FParameterFloat* parameter = floatWithKeys({1.0f, 2.0f, 3.0f});
    FKey* last = parameter->getKey(2);
    last->setTime(0.5f);
    parameter->getKey(0)->setTime(2.5f);
    parameter->sortKeys();
    EXPECT_EQ(parameter->getKeyTimes()[0], 0.5f);
    EXPECT_EQ(parameter->getKeyTimes()[1], 2.0f);
    EXPECT_EQ(parameter->getKeyTimes()[2], 2.5f);
    EXPECT_EQ(parameter->getLine()->getKeys()[0], last->getLineKey());

    jVector<FKey*> both;
    both.append(parameter->getKey(0));
    both.append(parameter->getKey(1));
    parameter->markKeys(both);
    parameter->markKeys(both);
    EXPECT_EQ(parameter->getKeySet().size(), 2);
    last->detach();
    EXPECT_EQ(last->getParameter(), nullptr);
    EXPECT_EQ(parameter->getKeySet().size(), 1);
    EXPECT_EQ(parameter->getKeyTimes()[0], 2.0f);
    EXPECT_FALSE(parameter->removeKey(last));
    last->releaseUI();
    EXPECT_EQ(parameter->getLine()->getKeys().size(), 2);
    jDelete(last, "tests/module/FParameterTest", __LINE__, "test");

    bool found = true;
    EXPECT_EQ(doc()->createParameterFloat("Empty")->getKeyTimeBefore(1.0f, found), NO_TIME);
    FParameterFloat* other = floatWithKeys({3.0f, 1.0f, 2.0f});
    EXPECT_EQ(other->getKeyTimeBefore(0.5f, found), 1.0f);
    EXPECT_TRUE(found);
    EXPECT_EQ(other->getKeyTimeBefore(2.75f, found), 2.0f);
    EXPECT_EQ(other->getKeyTimeBefore(2.0f, found), NO_TIME);
    EXPECT_FALSE(found);
    EXPECT_EQ(other->getKeyTimeBefore(9.0f, found), NO_TIME);
}

// A row shows its binding's (display) name after the last dot, or before it is named a placeholder
// of its kind; a vector's axes and a nested track's rows carry their own labels.
TEST_F(FParameterTest, RowsShowTheNameAfterTheLastDotOrAPlaceholderPerKind)
{
    EXPECT_EQ(materialRow("roughness"), "roughness");
    EXPECT_EQ(materialRow("a.b.c"), "c");
    EXPECT_EQ(materialRow("ends."), "ends.");
    EXPECT_EQ(materialRow("."), ".");
    TrackParameter* param = Track::CreateParameter(TRACK_PARAMETER_FLOAT);
    param->setTypeName("Camera.fov");
    param->setDisplayName("ignored.name");
    engine()->addParameter(param);
    EXPECT_EQ(doc()->createParameterFloat(param, "Zoom")->getRow()->getName(), "fov");

    FParameterDouble* wide = doc()->createParameterDouble(jString());
    EXPECT_EQ(wide->getRow()->getName(), "Hello");
    EXPECT_EQ(wide->getRow()->getText(), "World");
    FParameterFloat* narrow = doc()->createParameterFloat(jString());
    EXPECT_EQ(narrow->getRow()->getName(), "");
    EXPECT_EQ(narrow->getRow()->getText(), "");
    EXPECT_EQ(doc()->createParameterToggle(jString())->getRow()->getName(), "Hello");
    FParameterTrack* nested = doc()->createParameterTrack(jString());
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(nested->getComponent(0)->getRow()->getName(), "Name");
    EXPECT_EQ(nested->getComponent(0)->getRow()->getText(), "Anim");
    EXPECT_EQ(nested->getComponent(1)->getRow()->getName(), "Time");
    FParameterVec3* vector = doc()->createParameterVec3("Offset");
    EXPECT_EQ(vector->getComponent(2)->getRow()->getName(), "Offset");
    EXPECT_EQ(vector->getComponent(2)->getRow()->getText(), "Z");
}

// A key made at a time holds what the engine plays there, linear and appended unsorted; a nested
// track's time key holds 0 where the engine has a time, as nested-track editing has always done.
TEST_F(FParameterTest, KeyAtATimeTakesTheValueTheEnginePlaysThere)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    bool found = false;
    auto* fov = static_cast<FParameterFloat*>(single(12));
    const float expected = fov->engine_parameter()->getTrackValue(1.5f, found);
    ASSERT_TRUE(found);
    FKeyFloat* key = fov->createKey(1.5f, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->getValue(), expected);
    EXPECT_EQ(key->getKeyType(), 1);
    EXPECT_EQ(key->getTangents().z, 3.0f);
    EXPECT_EQ(fov->getKey(3), key);
    fov->sortKeys();
    EXPECT_EQ(fov->getKey(1), key);

    auto* crateY = static_cast<FParameterFloat*>(single(1));
    const auto* vector = static_cast<const TrackParameterVec3*>(crateY->getParent()->getTrackParameter());
    ASSERT_NE(crateY->createKey(1.0f, FLAT), nullptr);
    EXPECT_EQ(static_cast<FKeyFloat*>(crateY->getKey(9))->getValue(), vector->getTrackValue(1.0f, found)[1]);

    auto* exposure = static_cast<FParameterDouble*>(single(14));
    FKeyDouble* wide = exposure->createKey(2.0f, FLAT);
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(wide->getValue(), exposure->engine_parameter()->getTrackValue(2.0f, found));
    EXPECT_EQ(wide->getKeyType(), 1);

    auto* time = static_cast<FParameterFloat*>(single(22));
    const auto* nested = static_cast<const TrackParameterTrack*>(time->getParent()->getTrackParameter());
    EXPECT_GT(nested->getTrackValueTime(3.0f, found), 1.0f);
    ASSERT_TRUE(found);
    ASSERT_NE(time->createKey(3.0f, FLAT), nullptr);
    EXPECT_EQ(static_cast<FKeyFloat*>(time->getKey(2))->getValue(), 0.0f);

    auto* visible = static_cast<FParameterToggle*>(single(3));
    ASSERT_NE(visible->createKey(5.6f), nullptr);
    ASSERT_NE(visible->createKey(5.9f), nullptr);
    EXPECT_FALSE(static_cast<FKeyToggle*>(visible->getKey(3))->getValue());
    EXPECT_TRUE(static_cast<FKeyToggle*>(visible->getKey(4))->getValue());
}

// A parameter bound to no engine parameter, or made without a document, refuses and says why.
TEST_F(FParameterTest, ParametersWithoutEngineParameterOrDocumentAreRefused)
{
    auto* loose = jNew<FParameterFloat>("tests/module/FParameterTest", __LINE__, "test");
    EXPECT_EQ(loose->createKey(1.0f, FLAT), nullptr);
    expectLogged("FParameterFloat::createKey:m_data");
    EXPECT_FALSE(loose->createNew(nullptr, "Loose", true));
    expectLogged("FParameterFloat::createNew:track");
    EXPECT_EQ(engine()->getNumParameters(), 0);
    // Binding twice would orphan the first engine parameter: the second is refused and freed.
    FParameterFloat* made = doc()->createParameterFloat("Made");
    TrackParameter* first = made->getTrackParameter();
    EXPECT_FALSE(made->createNew(doc(), "Again", true));
    expectLogged("FParameterFloat::create:already bound");
    EXPECT_EQ(made->getTrackParameter(), first);
    EXPECT_EQ(engine()->getNumParameters(), 1);
    auto* toggle = jNew<FParameterToggle>("tests/module/FParameterTest", __LINE__, "test");
    EXPECT_EQ(toggle->createKey(1.0f), nullptr);
    expectLogged("FParameterToggle::createKey:m_data");
    EXPECT_EQ(toggle->createKey(1.0f, true), nullptr);
    expectLogged("FParameterToggle::createKey:m_data");
    EXPECT_TRUE(AppData::get()->destoryParameter(loose));
    EXPECT_TRUE(AppData::get()->destoryParameter(toggle));
    EXPECT_TRUE(AppData::get()->destoryParameter(nullptr));
}

// Deleting takes the engine parameter out of the track (an axis's is its vector's); destroying then
// frees it once and unselects the parameter, and a vector takes its axes with it.
TEST_F(FParameterTest, DeletingAParameterFreesItsEngineParameterOnce)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    FParameterSingle* flicker = single(11);
    flicker->onDelete();
    EXPECT_EQ(flicker->getTrackParameter(), nullptr);
    single(0)->onDelete();
    EXPECT_NE(single(0)->getTrackParameter(), nullptr);
    EXPECT_EQ(engine()->getNumParameters(), 13);
    EXPECT_TRUE(AppData::get()->destoryParameter(flicker));
    EXPECT_EQ(engine()->getNumParameters(), 13);

    FParameterSingle* color = single(10);
    FParameterSingle* next = single(11);
    TrackParameter* param = color->getTrackParameter();
    doc()->getSelectedParameters().insert(color);
    doc()->getSelectedParameters().insert(next);
    EXPECT_TRUE(AppData::get()->destoryParameter(color));
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(doc()->getSelectedParameters().contains(next));
    EXPECT_EQ(single(10), next);
    EXPECT_EQ(engine()->getNumParameters(), 12);

    FParameter* crate = doc()->getParameters()[0];
    TrackParameter* vector = crate->getTrackParameter();
    FParameterSingle* fourth = single(3);
    EXPECT_TRUE(AppData::get()->destoryParameter(crate));
    EXPECT_EQ(doc()->getSingleParameters().size(), 18);
    EXPECT_EQ(single(0), fourth);
    EXPECT_EQ(doc()->getParameters().size(), 4);
    ASSERT_EQ(engine()->getNumParameters(), 11);
    for (int i = 0; i < engine()->getNumParameters(); ++i) {
        EXPECT_NE(engine()->getParameter(i), param);
        EXPECT_NE(engine()->getParameter(i), vector);
    }
}

// The row's E and T buttons switch the engine parameter and show its curve, each posting a change.
// A curve's keys get their marks in the curve view when it is first shown.
TEST_F(FParameterTest, RowSwitchesDriveTheEngineAndTheCurvePanel)
{
    UITrackCurvePanel curves(root());
    ASSERT_TRUE(loadSample("demo.anim"));
    FParameterSingle* crateZ = single(2);
    auto* vector = static_cast<TrackParameterVec3*>(crateZ->getParent()->getTrackParameter());
    ASSERT_FALSE(crateZ->getRow()->getState(1));
    ASSERT_GT(crateZ->getNumKeys(), 0);
    EXPECT_TRUE(crateZ->getCurve()->getKeys().empty());
    crateZ->getRow()->toggleColumn(1);
    EXPECT_TRUE(vector->isShow(VEC3_SWIZZLE_Z));
    EXPECT_TRUE(crateZ->isCurveShown());
    EXPECT_TRUE(curves.isShown(crateZ->getCurve()));
    ASSERT_EQ(crateZ->getCurve()->getKeys().size(), crateZ->getNumKeys());
    for (int i = 0; i < crateZ->getNumKeys(); ++i)
        EXPECT_EQ(crateZ->getCurve()->getKeys()[i], crateZ->getKey(i)->getCurveKey());
    crateZ->getRow()->toggleColumn(0);
    EXPECT_FALSE(vector->isEnabled(VEC3_SWIZZLE_Z));
    EXPECT_TRUE(vector->isEnabled(VEC3_SWIZZLE_X));
    crateZ->getRow()->toggleColumn(1);
    EXPECT_FALSE(crateZ->isCurveShown());

    // A nested track's parts are not saved on their own: both rows switch the nested track.
    FParameterSingle* name = single(21);
    FParameterSingle* time = single(22);
    TrackParameter* nested = name->getParent()->getTrackParameter();
    time->getRow()->toggleColumn(0);
    EXPECT_FALSE(nested->isEnabled());
    EXPECT_FALSE(name->getRow()->getState(0));
    name->getRow()->toggleColumn(1);
    EXPECT_TRUE(nested->isCurveShown());
    EXPECT_TRUE(time->getRow()->getState(1));
    EXPECT_TRUE(curves.isShown(time->getCurve()));
    EXPECT_EQ(messages(), std::vector<int>(5, TRACK_MSG_PARAMETER_CHANGED));
}

// An axis answers for the node and material its vector is bound to.
TEST_F(FParameterTest, AxesAnswerBindingQueriesThroughTheirVector)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    EXPECT_EQ(single(1)->getNodeIndex(), 20);
    EXPECT_EQ(single(1)->getNodeName(), "Crate");
    EXPECT_EQ(single(1)->getTypeName(), "Node.position");
    EXPECT_FALSE(single(1)->isForMaterial());
    EXPECT_TRUE(single(18)->isForMaterial());
    EXPECT_FALSE(single(18)->isMaterialHierarchy());
    single(18)->setMaterialHierarchy(true);
    EXPECT_TRUE(single(20)->isMaterialHierarchy());
}
